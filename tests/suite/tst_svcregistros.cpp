// The record writer: field lists turned into typed, bound statements; what doesn't fit is
// refused before anything is written; what is written is seen at once.
#include "apoyo/ejecucion.h"
#include "apoyo/errores.h"
#include "apoyo/basedatosprueba.h"
#include "platform/datos/errorbd.h"
#include "platform/datos/recordset.h"
#include "suite/datos/svcregistros.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QSqlField>
#include <QSqlRecord>
#include <QStandardPaths>
#include <QtTest>
#include <cmath>
#include <functional>
#include <memory>

namespace {

const QString tienda = QStringLiteral("Moda Corvanta Centro");

} // namespace

class TstSvcRegistros : public QObject {
    Q_OBJECT
    std::unique_ptr<BaseDatosPrueba> db;

    ADODB::Connection &Conexion() { return db->Conexion(); }

    void Insertar(const QString &tabla, const QString &campos) {
        SvcRegistros().InsertarRegistro(Conexion(), tabla, campos, tienda, false, QString());
    }
    void Modificar(const QString &tabla, const QString &campos, const QString &criterio) {
        SvcRegistros().ModificarRegistro(Conexion(), tabla, campos, tienda, false, criterio, 0,
                                         QString(), QString(), QString());
    }
    void Borrar(const QString &tabla, const QString &criterio) {
        SvcRegistros().BorrarRegistro(Conexion(), tabla, tienda, false, criterio);
    }

    /// Every row of a table as text, column by column in storage order, with typeof():
    /// "what is stored" without going through the code under test.
    QString Volcado(const QString &tabla, const QString &columnas) {
        if (BaseDatosPrueba::EnPostgreSQL())
            return VolcadoServidor(tabla, columnas);
        QString volcado;
        const QStringList lista = columnas.split(QLatin1Char(','));
        QStringList partes;
        for (const QString &c : lista)
            partes << QStringLiteral("coalesce(typeof(%1) || ':' || %1, 'null')").arg(c.trimmed());
        const QVariant v = db->Valor(
            QStringLiteral("select group_concat(fila, ' / ') from (select %1 as fila from %2"
                           " order by rowid)")
                .arg(partes.join(QStringLiteral(" || ';' || ")), tabla));
        return v.toString();
    }

    /// A server's columns have one type each, which the table fixes: what is stored is the
    /// value alone. The dump has SQLite's form, with the type each value would have there
    /// (a whole price is an integer, a whole double a real, a Boolean 0 or 1), so that one
    /// expectation serves both.
    QString VolcadoServidor(const QString &tabla, const QString &columnas) {
        QSqlQuery q(db->Conexion().Base());
        const QString sql = QStringLiteral("select %1 from %2 order by ctid").arg(columnas, tabla);
        if (!q.exec(sql))
            return q.lastError().text();
        QStringList filas;
        while (q.next()) {
            QStringList valores;
            for (int c = 0; c < q.record().count(); ++c) {
                const QVariant v = q.value(c);
                const double d = v.toDouble();
                if (q.isNull(c))
                    valores << QStringLiteral("null");
                else if (v.typeId() == QMetaType::QDate)
                    valores << QStringLiteral("text:") + v.toDate().toString(Qt::ISODate);
                else if (v.typeId() == QMetaType::Bool)
                    valores << QStringLiteral("integer:%1").arg(v.toBool() ? 1 : 0);
                else if (v.typeId() == QMetaType::Double && d != std::trunc(d))
                    valores << QStringLiteral("real:") + QString::number(d, 'g', 15);
                else if (v.typeId() == QMetaType::Double && q.record().field(c).typeID() == 701)
                    valores << QStringLiteral("real:%1.0").arg(d, 0, 'f', 0); // double precision
                else if (v.typeId() == QMetaType::QString)
                    valores << QStringLiteral("text:") + v.toString();
                else
                    valores << QStringLiteral("integer:%1").arg(v.toLongLong());
            }
            filas << valores.join(QLatin1Char(';'));
        }
        return filas.join(QStringLiteral(" / "));
    }

    /// A price list, list 1, with one price, so that "nothing written" can be checked.
    void ListaExistente() {
        db->Ejecutar(
            QStringLiteral("insert into cabecera_precio values (1, 'Tarifa general', '2026-01-01',"
                           " '2026-01-01', '2026-12-31')"));
        db->Ejecutar(QStringLiteral("insert into detalle_precio values (1, 10, 9.95, null)"));
        db->Ejecutar(QStringLiteral(
            "insert into relaciones_fijas values ('TarifaAplicada', 1, 'cliente 12')"));
    }

  private slots:
    void initTestCase() { QStandardPaths::setTestModeEnabled(true); }
    void init() {
        db = std::make_unique<BaseDatosPrueba>();
        QLocale::setDefault(QLocale(QLocale::Spanish, QLocale::Spain));
    }
    void cleanup() {
        db.reset();
        QLocale::setDefault(QLocale::c());
    }

    // --- Inserting ----------------------------------------------------------------------------

    void insertarCabecera_data() {
        QTest::addColumn<QString>("idioma");
        QTest::addColumn<QString>("campos");
        QTest::addColumn<QString>("guardado");
        QTest::newRow("a new list, Spain")
            << "es_ES"
            << "identificador=2|Descripcion=Rebajas de "
               "verano|fechaalta=15/6/2026|preciovalidodesde=1/7/2026|"
               "preciovalidohasta=31/8/2026|"
            << "integer:2;text:Rebajas de verano;text:2026-06-15;text:2026-07-01;text:2026-08-31";
        QTest::newRow("a new list, US")
            << "en_US"
            << "identificador=2|Descripcion=Summer "
               "sale|fechaalta=6/15/2026|preciovalidodesde=7/1/2026|"
               "preciovalidohasta=8/31/2026|"
            << "integer:2;text:Summer sale;text:2026-06-15;text:2026-07-01;text:2026-08-31";
        QTest::newRow("first and last dates, Spain")
            << "es_ES"
            << "identificador=2|Descripcion=Siempre|fechaalta=1/1/1601|preciovalidodesde=1/1/1601|"
               "preciovalidohasta=31/12/9999|"
            << "integer:2;text:Siempre;text:1601-01-01;text:1601-01-01;text:9999-12-31";
        QTest::newRow("first and last dates, US")
            << "en_US"
            << "identificador=2|Descripcion=Always|fechaalta=1/1/1601|preciovalidodesde=1/1/1601|"
               "preciovalidohasta=12/31/9999|"
            << "integer:2;text:Always;text:1601-01-01;text:1601-01-01;text:9999-12-31";
        QTest::newRow("apostrophes in the name")
            << "es_ES"
            << "identificador=2|Descripcion=Precios d'O'Brien "
               "''|fechaalta=1/2/2026|preciovalidodesde=1/2/2026|"
               "preciovalidohasta=1/3/2026|"
            << "integer:2;text:Precios d'O'Brien "
               "'';text:2026-02-01;text:2026-02-01;text:2026-03-01";
        QTest::newRow("percent, underscore and SQL in the name")
            << "es_ES"
            << "identificador=2|Descripcion=50% dto_a'); drop table productos; "
               "--|fechaalta=1/2/2026|"
               "preciovalidodesde=1/2/2026|preciovalidohasta=1/3/2026|"
            << "integer:2;text:50% dto_a'); drop table productos; "
               "--;text:2026-02-01;text:2026-02-01;text:2026-03-01";
        QTest::newRow("non-ASCII letters")
            << "es_ES"
            << "identificador=2|Descripcion=Niños: año nuevo, 5 € "
               "¡ya!|fechaalta=1/2/2026|preciovalidodesde=1/2/2026|"
               "preciovalidohasta=1/3/2026|"
            << "integer:2;text:Niños: año nuevo, 5 € "
               "¡ya!;text:2026-02-01;text:2026-02-01;text:2026-03-01";
        QTest::newRow("an equals sign in a value")
            << "es_ES"
            << "identificador=2|Descripcion=2x1 = "
               "regalo|fechaalta=1/2/2026|preciovalidodesde=1/2/2026|"
               "preciovalidohasta=1/3/2026|"
            << "integer:2;text:2x1 = regalo;text:2026-02-01;text:2026-02-01;text:2026-03-01";
        QTest::newRow("empty name stays empty, not Null")
            << "es_ES"
            << "identificador=2|Descripcion=|fechaalta=1/2/2026|preciovalidodesde=1/2/"
               "2026|preciovalidohasta=1/3/2026|"
            << "integer:2;text:;text:2026-02-01;text:2026-02-01;text:2026-03-01";
        QTest::newRow("blanks of a name are kept")
            << "es_ES"
            << "identificador=2|Descripcion=  VIP  "
               "|fechaalta=1/2/2026|preciovalidodesde=1/2/2026|preciovalidohasta=1/3/2026|"
            << "integer:2;text:  VIP  ;text:2026-02-01;text:2026-02-01;text:2026-03-01";
        QTest::newRow("column names in any case, any order")
            << "es_ES"
            << "PRECIOVALIDOHASTA=1/3/2026|Identificador=2|descripcion=Orden|FechaAlta=1/2/2026|"
               "PrecioValidoDesde=2026-02-01|"
            << "integer:2;text:Orden;text:2026-02-01;text:2026-02-01;text:2026-03-01";
        QTest::newRow("greatest code")
            << "es_ES"
            << "identificador=2147483647|Descripcion=x|fechaalta=1/2/2026|"
               "preciovalidodesde=1/2/2026|preciovalidohasta=1/3/2026|"
            << "integer:2147483647;text:x;text:2026-02-01;text:2026-02-01;text:2026-03-01";
    }
    void insertarCabecera() {
        QFETCH(QString, idioma);
        QFETCH(QString, campos);
        QFETCH(QString, guardado);
        QLocale::setDefault(QLocale(idioma));
        ListaExistente();
        Insertar(QStringLiteral("cabecera_precio"), campos);
        const QString columnas = QStringLiteral(
            "identificador, descripcion, fechaalta, preciovalidodesde, preciovalidohasta");
        QCOMPARE(Volcado(QStringLiteral("cabecera_precio"), columnas),
                 QStringLiteral("integer:1;text:Tarifa "
                                "general;text:2026-01-01;text:2026-01-01;text:2026-12-31 / ") +
                     guardado);
        QVERIFY(
            db->Valor(QStringLiteral("select count(*) from productos")).isValid()); // still there
    }

    void insertarPrecio_data() {
        QTest::addColumn<QString>("campos");
        QTest::addColumn<QString>("guardado");
        QTest::addColumn<QString>("leidoES");
        QTest::newRow("comma") << "identificador=1|producto=20|precio=12,5|"
                               << "real:12.5;null"
                               << "12,5";
        QTest::newRow("point") << "identificador=1|producto=20|precio=12.50|"
                               << "real:12.5;null"
                               << "12,5";
        QTest::newRow("whole") << "identificador=1|producto=20|precio=7|"
                               << "integer:7;null"
                               << "7";
        QTest::newRow("negative") << "identificador=1|producto=20|precio=-3|"
                                  << "integer:-3;null"
                                  << "-3";
        QTest::newRow("no integer part") << "identificador=1|producto=20|precio=,75|"
                                         << "real:0.75;null"
                                         << "0,75";
        QTest::newRow("leading zeros") << "identificador=1|producto=20|precio=0012,30|"
                                       << "real:12.3;null"
                                       << "12,3";
        QTest::newRow("a point is never a thousands separator")
            << "identificador=1|producto=20|precio=1.234|"
            << "real:1.234;null"
            << "1,234";
        QTest::newRow("blanks around") << "identificador=1|producto=20|precio= 4,95 |"
                                       << "real:4.95;null"
                                       << "4,95";
        QTest::newRow("15 significant digits")
            << "identificador=1|producto=20|precio=1234567890123,45|"
            << "real:1234567890123.45;null"
            << "1234567890123,45";
        QTest::newRow("zeros after the decimals don't count")
            << "identificador=1|producto=20|precio=0,100000000000000000|"
            << "real:0.1;null"
            << "0,1";
        QTest::newRow("textile variant keeps its zeros")
            << "identificador=1|producto=20|precio=5|CodProductoTextil=0201|"
            << "integer:5;text:0201"
            << "5";
        QTest::newRow("textile product without variants")
            << "identificador=1|producto=20|precio=5|CodProductoTextil=-1|"
            << "integer:5;text:-1"
            << "5";
    }
    void insertarPrecio() {
        QFETCH(QString, campos);
        QFETCH(QString, guardado);
        QFETCH(QString, leidoES);
        ListaExistente();
        Insertar(QStringLiteral("detalle_precio"), campos);
        QCOMPARE(Volcado(QStringLiteral("detalle_precio where producto = 20"),
                         QStringLiteral("precio, codproductotextil")),
                 guardado);
        // Seen at once by the next query, and read back as the screens show it.
        ADODB::Recordset rs;
        rs.Open(QStringLiteral(
                    "select precio from detalle_precio where identificador = 1 and producto = 20"),
                Conexion());
        QCOMPARE(rs.RecordCount(), 1);
        QCOMPARE(rs.Fields(QStringLiteral("PRECIO")).Texto(), leidoES);
    }

    void insertarOtrosTipos_data() {
        QTest::addColumn<QString>("tabla");
        QTest::addColumn<QString>("campos");
        QTest::addColumn<QString>("columnas");
        QTest::addColumn<QString>("guardado");
        for (const char *si : {"S", "s", "T", "1", "-1", "Verdadero", "True", "sí"})
            QTest::addRow("Boolean %s", si)
                << "configuracionregional"
                << QStringLiteral("segundoImpuesto=%1|nombre=España|").arg(QString::fromUtf8(si))
                << "segundoimpuesto, nombre"
                << "integer:1;text:España";
        for (const char *no : {"N", "F", "0", "Falso", "false", "No"})
            QTest::addRow("Boolean %s", no)
                << "configuracionregional"
                << QStringLiteral("segundoImpuesto=%1|nombre=España|").arg(QString::fromUtf8(no))
                << "segundoimpuesto, nombre"
                << "integer:0;text:España";
        QTest::newRow("small whole numbers and reals")
            << "opciones"
            << "NumDecimales=2|anchopantalla=15360|altopantalla=11085,5|estiloaspecto=-32768|"
            << "numdecimales, anchopantalla, altopantalla, estiloaspecto"
            << "integer:2;real:15360.0;real:11085.5;integer:-32768";
        QTest::newRow("fixed relation, column datoN") << "relaciones_fijas"
                                                      << "indice=TarifaAplicada|datoN=7|"
                                                      << "indice, daton, dato1"
                                                      << "text:TarifaAplicada;integer:7;null";
    }
    void insertarOtrosTipos() {
        QFETCH(QString, tabla);
        QFETCH(QString, campos);
        QFETCH(QString, columnas);
        QFETCH(QString, guardado);
        Insertar(tabla, campos);
        QCOMPARE(Volcado(tabla, columnas), guardado);
    }

    // --- Refusals: nothing written ----------------------------------------------------------

    void rechazos_data() {
        QTest::addColumn<QString>("operacion");
        QTest::addColumn<QString>("tabla");
        QTest::addColumn<QString>("campos");
        QTest::addColumn<QString>("criterio");
        QTest::addColumn<QString>("motivo");
        const QString nueva = QStringLiteral(
            "identificador=2|Descripcion=Nueva|fechaalta=1/2/2026|preciovalidodesde=1/2/2026|");
        QTest::newRow("letters in a code") << "insertar"
                                           << "detalle_precio"
                                           << "identificador=1a|producto=20|precio=5|"
                                           << ""
                                           << "se esperaba un número entero";
        QTest::newRow("decimal code") << "insertar"
                                      << "detalle_precio"
                                      << "identificador=1,5|producto=20|precio=5|"
                                      << ""
                                      << "se esperaba un número entero";
        QTest::newRow("code beyond 32 bits") << "insertar"
                                             << "detalle_precio"
                                             << "identificador=2147483648|producto=20|precio=5|"
                                             << ""
                                             << "no cabe en un número entero";
        QTest::newRow("code far beyond 64 bits")
            << "insertar"
            << "detalle_precio"
            << "identificador=1|producto=99999999999999999999999|precio=5|"
            << ""
            << "no cabe en un número entero";
        QTest::newRow("small number beyond 16 bits") << "insertar"
                                                     << "opciones"
                                                     << "numdecimales=32768|"
                                                     << ""
                                                     << "no cabe en un número entero corto";
        QTest::newRow("empty code") << "insertar"
                                    << "detalle_precio"
                                    << "identificador=|producto=20|precio=5|"
                                    << ""
                                    << "está vacío";
        QTest::newRow("both separators in a price")
            << "insertar"
            << "detalle_precio"
            << "identificador=1|producto=20|precio=1.234,56|"
            << ""
            << "una coma o un punto";
        QTest::newRow("two commas in a price") << "insertar"
                                               << "detalle_precio"
                                               << "identificador=1|producto=20|precio=12,5,0|"
                                               << ""
                                               << "una coma o un punto";
        QTest::newRow("currency sign in a price") << "insertar"
                                                  << "detalle_precio"
                                                  << "identificador=1|producto=20|precio=12€|"
                                                  << ""
                                                  << "una coma o un punto";
        QTest::newRow("exponent in a price") << "insertar"
                                             << "detalle_precio"
                                             << "identificador=1|producto=20|precio=1e3|"
                                             << ""
                                             << "una coma o un punto";
        QTest::newRow("only a separator") << "insertar"
                                          << "detalle_precio"
                                          << "identificador=1|producto=20|precio=,|"
                                          << ""
                                          << "una coma o un punto";
        QTest::newRow("16 significant digits")
            << "insertar"
            << "detalle_precio"
            << "identificador=1|producto=20|precio=12345678901234,56|"
            << ""
            << "15 cifras";
        QTest::newRow("empty price") << "insertar"
                                     << "detalle_precio"
                                     << "identificador=1|producto=20|precio=|"
                                     << ""
                                     << "está vacío";
        QTest::newRow("impossible date")
            << "insertar"
            << "cabecera_precio" << nueva + "preciovalidohasta=31/2/2026|"
            << ""
            << "no es una fecha válida";
        QTest::newRow("US date in Spain")
            << "insertar"
            << "cabecera_precio" << nueva + "preciovalidohasta=12/31/2026|"
            << ""
            << "d/M/yyyy";
        QTest::newRow("two-digit year") << "insertar"
                                        << "cabecera_precio" << nueva + "preciovalidohasta=1/3/26|"
                                        << ""
                                        << "no es una fecha válida";
        QTest::newRow("Boolean of another kind") << "insertar"
                                                 << "configuracionregional"
                                                 << "segundoimpuesto=quizá|"
                                                 << ""
                                                 << "se esperaba S o N";
        QTest::newRow("last item not closed") << "insertar"
                                              << "detalle_precio"
                                              << "identificador=1|producto=20|precio=5"
                                              << ""
                                              << "no termina en \"|\"";
        QTest::newRow("a | inside a name")
            << "insertar"
            << "cabecera_precio"
            << "identificador=2|Descripcion=Rebajas|verano|fechaalta=1/2/2026|"
            << ""
            << "\"verano\" no tiene la forma columna=valor";
        QTest::newRow("a column twice") << "insertar"
                                        << "cabecera_precio"
                                        << "identificador=2|Descripcion=Rebajas|fechaalta=1/1/2000|"
                                           "fechaalta=1/2/2026|"
                                        << ""
                                        << "aparece dos veces";
        QTest::newRow("empty column name") << "insertar"
                                           << "detalle_precio"
                                           << "=5|"
                                           << ""
                                           << "no dice la columna";
        QTest::newRow("unknown column") << "insertar"
                                        << "detalle_precio"
                                        << "identificador=1|preciooferta=5|"
                                        << ""
                                        << "no tiene la columna \"preciooferta\"";
        QTest::newRow("unknown table") << "insertar"
                                       << "precios"
                                       << "identificador=1|"
                                       << ""
                                       << "\"precios\"";
        QTest::newRow("empty list") << "insertar"
                                    << "detalle_precio"
                                    << ""
                                    << ""
                                    << "está vacía";
        QTest::newRow("only a bar") << "insertar"
                                    << "detalle_precio"
                                    << "|"
                                    << ""
                                    << "no tiene la forma";
        QTest::newRow("update with a bad date")
            << "modificar"
            << "cabecera_precio"
            << "preciovalidodesde=1/1/2027|preciovalidohasta=32/1/2027|"
            << "identificador=1"
            << "no es una fecha válida";
        QTest::newRow("update with an unknown column") << "modificar"
                                                       << "cabecera_precio"
                                                       << "precio=5|"
                                                       << "identificador=1"
                                                       << "no tiene la columna";
        QTest::newRow("update without criterion") << "modificar"
                                                  << "cabecera_precio"
                                                  << "descripcion=Todas|"
                                                  << "  "
                                                  << "Falta el criterio";
        QTest::newRow("update with a wrong criterion") << "modificar"
                                                       << "cabecera_precio"
                                                       << "descripcion=Otra|"
                                                       << "identificador = = 1"
                                                       << "syntax error";
        QTest::newRow("delete without criterion") << "borrar"
                                                  << "detalle_precio"
                                                  << ""
                                                  << ""
                                                  << "Falta el criterio";
        QTest::newRow("delete with a wrong criterion") << "borrar"
                                                       << "detalle_precio"
                                                       << ""
                                                       << "identificador=1 and codigo_inexistente=3"
                                                       << (BaseDatosPrueba::EnPostgreSQL()
                                                               ? "does not exist"
                                                               : "no such column");
        QTest::newRow("delete from an unknown table") << "borrar"
                                                      << "precios"
                                                      << ""
                                                      << "identificador=1"
                                                      << "\"precios\"";
    }
    void rechazos() {
        QFETCH(QString, operacion);
        QFETCH(QString, tabla);
        QFETCH(QString, campos);
        QFETCH(QString, criterio);
        QFETCH(QString, motivo);
        ListaExistente();
        const QString columnasCabecera = QStringLiteral(
            "identificador, descripcion, fechaalta, preciovalidodesde, preciovalidohasta");
        const QString cabecera = Volcado(QStringLiteral("cabecera_precio"), columnasCabecera);
        const QString detalle = Volcado(QStringLiteral("detalle_precio"),
                                        QStringLiteral("identificador, producto, precio"));
        const QString opciones =
            Volcado(QStringLiteral("opciones"), QStringLiteral("numdecimales"));
        const QString regional =
            Volcado(QStringLiteral("configuracionregional"), QStringLiteral("segundoimpuesto"));

        const QString error = ErrorDe([&] {
            if (operacion == QLatin1String("insertar"))
                Insertar(tabla, campos);
            else if (operacion == QLatin1String("modificar"))
                Modificar(tabla, campos, criterio);
            else
                Borrar(tabla, criterio);
        });
        QVERIFY2(!error.isNull(), "the write must be refused with ErrorBD");
        QVERIFY2(error.contains(motivo), qPrintable(error));

        QCOMPARE(Volcado(QStringLiteral("cabecera_precio"), columnasCabecera), cabecera);
        QCOMPARE(Volcado(QStringLiteral("detalle_precio"),
                         QStringLiteral("identificador, producto, precio")),
                 detalle);
        QCOMPARE(Volcado(QStringLiteral("opciones"), QStringLiteral("numdecimales")), opciones);
        QCOMPARE(
            Volcado(QStringLiteral("configuracionregional"), QStringLiteral("segundoimpuesto")),
            regional);
    }

    // --- Updating and deleting -----------------------------------------------------------------

    void modificarPeriodo_data() {
        QTest::addColumn<QString>("idioma");
        QTest::addColumn<QString>("campos");
        QTest::addColumn<QString>("desde");
        QTest::addColumn<QString>("hasta");
        QTest::newRow("Spain") << "es_ES"
                               << "preciovalidodesde=1/3/2027|preciovalidohasta=31/3/2027|"
                               << "1/3/2027"
                               << "31/3/2027";
        QTest::newRow("US") << "en_US"
                            << "preciovalidodesde=3/1/2027|preciovalidohasta=3/31/2027|"
                            << "3/1/2027"
                            << "3/31/2027";
        QTest::newRow("first and last days")
            << "es_ES"
            << "preciovalidodesde=1/1/1601|preciovalidohasta=31/12/9999|"
            << "1/1/1601"
            << "31/12/9999";
    }
    void modificarPeriodo() {
        QFETCH(QString, idioma);
        QFETCH(QString, campos);
        QFETCH(QString, desde);
        QFETCH(QString, hasta);
        QLocale::setDefault(QLocale(idioma));
        ListaExistente();
        db->Ejecutar(QStringLiteral("insert into cabecera_precio values (2, 'Otra', '2025-05-05', "
                                    "'2025-06-01', '2025-06-30')"));
        Modificar(QStringLiteral("cabecera_precio"), campos, QStringLiteral("identificador=1"));
        ADODB::Recordset rs;
        rs.Open(QStringLiteral("Select * from cabecera_precio order by identificador"), Conexion());
        QCOMPARE(rs.RecordCount(), 2);
        QCOMPARE(rs.Fields(QStringLiteral("PrecioValidoDesde")).Texto(), desde);
        QCOMPARE(rs.Fields(QStringLiteral("preciovalidohasta")).Texto(), hasta);
        // Columns the list doesn't name stay as they were, and so does the other list.
        QCOMPARE(rs.Fields(QStringLiteral("descripcion")).Texto(),
                 QStringLiteral("Tarifa general"));
        QCOMPARE(rs.Fields(QStringLiteral("fechaalta")).Value(), QVariant(QDate(2026, 1, 1)));
        rs.MoveNext();
        QCOMPARE(rs.Fields(QStringLiteral("preciovalidodesde")).Value(),
                 QVariant(QDate(2025, 6, 1)));
        QCOMPARE(rs.Fields(QStringLiteral("preciovalidohasta")).Value(),
                 QVariant(QDate(2025, 6, 30)));
    }

    void modificarTextoConApostrofos() {
        ListaExistente();
        Modificar(QStringLiteral("cabecera_precio"),
                  QStringLiteral("Descripcion=L'Hospitalet 50%|"),
                  QStringLiteral("descripcion='Tarifa general'"));
        QCOMPARE(db->Valor(QStringLiteral(
                               "select descripcion from cabecera_precio where identificador = 1"))
                     .toString(),
                 QStringLiteral("L'Hospitalet 50%"));
        // A criterion holding an apostrophe, escaped in SQL's way, is run as given.
        Modificar(QStringLiteral("cabecera_precio"), QStringLiteral("Descripcion=Otra|"),
                  QStringLiteral("descripcion='L''Hospitalet 50%'"));
        QCOMPARE(db->Valor(QStringLiteral(
                               "select descripcion from cabecera_precio where identificador = 1"))
                     .toString(),
                 QStringLiteral("Otra"));
    }

    void borrar_data() {
        QTest::addColumn<QString>("tabla");
        QTest::addColumn<QString>("criterio");
        QTest::addColumn<int>("quedan");
        QTest::newRow("a list's header") << "cabecera_precio"
                                         << "identificador=1" << 1;
        QTest::newRow("a list's prices") << "detalle_precio"
                                         << "identificador=1" << 1;
        QTest::newRow("one price") << "detalle_precio"
                                   << "identificador=1 and producto=10" << 2;
        QTest::newRow("one variant's price")
            << "detalle_precio"
            << "identificador=1 and producto=11 and CodProductoTextil='0201'" << 2;
        QTest::newRow("the list's fixed relations") << "relaciones_fijas"
                                                    << "indice='TarifaAplicada' and datoN = 1" << 1;
        QTest::newRow("no row meets it") << "detalle_precio"
                                         << "identificador=99" << 3;
        QTest::newRow("table name in capitals") << "DETALLE_PRECIO"
                                                << "identificador=2" << 2;
    }
    void borrar() {
        QFETCH(QString, tabla);
        QFETCH(QString, criterio);
        QFETCH(int, quedan);
        ListaExistente();
        db->Ejecutar(QStringLiteral("insert into cabecera_precio values (2, 'Otra', '2025-05-05', "
                                    "'2025-06-01', '2025-06-30')"));
        db->Ejecutar(QStringLiteral(
            "insert into detalle_precio values (1, 11, 3, '0201'), (2, 10, 8, null)"));
        db->Ejecutar(
            QStringLiteral("insert into relaciones_fijas values ('TarifaAplicada', 2, null)"));
        Borrar(tabla, criterio);
        ADODB::Recordset rs;
        rs.Open(QStringLiteral("select count(*) as n from ") + tabla, Conexion());
        QCOMPARE(rs.Fields(QStringLiteral("N")).Entero(), quedan);
    }

    // --- What the program does with it --------------------------------------------------------

    void cambiarUnPrecio() {
        // A new price replaces the old one by a delete and an insert; the listing sees it at once.
        ListaExistente();
        Borrar(QStringLiteral("detalle_precio"), QStringLiteral("identificador=1 and producto=10"));
        Insertar(QStringLiteral("detalle_precio"),
                 QStringLiteral("identificador=1|producto=10|precio=8,75|"));
        ADODB::Recordset rs;
        rs.Open(
            QStringLiteral("select producto, precio from detalle_precio where identificador = 1"),
            Conexion());
        QCOMPARE(rs.RecordCount(), 1);
        QCOMPARE(rs.Fields(QStringLiteral("producto")).Entero(), 10);
        QCOMPARE(rs.Fields(QStringLiteral("precio")).Texto(), QStringLiteral("8,75"));
        QCOMPARE(rs.Fields(QStringLiteral("precio")).Value(), QVariant(8.75));
    }

    void borrarUnaLista() {
        // The three deletes of a list, in their order: nothing of list 1 is left, list 2 untouched.
        ListaExistente();
        db->Ejecutar(QStringLiteral("insert into cabecera_precio values (2, 'Otra', '2025-05-05', "
                                    "'2025-06-01', '2025-06-30')"));
        db->Ejecutar(QStringLiteral("insert into detalle_precio values (2, 10, 8, null)"));
        const QString lista = QStringLiteral("1");
        Borrar(QStringLiteral("cabecera_precio"), QStringLiteral("identificador=") + lista);
        Borrar(QStringLiteral("detalle_precio"), QStringLiteral("identificador=") + lista);
        Borrar(QStringLiteral("relaciones_fijas"),
               QStringLiteral("indice='TarifaAplicada' and datoN = ") + lista);
        QCOMPARE(db->Valor(QStringLiteral("select count(*) from cabecera_precio")).toInt(), 1);
        QCOMPARE(db->Valor(QStringLiteral("select count(*) from detalle_precio")).toInt(), 1);
        QCOMPARE(db->Valor(QStringLiteral("select count(*) from relaciones_fijas")).toInt(), 0);
        QCOMPARE(db->Valor(QStringLiteral("select identificador from detalle_precio")).toInt(), 2);
    }
};

TARIFAS_PRUEBAS_SIN_VENTANAS(TstSvcRegistros)
#include "tst_svcregistros.moc"
