// Finding and preparing the suite's database.
#include "apoyo/ejecucion.h"
#include "platform/datos/cadenaconexion.h"
#include "platform/datos/errorbd.h"
#include "platform/datos/recordset.h"
#include "suite/datos/esquema.h"
#include "suite/datos/svcconexion.h"

#include <QDir>
#include <QFile>
#include <QSqlQuery>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

namespace {

int Cuenta(ADODB::Connection &c, const QString &tabla) {
    ADODB::Recordset rs;
    rs.Open(QStringLiteral("select count(*) as n from ") + tabla, c);
    return rs.Fields(QStringLiteral("n")).Entero();
}

} // namespace

class TstSvcConexion : public QObject {
    Q_OBJECT
    QTemporaryDir dir;
    QString corvanta;

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
        QVERIFY(SvcConexion::CadenaSuite().startsWith(QStringLiteral("sqlite:")));
        QVERIFY(SvcConexion::CadenaSuite().endsWith(QStringLiteral("tarifas.sqlite")));
        qputenv("TARIFAS_DB", "  postgresql://u:p@127.0.0.1:5432/suite ");
        QCOMPARE(SvcConexion::CadenaSuite(), QStringLiteral("postgresql://u:p@127.0.0.1:5432/suite"));
    }

    void primerArranque_data() {
        QTest::addColumn<bool>("porDefecto");
        QTest::addColumn<QByteArray>("demo");
        QTest::addColumn<bool>("ficheroVacio");
        QTest::addColumn<bool>("conTienda");
        QTest::newRow("default place: the demo shop") << true << QByteArray() << false << true;
        QTest::newRow("default place, first start cut short: the demo shop")
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
        const QString ruta = porDefecto
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
        QVERIFY(c.Abierta());
        QCOMPARE(c.Base().databaseName(), ruta);
        if (!conTienda) {
            for (const TablaEsquema &t : TablasSuite())
                QCOMPARE(Cuenta(c, QLatin1String(t.nombre)), 0);
            return;
        }
        QVERIFY(Cuenta(c, QStringLiteral("productos")) >= 200);
        QVERIFY(Cuenta(c, QStringLiteral("cabecera_precio")) >= 3);
        QVERIFY(Cuenta(c, QStringLiteral("detalle_precio")) > 0);
        QVERIFY(Cuenta(c, QStringLiteral("productostextil")) > 0);
        QVERIFY(Cuenta(c, QStringLiteral("productos_codigosextra")) > 0);
        QCOMPARE(Cuenta(c, QStringLiteral("opciones")), 1);
        ADODB::Recordset borrados;
        borrados.Open(QStringLiteral("select count(*) as n from productos where borrar <> 0"), c);
        QVERIFY(borrados.Fields(QStringLiteral("n")).Entero() > 0);
        // The demo terminal has its employee, and its own data source names it.
        ADODB::Recordset terminal;
        terminal.Open(QStringLiteral("select empleado from opciones_terminal where identificador = 'CAJA1'"), c);
        QCOMPARE(terminal.RecordCount(), 1);
        QVERIFY(QFile::exists(corvanta));
        ADODB::Connection t;
        t.Open(QStringLiteral("dsn=Corvanta"));
        ADODB::Recordset list2;
        list2.Open(QStringLiteral("Select list2 from listadostemporal"), t);
        QCOMPARE(list2.Fields(QStringLiteral("list2")).Texto(), QStringLiteral("CAJA1"));
        c.Close();
        if (porDefecto)
            QFile::remove(ruta);
    }

    void baseExistenteSoloRecibeLoQueFalta() {
        const QString ruta = dir.filePath(QStringLiteral("existente.sqlite"));
        {
            ADODB::Connection c;
            c.Open(QStringLiteral("sqlite:") + ruta);
            QSqlQuery q(c.Base());
            QVERIFY(q.exec(QStringLiteral("create table productos (codigo integer, codigocliente text, nombre text,"
                                          " precio numeric, seccion text, borrar integer, propia text)")));
            QVERIFY(q.exec(QStringLiteral("insert into productos values (1, 'A', 'Suya', 3, 'x', 0, 'dato')")));
        }
        ADODB::Connection c;
        SvcConexion().AbrirConexion(QStringLiteral("sqlite:") + ruta, c);
        // Its own rows and columns stay, nothing of the demo comes in, and the tables it
        // lacked are there now.
        QCOMPARE(Cuenta(c, QStringLiteral("productos")), 1);
        ADODB::Recordset rs;
        rs.Open(QStringLiteral("select propia from productos"), c);
        QCOMPARE(rs.Fields(QStringLiteral("propia")).Texto(), QStringLiteral("dato"));
        QCOMPARE(Cuenta(c, QStringLiteral("cabecera_precio")), 0);
        QCOMPARE(Cuenta(c, QStringLiteral("opciones")), 0);
    }

    void cadenaErronea() {
        ADODB::Connection c;
        QVERIFY_THROWS_EXCEPTION(ErrorBD, SvcConexion().AbrirConexion(QStringLiteral("mysql://x"), c));
        QVERIFY(!c.Abierta());
    }
};

TARIFAS_PRUEBAS_SIN_VENTANAS(TstSvcConexion)
#include "tst_svcconexion.moc"
