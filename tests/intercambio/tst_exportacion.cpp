// A list's prices out to a file and back: the rows in the editor's order with their sizes and
// colours, a workbook that opens, and the round trips an operator makes with a spreadsheet.
#include "apoyo/ejecucion.h"
#include "intercambio/csv.h"
#include "intercambio/exportacion.h"
#include "intercambio/importacion.h"
#include "tiendaintercambio.h"

#include <QBuffer>
#include <QFile>
#include <QProcess>

namespace {

QByteArray Leer(const QString &ruta) {
    QFile f(ruta);
    if (!f.open(QIODevice::ReadOnly))
        return {};
    return f.readAll();
}

/// The file's data lines, fields joined by "|".
QStringList Lineas(const QByteArray &datos) {
    QStringList t;
    for (const LineaCsv &l : LeerCsv(datos).lineas)
        t << l.campos.join(QLatin1Char('|'));
    return t;
}

/// `datos` with the price (last field) of the lines whose code is in `nuevos` replaced.
QByteArray ConPrecios(const QByteArray &datos, const QHash<QString, QString> &nuevos) {
    const FicheroCsv f = LeerCsv(datos);
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    EscritorCsv csv(buffer);
    csv.Linea(f.cabecera);
    for (LineaCsv l : f.lineas) {
        const QString clave = l.campos[1].isEmpty() ? l.campos[0] : l.campos[1];
        if (nuevos.contains(clave))
            l.campos.last() = nuevos[clave];
        csv.Linea(l.campos);
    }
    return buffer.data();
}

} // namespace

class TstExportacion : public QObject {
    Q_OBJECT

  private slots:
    void filas_data() {
        const auto caso = Pruebas::Tabla<bool, QStringList>();
        // The plain grid: live products by name; a deleted product's price stays out.
        caso("tienda llana", false, {"A1||Abrigo|||100,00|90,00", "B2||Blusa|||50,00|45,00"});
        // The size-and-colour grid: the variant's own code, size and colour, and its own
        // standard price where it has one; the product without sizes as itself.
        caso("tallas y colores", true,
             {"A1|A1-S-R|Abrigo|S|Rojo|110,00|100,00", "A1|A1-M-R|Abrigo|M|Rojo|100,00|100,00",
              "C3||Camisa|||30,00|30,00"});
    }
    void filas() {
        const auto [tallaColor, lineas] = Pruebas::Fila<bool, QStringList>();
        TiendaIntercambio t(tallaColor);
        const QString ruta = t.db.Directorio() + QStringLiteral("/General.csv");
        const ResultadoExportacion r = ExportarLista(t.contexto, 1, ruta, QLatin1Char(','));
        QCOMPARE(r.error, QString());
        QCOMPARE(r.filas, lineas.size());
        const QByteArray datos = Leer(ruta);
        QVERIFY(datos.startsWith("\xEF\xBB\xBF"
                                 "codigo;variante;nombre;talla;color;precio_venta;"
                                 "precio\r\n"));
        QStringList esperadas = lineas, leidas = Lineas(datos);
        if (tallaColor) { // this grid follows the database's order: compare as sets
            esperadas.sort();
            leidas.sort();
        }
        QCOMPARE(leidas, esperadas);
    }

    void ida_y_vuelta_data() {
        // size-and-colour shop, prices edited in the file (code -> text), the list afterwards
        const auto caso = Pruebas::Tabla<bool, QHash<QString, QString>, QString, QStringList>();
        caso("sin tocar, nada cambia", false, {}, "0/0/0/2", {"1/=90,00", "2/=45,00", "4/=9,00"});
        caso("dos precios editados", false, {{"A1", "89,95"}, {"B2", "46"}}, "0/2/0/0",
             {"1/=89,95", "2/=46,00", "4/=9,00"});
        caso("tallas sin tocar", true, {}, "0/0/0/3", {"1/01=100,00", "1/02=100,00", "3/-1=30,00"});
        caso("una talla editada", true, {{"A1-M-R", "104,5"}}, "0/1/0/2",
             {"1/01=100,00", "1/02=104,50", "3/-1=30,00"});
    }
    void ida_y_vuelta() {
        const auto [tallaColor, nuevos, cuentas, despues] =
            Pruebas::Fila<bool, QHash<QString, QString>, QString, QStringList>();
        TiendaIntercambio t(tallaColor);
        const QString ruta = t.db.Directorio() + QStringLiteral("/General.csv");
        QCOMPARE(ExportarLista(t.contexto, 1, ruta, QLatin1Char(',')).error, QString());
        // "sustituir" too: an exported file names every row the operator sees.
        const ResultadoImportacion r = Importar(t.contexto, 1, ConPrecios(Leer(ruta), nuevos),
                                                ModoImportacion::Sustituir, false, "vuelta");
        QCOMPARE(r.estado, ResultadoImportacion::Importada);
        const PlanImportacion &p = r.plan;
        QCOMPARE(QStringLiteral("%1/%2/%3/%4")
                     .arg(p.anadidos)
                     .arg(p.cambiados)
                     .arg(p.quitados)
                     .arg(p.iguales),
                 cuentas);
        QCOMPARE(t.Precios(), despues);
    }

    void libro_xlsx() {
        TiendaIntercambio t(false);
        const QString ruta = t.db.Directorio() + QStringLiteral("/General.xlsx");
        const ResultadoExportacion r = ExportarLista(t.contexto, 1, ruta, QLatin1Char(','));
        QCOMPARE(r.error, QString());
        QCOMPARE(r.filas, 2);
        QProcess unzip;
        unzip.start(QStringLiteral("unzip"), {QStringLiteral("-Z1"), ruta});
        QVERIFY(unzip.waitForFinished());
        QCOMPARE(unzip.exitCode(), 0);
        const QString partes = QString::fromUtf8(unzip.readAllStandardOutput());
        for (const char *parte : {"[Content_Types].xml", "xl/workbook.xml",
                                  "xl/worksheets/sheet1.xml", "xl/styles.xml"})
            QVERIFY2(partes.contains(QLatin1String(parte)), parte);
        unzip.start(QStringLiteral("unzip"),
                    {QStringLiteral("-p"), ruta, QStringLiteral("xl/worksheets/sheet1.xml")});
        QVERIFY(unzip.waitForFinished());
        const QByteArray hoja = unzip.readAllStandardOutput();
        QVERIFY2(hoja.contains("ySplit=\"1\"") && hoja.contains("state=\"frozen\""), hoja);
        // Prices are numbers, with the shop's two decimals in their format.
        QVERIFY(hoja.contains("<v>90</v>") && hoja.contains("<v>45</v>"));
        QVERIFY(hoja.contains("precio_venta") && hoja.contains("Abrigo"));
        unzip.start(QStringLiteral("unzip"),
                    {QStringLiteral("-p"), ruta, QStringLiteral("xl/styles.xml")});
        QVERIFY(unzip.waitForFinished());
        QVERIFY(unzip.readAllStandardOutput().contains("formatCode=\"0.00\""));
    }

    void no_se_escribe_a_medias_data() {
        const auto caso = Pruebas::Tabla<QString, QString>();
        caso("otra extensión", QStringLiteral("/General.ods"), QStringLiteral(".csv o en .xlsx"));
        caso("carpeta que no existe CSV", QStringLiteral("/no/hay/General.csv"),
             QStringLiteral("No se puede escribir"));
        caso("carpeta que no existe XLSX", QStringLiteral("/no/hay/General.xlsx"),
             QStringLiteral("No se pudo escribir"));
    }
    void no_se_escribe_a_medias() {
        const auto [fichero, error] = Pruebas::Fila<QString, QString>();
        TiendaIntercambio t(false);
        const QString ruta = t.db.Directorio() + fichero;
        const ResultadoExportacion r = ExportarLista(t.contexto, 1, ruta, QLatin1Char(','));
        QVERIFY2(r.error.contains(error), qPrintable(r.error));
        QVERIFY(!QFile::exists(ruta));
        QVERIFY(!QFile::exists(ruta + QStringLiteral(".parcial")));
    }
};

TARIFAS_PRUEBAS(TstExportacion)
#include "tst_exportacion.moc"
