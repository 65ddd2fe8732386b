// The suite's database as the run gives it (an SQLite file, or a PostgreSQL server): units of
// work, and a connection that goes away or a statement that never ends while in use.
#include "apoyo/basedatosprueba.h"
#include "apoyo/ejecucion.h"
#include "apoyo/errores.h"
#include "platform/datos/recordset.h"
#include "platform/datos/transaccion.h"
#include "suite/datos/svcregistros.h"

#include <QSqlQuery>

namespace {

int Cuenta(ADODB::Connection &c, const QString &tabla) {
    ADODB::Recordset rs;
    rs.Open(QStringLiteral("select count(*) as n from ") + tabla, c);
    return rs.Fields(QStringLiteral("n")).Entero();
}

const QString lista = QStringLiteral("fechaalta=1/2/2026|preciovalidodesde=1/2/2026|"
                                     "preciovalidohasta=28/2/2026|");

} // namespace

class TstServidor : public QObject {
    Q_OBJECT

  private slots:
    void conexionPerdida_data() {
        QTest::addColumn<QString>("primero");
        QTest::newRow("a read comes first") << "leer";
        QTest::newRow("a write comes first") << "escribir";
        QTest::newRow("inside a unit of work") << "unidad";
    }
    void conexionPerdida() {
        // The server ends the connection under the program (a restart does the same): the
        // action that meets it fails and says why; the next one reconnects and works, but
        // never inside a unit of work, whose earlier writes went with the old connection.
        SOLO_POSTGRESQL("Only a server's connection can be cut from elsewhere");
        QFETCH(QString, primero);
        BaseDatosPrueba db;
        ADODB::Connection &c = db.Conexion();
        SvcRegistros registros;
        registros.InsertarRegistro(c, QStringLiteral("cabecera_precio"),
                                   QStringLiteral("identificador=1|Descripcion=Antes|") + lista, {},
                                   false, {});
        const auto leer = [&] {
            ADODB::Recordset rs;
            rs.Open(
                QStringLiteral("select descripcion from cabecera_precio order by identificador"),
                c);
            return rs.Fields(QStringLiteral("descripcion")).Texto();
        };
        const auto escribir = [&](int codigo) {
            registros.InsertarRegistro(
                c, QStringLiteral("cabecera_precio"),
                QStringLiteral("identificador=%1|Descripcion=Despues|").arg(codigo) + lista, {},
                false, {});
        };
        std::unique_ptr<ADODB::Transaccion> unidad;
        if (primero == QLatin1String("unidad")) {
            unidad = std::make_unique<ADODB::Transaccion>(c);
            escribir(5);
        }
        const QVariant proceso = db.Valor(QStringLiteral("select pg_backend_pid()"));
        ADODB::Connection administracion;
        administracion.Open(BaseDatosPrueba::CadenaServidor());
        QSqlQuery corte(administracion.Base());
        QVERIFY(corte.exec(
            QStringLiteral("select pg_terminate_backend(%1, 60000)").arg(proceso.toLongLong())));
        QVERIFY(corte.next() && corte.value(0).toBool());

        const QString error = ErrorDe(primero == QLatin1String("escribir")
                                          ? std::function<void()>([&] { escribir(2); })
                                          : std::function<void()>([&] { leer(); }));
        QVERIFY2(error.contains(QStringLiteral("terminating connection")), qPrintable(error));
        if (primero != QLatin1String("escribir")) // the record writer words its own errors
            QVERIFY2(error.contains(QStringLiteral("Se ha perdido la conexión")),
                     qPrintable(error));
        if (unidad) {
            QVERIFY(!ErrorDe([&] { leer(); }).isNull()); // still the old, dead connection
            unidad.reset();
        }
        QCOMPARE(leer(), QStringLiteral("Antes"));
        escribir(3);
        QCOMPARE(db.Valor(QStringLiteral("select count(*) from cabecera_precio")).toInt(), 2);
    }

    void unidades() {
        // Only the outermost unit of work commits: a nested one that commits leaves its writes
        // to the outer one, which here ends without committing, so nothing is stored.
        BaseDatosPrueba db;
        ADODB::Connection &c = db.Conexion();
        const auto escribir = [&](int codigo) {
            SvcRegistros().InsertarRegistro(
                c, "cabecera_precio",
                QStringLiteral("identificador=%1|Descripcion=X|").arg(codigo) + lista, {}, false,
                {});
        };
        {
            ADODB::Transaccion fuera(c);
            escribir(1);
            ADODB::Transaccion dentro(c);
            escribir(2);
            dentro.Commit();
        }
        QCOMPARE(Cuenta(c, "cabecera_precio"), 0);
        ADODB::Transaccion otra(c);
        escribir(3);
        otra.Commit();
        QCOMPARE(Cuenta(c, "cabecera_precio"), 1);
    }

    void conexionCerradaEnUnaUnidad() {
        // A connection found closed inside a unit of work, with no SQLSTATE to tell (a file
        // on a share that went, a driver that gave up): said as a lost connection; after the
        // unit, the next action opens it again.
        BaseDatosPrueba db;
        ADODB::Connection &c = db.Conexion();
        {
            ADODB::Transaccion unidad(c);
            c.Base().close();
            const QString error = ErrorDe([&] { Cuenta(c, "cabecera_precio"); });
            QVERIFY2(error.contains("Se ha perdido la conexión"), qPrintable(error));
        }
        QCOMPARE(Cuenta(c, "cabecera_precio"), 0);
    }

    void sentenciaQueNoAcaba() {
        // A statement the server doesn't finish in TARIFAS_ESPERA_SENTENCIA seconds is
        // cancelled and said so; the connection goes on serving.
        SOLO_POSTGRESQL("Only a server runs statements against a clock");
        BaseDatosPrueba db;
        qputenv("TARIFAS_ESPERA_SENTENCIA", "1");
        ADODB::Connection c;
        c.Open(db.Cadena());
        qunsetenv("TARIFAS_ESPERA_SENTENCIA");
        ADODB::Recordset rs;
        const QString error = ErrorDe([&] { rs.Open(QStringLiteral("select pg_sleep(20)"), c); });
        QVERIFY2(error.contains(QStringLiteral("en 1 s")), qPrintable(error));
        rs.Open(QStringLiteral("select 7 as n"), c);
        QCOMPARE(rs.Fields(QStringLiteral("n")).Entero(), 7);
    }
};

TARIFAS_PRUEBAS_SIN_VENTANAS(TstServidor)
#include "tst_servidor.moc"
