// The record writer: field lists turned into typed, bound statements; what doesn't fit is
// refused before anything is written; what is written is seen at once.
#include "apoyo/basedatosprueba.h"
#include "apoyo/ejecucion.h"
#include "apoyo/errores.h"
#include "suite/datos/svcregistros.h"

#include <QSqlQuery>
#include <QSqlRecord>
#include <memory>

namespace {

const QString tienda = QStringLiteral("Moda Corvanta Centro");
const QString cabecera =
    QStringLiteral("identificador, descripcion, fechaalta, preciovalidodesde, preciovalidohasta");

} // namespace

class TstSvcRegistros : public QObject {
    Q_OBJECT
    std::unique_ptr<BaseDatosPrueba> db;

    void Insertar(const QString &tabla, const QString &campos) {
        SvcRegistros().InsertarRegistro(db->Conexion(), tabla, campos, tienda, false, QString());
    }
    void Modificar(const QString &tabla, const QString &campos, const QString &criterio) {
        SvcRegistros().ModificarRegistro(db->Conexion(), tabla, campos, tienda, false, criterio, 0,
                                         QString(), QString(), QString());
    }
    void Borrar(const QString &tabla, const QString &criterio) {
        SvcRegistros().BorrarRegistro(db->Conexion(), tabla, tienda, false, criterio);
    }
    void Modificar(const QString &tabla, const QString &campos, const Criterio &criterio) {
        SvcRegistros().ModificarRegistro(db->Conexion(), tabla, campos, tienda, false, criterio);
    }
    void Borrar(const QString &tabla, const Criterio &criterio) {
        SvcRegistros().BorrarRegistro(db->Conexion(), tabla, tienda, false, criterio);
    }

    /// Every row of a table in the order of its columns, read without the code under test: texts
    /// (and dates, which SQLite keeps as text) in quotes, so that a number stored as text shows;
    /// numbers as numbers.
    QString Volcado(const QString &tabla, const QString &columnas) {
        QSqlQuery q(db->Conexion().Base());
        if (!q.exec(QStringLiteral("select %1 from %2 order by %1").arg(columnas, tabla)))
            return QStringLiteral("error");
        QStringList filas;
        while (q.next()) {
            QStringList valores;
            for (int c = 0; c < q.record().count(); ++c) {
                const QVariant v = q.value(c);
                if (q.isNull(c))
                    valores << QStringLiteral("null");
                else if (v.typeId() == QMetaType::QDate)
                    valores << "'" + v.toDate().toString(Qt::ISODate) + "'";
                else if (v.typeId() == QMetaType::QString)
                    valores << "'" + v.toString() + "'";
                else if (v.typeId() == QMetaType::Bool)
                    valores << QString::number(int(v.toBool()));
                else
                    valores << QString::number(v.toDouble(), 'g', 15);
            }
            filas << valores.join(QLatin1Char(';'));
        }
        return filas.join(QStringLiteral(" / "));
    }

    /// Everything the refusals could touch, to prove nothing was written.
    QString Todo() {
        return Volcado("cabecera_precio", cabecera) + " | " +
               Volcado("detalle_precio", "identificador, producto, precio") + " | " +
               Volcado("opciones", "numdecimales") + " | " +
               Volcado("configuracionregional", "segundoimpuesto");
    }

    /// List 1 with two prices (one a variant's), list 2 with one.
    void Listas() {
        db->Ejecutar("insert into cabecera_precio values (1, 'Tarifa general', '2026-01-01',"
                     " '2026-01-01', '2026-12-31'), (2, 'Otra', '2025-05-05', '2025-06-01',"
                     " '2025-06-30')");
        db->Ejecutar("insert into detalle_precio values (1, 10, 9.95, null), (1, 11, 3, '0201'),"
                     " (2, 10, 8, null)");
    }

  private slots:
    void init() {
        db = std::make_unique<BaseDatosPrueba>();
        Listas();
    }
    void cleanup() { db.reset(); }

    // What is stored, read back at once: a new list's header (after lists 1 and 2), a price,
    // Booleans, small whole numbers and reals.
    void insertar_data() {
        // The table (and which of its rows to read back), the fields as typed, the columns read
        // back and what they hold.
        const auto caso = Pruebas::Tabla<QString, QString, QString, QString>();
        const QString lista = "identificador=3|fechaalta=1/2/2026|preciovalidodesde=1/2/2026|"
                              "preciovalidohasta=31/12/9999|Descripcion=";
        const QString fechas = ";'2026-02-01';'2026-02-01';'9999-12-31'";
        // A name is stored exactly as typed.
        auto cab = [&](const char *nombre, const QString &descripcion) {
            caso(nombre, "cabecera_precio where identificador > 2", lista + descripcion + "|",
                 cabecera, "3;'" + descripcion + "'" + fechas);
        };
        cab("apostrophes", "Precios d'O'Brien ''");
        cab("percent, underscore, SQL", "50% dto_a'); drop table productos; --");
        cab("empty name stays empty, not Null", "");
        caso("names in any case and order, ISO date", "cabecera_precio where identificador > 2",
             "PRECIOVALIDOHASTA=1/3/2026|Identificador=3|descripcion=O|FechaAlta=15/6/2026|"
             "PrecioValidoDesde=2026-02-01|",
             cabecera, "3;'O';'2026-06-15';'2026-02-01';'2026-03-01'");
        caso("greatest code", "cabecera_precio where identificador > 2",
             "identificador=2147483647|descripcion=x|", "identificador", "2147483647");
        auto precio = [&](const char *nombre, const QString &typed, const QString &guardado) {
            caso(nombre, "detalle_precio where producto = 20",
                 "identificador=1|producto=20|precio=" + typed + "|", "precio, codproductotextil",
                 guardado + ";null");
        };
        precio("comma", "12,5", "12.5");
        precio("point", "12.50", "12.5");
        precio("no integer part, blanks around", " ,75 ", "0.75");
        precio("15 significant digits", "1234567890123,45", "1234567890123.45");
        precio("zeros after the decimals don't count", "0,100000000000000000", "0.1");
        caso("textile variant keeps its zeros", "detalle_precio where producto = 20",
             "identificador=1|producto=20|precio=5|CodProductoTextil=0201|",
             "precio, codproductotextil", "5;'0201'");
        for (const char *b : {"S=1", "-1=1", "falso=0"}) { // typed=stored
            const QString booleano = QLatin1String(b);
            caso(b, "configuracionregional", "segundoImpuesto=" + booleano.section('=', 0, 0) + "|",
                 "segundoimpuesto", booleano.section('=', 1));
        }
        caso("small whole numbers and reals", "opciones",
             "NumDecimales=2|anchopantalla=15360|altopantalla=11085,5|estiloaspecto=-32768|",
             "numdecimales, anchopantalla, altopantalla, estiloaspecto", "2;15360;11085.5;-32768");
    }
    void insertar() {
        const auto [tabla, campos, columnas, guardado] =
            Pruebas::Fila<QString, QString, QString, QString>();
        Insertar(tabla.section(' ', 0, 0), campos);
        QCOMPARE(Volcado(tabla, columnas), guardado);
        QCOMPARE(Volcado("cabecera_precio where identificador < 3", "descripcion"),
                 QStringLiteral("'Otra' / 'Tarifa general'"));
        QVERIFY(db->Valor("select count(*) from productos").isValid()); // still there
    }

    // Refusals: the operator reads why, and nothing is written.
    void rechazos_data() {
        // Operation (i insert, m update, b delete), table, fields, words of the refusal, criterion.
        const auto caso = Pruebas::Tabla<QString, QString, QString, QString, QString>();
        const QString precio = "identificador=1|producto=20|precio=";
        const QString nueva = "identificador=3|Descripcion=N|fechaalta=1/2/2026|"
                              "preciovalidodesde=1/2/2026|preciovalidohasta=";
        caso("letters in a code", "i", "detalle_precio", "identificador=1a|producto=20|precio=5|",
             "El valor \"1a\" no vale para detalle_precio.identificador: se esperaba un número "
             "entero (solo cifras y, delante, un signo). No se ha grabado nada.",
             {});
        caso("code beyond 32 bits", "i", "detalle_precio", "identificador=2147483648|",
             "no cabe en un número entero (de -2147483648 a 2147483647)", {});
        caso("small number beyond 16 bits", "i", "opciones", "numdecimales=32768|",
             "no cabe en un número entero corto", {});
        caso("both separators", "i", "detalle_precio", precio + "1.234,56|", "una coma o un punto",
             {});
        caso("16 significant digits", "i", "detalle_precio", precio + "12345678901234,56|",
             "15 cifras", {});
        caso("impossible date", "i", "cabecera_precio", nueva + "31/2/2026|",
             "no es una fecha válida", {});
        caso("Boolean of another kind", "i", "configuracionregional", "segundoimpuesto=quizá|",
             "se esperaba S o N", {});
        caso("last item not closed", "i", "detalle_precio", precio + "5",
             "el último elemento, \"precio=5\", no termina en \"|\"", {});
        caso("a | inside a name", "i", "cabecera_precio", "identificador=3|Descripcion=A|B|",
             "\"B\" no tiene la forma columna=valor", {});
        caso("a column twice", "i", "detalle_precio", "producto=1|producto=2|",
             "la columna \"producto\" aparece dos veces", {});
        caso("unknown column", "i", "detalle_precio", "preciooferta=5|",
             "la tabla no tiene la columna \"preciooferta\"", {});
        caso("unknown table", "i", "precios", "identificador=1|", "\"precios\"", {});
        caso("empty list", "i", "detalle_precio", "", "está vacía", {});
        caso("update without criterion", "m", "cabecera_precio", "descripcion=T|",
             "Falta el criterio", "  ");
        caso("update with a wrong criterion", "m", "cabecera_precio", "descripcion=O|",
             "syntax error", "identificador = = 1");
        caso("delete without criterion", "b", "detalle_precio", "", "Falta el criterio", {});
        // A criterion with its values apart ("B", "M"): as many values as it has ?s.
        caso("more values than marks", "B", "detalle_precio", "", "pide 1 valores y lleva 2",
             "identificador = ?");
        caso("fewer values than marks", "M", "cabecera_precio", "descripcion=O|",
             "pide 3 valores y lleva 2", "identificador = ? or identificador = ? or daton = ?");
        caso("a mark between apostrophes is text", "B", "detalle_precio", "",
             "pide 0 valores y lleva 2", "codproductotextil = '?' and 'a''?' = '?'");
        caso("bound but empty", "B", "detalle_precio", "", "Falta el criterio", " ");
    }
    void rechazos() {
        const auto [operacion, tabla, campos, motivo, criterio] =
            Pruebas::Fila<QString, QString, QString, QString, QString>();
        const QString antes = Todo();
        // The bound rows give two values: 1 and 2.
        const Criterio conValores{criterio, {1, 2}};
        const QString error = ErrorDe([&] {
            if (operacion == "i")
                Insertar(tabla, campos);
            else if (operacion == "m")
                Modificar(tabla, campos, criterio);
            else if (operacion == "M")
                Modificar(tabla, campos, conValores);
            else if (operacion == "B")
                Borrar(tabla, conValores);
            else
                Borrar(tabla, criterio);
        });
        QVERIFY2(!error.isNull(), "the write must be refused with ErrorBD");
        QVERIFY2(error.contains(motivo), qPrintable(error));
        QCOMPARE(Todo(), antes);
    }

    void modificar() {
        // Only the named columns of the rows the criterion meets change.
        Modificar("cabecera_precio", "preciovalidodesde=1/3/2027|Descripcion=L'Hospitalet 50%|",
                  "identificador=1");
        QCOMPARE(Volcado("cabecera_precio", cabecera),
                 "1;'L'Hospitalet 50%';'2026-01-01';'2027-03-01';'2026-12-31' / "
                 "2;'Otra';'2025-05-05';'2025-06-01';'2025-06-30'");
        // A criterion holding an apostrophe, escaped in SQL's way, is run as given.
        Modificar("cabecera_precio", "Descripcion=Otra|", "descripcion='L''Hospitalet 50%'");
        QCOMPARE(db->Valor("select descripcion from cabecera_precio where identificador = 1"),
                 QVariant("Otra"));
    }

    // A criterion's values are bound, whatever they hold: a value is never read as SQL, and a
    // ? inside a text of the criterion is a character, not a value.
    void conValores_data() {
        // The table, fields ("" for a delete), criterion, its values, and the table afterwards.
        const auto caso = Pruebas::Tabla<QString, QString, QString, QVariantList, QString>();
        const QString precios = "detalle_precio|identificador, producto, precio, codproductotextil";
        caso("one variant's price", precios, "",
             "identificador = ? and producto = ? and CodProductoTextil = ?", {1, 11, "0201"},
             "1;10;9.95;null / 2;10;8;null");
        caso("a value that reads as SQL is only text", precios, "", "CodProductoTextil = ?",
             {"0201' or '1'='1"}, "1;10;9.95;null / 1;11;3;'0201' / 2;10;8;null");
        caso("a mark between apostrophes", precios, "",
             "(codproductotextil = '?' or identificador = ?) and producto = ?", {2, 10},
             "1;10;9.95;null / 1;11;3;'0201'");
        caso("update: the fields' values, then the criterion's",
             "cabecera_precio|identificador, descripcion", "Descripcion=L'Hospitalet ? 50%|",
             "identificador = ? and descripcion = ?", {2, "Otra"},
             "1;'Tarifa general' / 2;'L'Hospitalet ? 50%'");
    }
    void conValores() {
        const auto [tabla, campos, texto, valores, despues] =
            Pruebas::Fila<QString, QString, QString, QVariantList, QString>();
        if (campos.isEmpty())
            Borrar(tabla.section('|', 0, 0), Criterio{texto, valores});
        else
            Modificar(tabla.section('|', 0, 0), campos, Criterio{texto, valores});
        QCOMPARE(Volcado(tabla.section('|', 0, 0), tabla.section('|', 1)), despues);
    }

    void borrar() {
        // One variant's price, then what is left of a list, whatever the case of the table.
        const QString columnas = "identificador, producto, precio, codproductotextil";
        Borrar("detalle_precio", "identificador=1 and producto=11 and CodProductoTextil='0201'");
        QCOMPARE(Volcado("detalle_precio", columnas), "1;10;9.95;null / 2;10;8;null");
        Borrar("DETALLE_PRECIO", "identificador=1");
        QCOMPARE(Volcado("detalle_precio", columnas), "2;10;8;null");
    }
};

TARIFAS_PRUEBAS_SIN_VENTANAS(TstSvcRegistros)
#include "tst_svcregistros.moc"
