// Spreadsheet files as bytes: what the CSV writer puts down, and what the reader makes of the
// files shops really send (another separator, Windows-1252, blank lines, quoted line breaks).
#include "apoyo/ejecucion.h"
#include "intercambio/csv.h"

#include <QBuffer>

namespace {

/// "linea:campo|campo" for each line, for comparing a whole file at a glance.
QStringList Lineas(const FicheroCsv &f) {
    QStringList t;
    for (const LineaCsv &l : f.lineas)
        t << QString::number(l.numero) + QLatin1Char(':') + l.campos.join(QLatin1Char('|'));
    return t;
}

} // namespace

class TstCsv : public QObject {
    Q_OBJECT

  private slots:
    void escribir_data() {
        const auto caso = Pruebas::Tabla<QStringList, QByteArray>();
        caso("campos llanos", {"0840067", "", "12,50"}, "0840067;;12,50\r\n");
        caso("el separador va entre comillas", {"a;b", "c"}, "\"a;b\";c\r\n");
        caso("comillas dobladas", {"Camisa \"slim\""}, "\"Camisa \"\"slim\"\"\"\r\n");
        caso("salto de línea", {"dos\nlíneas"}, "\"dos\nlíneas\"\r\n");
        caso("la coma no necesita comillas", {"1,5"}, "1,5\r\n");
        caso("espacios en los bordes", {" M ", "a b"}, "\" M \";a b\r\n");
        caso("acentos en UTF-8", {"Camisón"}, "Camis\xC3\xB3n\r\n");
    }
    void escribir() {
        const auto [campos, esperado] = Pruebas::Fila<QStringList, QByteArray>();
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        EscritorCsv csv(buffer);
        QVERIFY(csv.Linea(campos));
        // The mark only at the start of the file.
        QCOMPARE(buffer.data(), "\xEF\xBB\xBF" + esperado);
        QVERIFY(csv.Linea(campos));
        QCOMPARE(buffer.data(), "\xEF\xBB\xBF" + esperado + esperado);
    }

    void leer_data() {
        // bytes, separator found, header, lines ("number:fields"), error ("" when read)
        const auto caso = Pruebas::Tabla<QByteArray, char, QStringList, QStringList, QString>();
        caso("punto y coma con marca",
             "\xEF\xBB\xBF"
             "codigo;precio\r\nA1;12,5\r\n",
             ';', {"codigo", "precio"}, {"2:A1|12,5"}, "");
        caso("comas", "codigo,precio\nA1,12.5\n", ',', {"codigo", "precio"}, {"2:A1|12.5"}, "");
        caso("tabuladores", "codigo\tprecio\nA 1\t3\n", '\t', {"codigo", "precio"}, {"2:A 1|3"},
             "");
        caso("la cabecera decide aunque los datos lleven comas", "codigo;nombre\nA;x,y,z\n", ';',
             {"codigo", "nombre"}, {"2:A|x,y,z"}, "");
        caso("líneas en blanco cuentan", "codigo;precio\r\n\r\nA;1\r\n\r\n\r\nB;2", ';',
             {"codigo", "precio"}, {"3:A|1", "6:B|2"}, "");
        caso("salto dentro de comillas", "codigo;nombre\n\"A\";\"dos\nlíneas\"\nB;x\n", ';',
             {"codigo", "nombre"}, {"2:A|dos\nlíneas", "4:B|x"}, "");
        caso("comillas y separador dentro", "c;n\n1;\"a;\"\"b\"\"\"\n", ';', {"c", "n"},
             {"2:1|a;\"b\""}, "");
        caso("cabecera con espacios", " codigo ; precio \nA;1\n", ';', {"codigo", "precio"},
             {"2:A|1"}, "");
        caso("Windows-1252", "codigo;nombre\nA;Camis\xF3n \x80\x96\x93\n", ';',
             {"codigo", "nombre"}, {QString::fromUtf8("2:A|Camisón €–“")}, "");
        caso("vacío", "", ';', {}, {}, "vacío");
        caso("solo la marca y espacios", "\xEF\xBB\xBF \r\n ", ';', {}, {}, "vacío");
        caso("una imagen", QByteArray("\x89PNG\r\n\x1A\n\0\0\0\rIHDR", 16), ';', {}, {},
             "no es de texto");
        caso("comillas sin cerrar", "codigo;nombre\nA;\"sin fin\nB;2\n", ';', {}, {},
             "comillas mal puestas o sin cerrar en la línea 2");
        caso("comillas en un campo sin ellas", "codigo;nombre\nA;1\nB;Camisa 12\" azul\n", ';', {},
             {}, "comillas mal puestas o sin cerrar en la línea 3");
    }
    void leer() {
        const auto [bytes, separador, cabecera, lineas, error] =
            Pruebas::Fila<QByteArray, char, QStringList, QStringList, QString>();
        const FicheroCsv f = LeerCsv(bytes);
        if (!error.isEmpty()) {
            QVERIFY2(f.error.contains(error), qPrintable(f.error));
            QVERIFY(f.lineas.isEmpty());
            return;
        }
        QCOMPARE(f.error, QString());
        QCOMPARE(f.separador, separador);
        QCOMPARE(f.cabecera, cabecera);
        QCOMPARE(Lineas(f), lineas);
    }

    void soloLasColumnasLeidas() {
        // The header is read whole; the other columns' fields are left empty but counted, so
        // a short line still shows as short.
        const FicheroCsv f = LeerCsv("Codigo ;nombre;precio\nA1;Abrigo;90\nB2;Blusa\n"
                                     "C3;Camisa;30;de más\n",
                                     [](const QString &nombre) {
                                         return nombre == QLatin1String("Codigo") ||
                                                nombre == QLatin1String("precio");
                                     });
        QCOMPARE(f.error, QString());
        QCOMPARE(f.cabecera, QStringList({"Codigo", "nombre", "precio"}));
        QCOMPARE(Lineas(f), QStringList({"2:A1||90", "3:B2|", "4:C3||30|"}));
    }

    void ida_y_vuelta() {
        // Whatever a shop's names hold comes back as it went.
        const QList<QStringList> filas{
            {"codigo", "nombre", "precio"},
            {"A;1", "Camisa \"slim\", azul", "12,50"},
            {"", "dos\r\nlíneas", ""},
            {"ñ€", "  espacios  ", "-0,5"},
        };
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        EscritorCsv csv(buffer);
        for (const QStringList &fila : filas)
            QVERIFY(csv.Linea(fila));
        const FicheroCsv f = LeerCsv(buffer.data());
        QCOMPARE(f.error, QString());
        QCOMPARE(f.cabecera, filas[0]);
        QCOMPARE(f.lineas.size(), filas.size() - 1);
        for (qsizetype i = 1; i < filas.size(); ++i)
            QCOMPARE(f.lineas[i - 1].campos, filas[i]);
    }
};

TARIFAS_PRUEBAS(TstCsv)
#include "tst_csv.moc"
