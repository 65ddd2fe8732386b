// Finding and preparing the suite's database: the schema a database lacks, the demo shop on a
// first start, and the terminal's own data source.
#include "apoyo/ejecucion.h"
#include "apoyo/errores.h"
#include "platform/datos/cadenaconexion.h"
#include "platform/datos/errorbd.h"
#include "suite/datos/esquema.h"
#include "suite/datos/svcconexion.h"

#include <QDir>
#include <QFile>
#include <QSqlQuery>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>
#include <sys/resource.h>

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

class TstSvcConexion : public QObject {
    Q_OBJECT
    QTemporaryDir dir;
    QString corvanta;

    ADODB::Connection &Abrir(ADODB::Connection &c, const QString &nombre) {
        c.Open("sqlite:" + dir.filePath(nombre));
        return c;
    }

  private slots:
    void initTestCase() {
        QStandardPaths::setTestModeEnabled(true);
        corvanta = QDir(DirectorioDatosSuite()).filePath(QStringLiteral("Corvanta.sqlite"));
    }
    void init() {
        qunsetenv("TARIFAS_DB");
        qunsetenv("TARIFAS_DEMO");
        QFile::remove(corvanta);
    }
    void cleanupTestCase() { QFile::remove(corvanta); }

    void cadenaPorDefecto() {
        qputenv("TARIFAS_DB", "  postgresql://u:p@127.0.0.1:5432/suite ");
        QCOMPARE(SvcConexion::CadenaSuite(),
                 QStringLiteral("postgresql://u:p@127.0.0.1:5432/suite"));
    }

    void primerArranque_data() {
        QTest::addColumn<bool>("porDefecto");
        QTest::addColumn<QByteArray>("demo"); // TARIFAS_DEMO
        QTest::addColumn<bool>("ficheroVacio");
        QTest::addColumn<bool>("conTienda");
        QTest::newRow("default place: the demo shop") << true << QByteArray() << false << true;
        QTest::newRow("default place, empty file: the demo shop")
            << true << QByteArray() << true << true;
        QTest::newRow("a file named: schema only") << false << QByteArray() << false << false;
        QTest::newRow("a file named, empty: schema only") << false << QByteArray() << true << false;
        QTest::newRow("a file named, demo asked") << false << QByteArray("1") << false << true;
    }
    void primerArranque() {
        QFETCH(bool, porDefecto);
        QFETCH(QByteArray, demo);
        QFETCH(bool, ficheroVacio);
        QFETCH(bool, conTienda);
        const QString ruta =
            porDefecto
                ? QDir(DirectorioDatosSuite()).filePath(QStringLiteral("tarifas.sqlite"))
                : dir.filePath(QStringLiteral("nueva%1.sqlite").arg(QTest::currentDataTag()));
        QFile::remove(ruta);
        if (ficheroVacio) {
            QFile f(ruta);
            QVERIFY(f.open(QIODevice::WriteOnly));
        }
        if (!porDefecto)
            qputenv("TARIFAS_DB", ("sqlite:" + ruta).toUtf8());
        if (!demo.isEmpty())
            qputenv("TARIFAS_DEMO", demo);
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
            QVERIFY2(q.exec(QStringLiteral("select %1 from %2").arg(columnas.join(','), t.nombre)),
                     t.nombre);
            filas += Cuenta(c, QLatin1String(t.nombre));
        }
        QCOMPARE(filas > 0, conTienda);
        // The demo terminal has its employee, and some products are marked deleted.
        QCOMPARE(Cuenta(c, "opciones_terminal where identificador = 'CAJA1'"), int(conTienda));
        QCOMPARE(Cuenta(c, "productos where borrar <> 0") > 0, conTienda);
        // The terminal's own data source names the demo terminal.
        ADODB::Connection t;
        t.Open(QStringLiteral("dsn=Corvanta"));
        QCOMPARE(Valor(t, "select list2 from listadostemporal"), QVariant("CAJA1"));
        c.Close();
        if (porDefecto)
            QFile::remove(ruta);
    }

    void baseExistenteSoloRecibeLoQueFalta_data() {
        QTest::addColumn<QString>("tabla");
        QTest::newRow("same case") << "productos";
        QTest::newRow("capitals") << "CABECERA_PRECIO";
    }
    void baseExistenteSoloRecibeLoQueFalta() {
        // Its own rows and columns stay, nothing of the demo comes in even when asked, and the
        // tables it lacked are there now; a second start finds nothing to do.
        QFETCH(QString, tabla);
        const QString nombre = QTest::currentDataTag() + QStringLiteral(".sqlite");
        {
            ADODB::Connection c;
            QVERIFY(QSqlQuery(Abrir(c, nombre).Base())
                        .exec("create table " + tabla + " (codigo integer, propia text)"));
            QVERIFY(QSqlQuery(c.Base()).exec("insert into " + tabla + " values (1, 'dato')"));
        }
        qputenv("TARIFAS_DEMO", "1");
        for (int vez = 0; vez < 2; ++vez) {
            ADODB::Connection c;
            SvcConexion().AbrirConexion("sqlite:" + dir.filePath(nombre), c);
            QCOMPARE(Tablas(c).size(), qsizetype(TablasSuite().size()));
            QCOMPARE(Valor(c, "select group_concat(propia) from " + tabla), QVariant("dato"));
            QCOMPARE(Cuenta(c, "opciones"), 0);
        }
    }

    void tablasTodoONada() {
        // A view stands where the last table should go: its creation fails, and the tables
        // made before it are undone, so the database is left as it was found.
        ADODB::Connection c;
        QVERIFY(QSqlQuery(Abrir(c, "vista.sqlite").Base())
                    .exec("create view traducciones as select 1 as idioma"));
        const QString error = ErrorDe([&] { CrearTablasQueFaltan(c, TablasSuite()); });
        QVERIFY2(error.contains("traducciones") && error.contains("already exists"),
                 qPrintable(error));
        QCOMPARE(Tablas(c), QStringList());
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

    void cadenaErronea() {
        ADODB::Connection c;
        QVERIFY_THROWS_EXCEPTION(ErrorBD,
                                 SvcConexion().AbrirConexion(QStringLiteral("mysql://x"), c));
        QVERIFY(!c.Abierta());
    }
};

TARIFAS_PRUEBAS_SIN_VENTANAS(TstSvcConexion)
#include "tst_svcconexion.moc"
