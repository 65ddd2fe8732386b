// Start-up: finding and preparing the suite's database (the schema it lacks, the demo shop on a
// first start, the terminal's own data source), then what the session record holds for each
// state of the suite's tables.
#include "apoyo/basedatosprueba.h"
#include "apoyo/ejecucion.h"
#include "apoyo/errores.h"
#include "platform/datos/cadenaconexion.h"
#include "session/principal.h"
#include "session/sesionsuite.h"
#include "suite/datos/demo.h"
#include "suite/datos/esquema.h"
#include "suite/datos/svcconexion.h"

#include <QSqlQuery>

#include <csignal>
#include <sys/resource.h>

using namespace ADODB;

namespace {

QVariant Valor(ADODB::Connection &c, const QString &sql) {
    QSqlQuery q(c.Base());
    return q.exec(sql) && q.next() ? q.value(0) : QVariant();
}

int Cuenta(ADODB::Connection &c, const QString &tabla) {
    return Valor(c, "select count(*) from " + tabla).toInt();
}

/// The tables of the file, in lower case and in order.
QStringList Tablas(ADODB::Connection &c) {
    QStringList tablas = c.Base().tables(QSql::Tables);
    for (QString &t : tablas)
        t = t.toLower();
    tablas.sort();
    return tablas;
}

} // namespace

class TstInicio : public QObject {
    Q_OBJECT
    QTemporaryDir dir;
    QString corvanta; // the terminal's own data source, as the embedded default "dsn=Corvanta"
    std::unique_ptr<BaseDatosPrueba> db;

    ADODB::Connection &Abrir(ADODB::Connection &c, const QString &nombre) {
        c.Open("sqlite:" + dir.filePath(nombre));
        return c;
    }

  private slots:
    void initTestCase() {
        QVERIFY(dir.isValid());
        corvanta = QDir(DirectorioDatosSuite()).filePath(QStringLiteral("Corvanta.sqlite"));
    }
    void cleanupTestCase() { QFile::remove(corvanta); }
    void init() {
        qunsetenv("TARIFAS_DB");
        qunsetenv("TARIFAS_DEMO");
        QFile::remove(corvanta);
        Principal::ReiniciarSesion();
        db = std::make_unique<BaseDatosPrueba>();
        SesionSuite.Conexion = std::make_unique<ADODB::Connection>();
        SesionSuite.Conexion->Open(db->Cadena());
    }
    void cleanup() {
        Principal::ReiniciarSesion();
        db.reset();
    }

    // A new database: at the default place, the demo shop comes with the schema; at a place
    // named, the schema alone.
    void primerArranque_data() {
        const auto caso = Pruebas::Tabla<bool, bool>();
        caso("default place: the demo shop", true, false);
        caso("default place, empty file: the demo shop", true, true);
        caso("a file named, empty: schema only", false, true);
    }
    void primerArranque() {
        const auto [porDefecto, ficheroVacio] = Pruebas::Fila<bool, bool>();
        const QString ruta =
            porDefecto
                ? QDir(DirectorioDatosSuite()).filePath(QStringLiteral("tarifas.sqlite"))
                : dir.filePath(
                      QStringLiteral("nueva%1.sqlite").arg(QLatin1String(QTest::currentDataTag())));
        QFile::remove(ruta);
        if (ficheroVacio) {
            QFile f(ruta);
            QVERIFY(f.open(QIODevice::WriteOnly));
        }
        if (!porDefecto)
            qputenv("TARIFAS_DB", ("sqlite:" + ruta).toUtf8());
        ADODB::Connection c;
        SvcConexion().AbrirConexion(QString(), c);
        QCOMPARE(c.Base().databaseName(), ruta);
        // Every table with every column of the schema, filled or not.
        QCOMPARE(Tablas(c).size(), qsizetype(TablasSuite().size()));
        int filas = 0;
        for (const TablaEsquema &t : TablasSuite()) {
            QStringList columnas;
            for (const ColumnaEsquema &col : t.columnas)
                columnas << QLatin1String(col.nombre);
            QSqlQuery q(c.Base());
            QVERIFY2(q.exec(QStringLiteral("select %1 from %2")
                                .arg(columnas.join(','), QLatin1String(t.nombre))),
                     t.nombre);
            filas += Cuenta(c, QLatin1String(t.nombre));
        }
        QCOMPARE(filas > 0, porDefecto);
        // The demo terminal has its employee, and some products are marked deleted.
        QCOMPARE(Cuenta(c, "opciones_terminal where identificador = 'CAJA1'"), int(porDefecto));
        QCOMPARE(Cuenta(c, "productos where borrar <> 0") > 0, porDefecto);
        // The terminal's own data source names the demo terminal.
        ADODB::Connection t;
        t.Open(QStringLiteral("dsn=Corvanta"));
        QCOMPARE(Valor(t, "select list2 from listadostemporal"), QVariant("CAJA1"));
        c.Close();
        if (porDefecto)
            QFile::remove(ruta);
    }

    void demoFallidaNoDejaTablas() {
        // The disk fills up while the demo shop goes in: the tables made before it go too, so
        // that the next start does it all again.
        const QString ruta = dir.filePath(QStringLiteral("llena.sqlite"));
        qputenv("TARIFAS_DB", ("sqlite:" + ruta).toUtf8());
        qputenv("TARIFAS_DEMO", "1");
        rlimit antes{};
        QVERIFY(getrlimit(RLIMIT_FSIZE, &antes) == 0);
        rlimit limite = antes;
        limite.rlim_cur = 96 * 1024; // the tables fit, the shop doesn't
        const auto senal = std::signal(SIGXFSZ, SIG_IGN);
        QVERIFY(setrlimit(RLIMIT_FSIZE, &limite) == 0);
        const QString error = ErrorDe([] {
            ADODB::Connection c;
            SvcConexion().AbrirConexion(QString(), c);
        });
        setrlimit(RLIMIT_FSIZE, &antes);
        std::signal(SIGXFSZ, senal);
        QVERIFY2(error.contains("disk I/O error"), qPrintable(error));
        ADODB::Connection c;
        QCOMPARE(Tablas(Abrir(c, "llena.sqlite")), QStringList());
    }

    void demoPreciosExactos() {
        // Every price of the demo shop is a whole number of cents as stored, not the nearest
        // binary fraction of a sum (127.9499999999999 for 127.95).
        CargarTiendaDemo(db->Conexion());
        int precios = 0;
        for (const char *tabla : {"productos", "productostextil", "detalle_precio"}) {
            QSqlQuery q(db->Conexion().Base());
            QVERIFY(q.exec(QStringLiteral("select precio from %1 where precio is not null")
                               .arg(QLatin1String(tabla))));
            while (q.next()) {
                ++precios;
                const double precio = q.value(0).toDouble();
                QVERIFY2(QString::number(precio, 'f', 2).toDouble() == precio,
                         qPrintable(QStringLiteral("%1: %2")
                                        .arg(QLatin1String(tabla))
                                        .arg(precio, 0, 'g', 17)));
            }
        }
        QVERIFY(precios > 300);
        QCOMPARE(Valor(db->Conexion(), "select d.precio from detalle_precio d, productos p where "
                                       "p.codigo = d.producto and d.identificador = 1 and "
                                       "p.nombre = 'Pantalón elástico'")
                     .toDouble(),
                 127.95);
    }

    // The rows put in the tables, one table's letter each (o: options, t: terminals, e:
    // employees, r: regional settings), and the record after start-up: terminal, decimals,
    // multi-shop, shop, business, employee and name, second tax, tax name, region.
    void carga_data() {
        const auto caso = Pruebas::Tabla<QString, QString>();
        caso("empty tables keep what was there", "", "CAJA1|0|0|||0||0||");
        caso("multi-shop S", "o(2, 'S', 'Centro', 'TALLACOLOR')",
             "CAJA1|2|1|Centro|TALLACOLOR|0||0||");
        caso("multi-shop T as S", "o(3, 'T', 'Norte', '')", "CAJA1|3|1|Norte||0||0||");
        caso("lower-case s is no", "o(2, 's', 'Centro', 'x')", "CAJA1|2|0||x|0||0||");
        caso("Nulls", "o(null, null, 'Centro', null)", "CAJA1|0|0|||0||0||");
        caso("employee: name and one letter", "t('CAJA1', 7);e(7, 'María', 'López')",
             "CAJA1|0|0|||7|María L|0||");
        caso("employee, Null name", "t('CAJA1', 7);e(7, null, 'Ñúñez')", "CAJA1|0|0|||7| Ñ|0||");
        caso("employee of another terminal", "t('CAJA2', 7);e(7, 'Ana', 'Ruiz')",
             "CAJA1|0|0|||0||0||");
        caso("no terminal row: employee 0", "e(0, 'Genérico', 'Caja')",
             "CAJA1|0|0|||0|Genérico C|0||");
        caso("employee who doesn't exist", "t('CAJA1', 8)", "CAJA1|0|0|||8||0||");
        caso("regional settings", "r(true, 'IGIC', 'Canarias')", "CAJA1|0|0|||0||1|IGIC|Canarias");
        caso("Null tax name", "r(false, null, 'España')", "CAJA1|0|0|||0||0|Impuesto|España");
    }
    void carga() {
        const auto [filas, sesion] = Pruebas::Fila<QString, QString>();
        CrearTerminalSQLite(corvanta, QStringLiteral("TIENDA"), QStringLiteral("CAJA1"));
        const QMap<QChar, QString> tablas{
            {'o', "opciones (numdecimales, multitienda, nombretienda, tiponegocio)"},
            {'t', "opciones_terminal (identificador, empleado)"},
            {'e', "empleados (codigo, nombre, apellidos)"},
            {'r', "configuracionregional (segundoimpuesto, nombreimpuesto1, nombre)"}};
        for (const QString &fila : filas.split(';', Qt::SkipEmptyParts))
            db->Ejecutar("insert into " + tablas.value(fila[0]) + " values " + fila.mid(1));
        Principal::CargarSesion();
        const auto &s = SesionSuite;
        QCOMPARE(
            QStringList({s.list2, QString::number(s.NumDecimales), QString::number(s.multitienda),
                         s.nombretienda + '|' + s.TipoNegocio, QString::number(s.empleado),
                         s.EmpleadoNombre, QString::number(s.SegundoImpuesto), s.nombreimpuesto1,
                         s.NombreRegional})
                .join('|'),
            sesion);
        QCOMPARE(s.list1, QStringLiteral("TIENDA"));
    }
};

TARIFAS_PRUEBAS_SIN_VENTANAS(TstInicio)
#include "tst_inicio.moc"
