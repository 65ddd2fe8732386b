// Named data sources through unixODBC: the terminal's "dsn=Corvanta" as a user data source on
// Debian's SQLite ODBC driver, and (in the PostgreSQL run) the suite's database itself reached
// through the PostgreSQL ODBC driver. Each test program gets a home of its own; unixODBC takes
// the account's home from the password database, so ODBCINI points it there.
#include "apoyo/basedatosprueba.h"
#include "apoyo/ejecucion.h"
#include "apoyo/errores.h"
#include "platform/datos/avisocambios.h"
#include "platform/datos/cadenaconexion.h"
#include "platform/datos/recordset.h"
#include "session/principal.h"
#include "session/sesionsuite.h"
#include "suite/datos/esquema.h"
#include "suite/datos/svcconexion.h"
#include "suite/datos/svcregistros.h"

#include <QSignalSpy>
#include <QSqlQuery>

using namespace ADODB;

class TstOdbc : public QObject {
    Q_OBJECT
    QTemporaryDir casa;

    QString OdbcIni() const { return casa.filePath(QStringLiteral(".odbc.ini")); }

    /// The user's odbc.ini, as the README shows it: the terminal's SQLite file under the name
    /// Corvanta, and whatever other sources a test adds.
    void DefinirOrigenes(const QString &otros = {}) {
        QFile f(OdbcIni());
        QVERIFY(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
        f.write(QStringLiteral("[Corvanta]\n"
                               "Description = This terminal's name\n"
                               "Driver      = SQLite3\n"
                               "Database    = %1\n\n%2")
                    .arg(casa.filePath(QStringLiteral("terminal.sqlite")), otros)
                    .toUtf8());
    }

    void Terminal(const QString &list1, const QString &list2) {
        CrearTerminalSQLite(casa.filePath(QStringLiteral("terminal.sqlite")), list1, list2);
    }

  private slots:
    void initTestCase() {
        QVERIFY(casa.isValid());
        qputenv("HOME", casa.path().toLocal8Bit());
        qputenv("ODBCINI", OdbcIni().toLocal8Bit());
    }
    void init() { Principal::ReiniciarSesion(); }
    void cleanup() { Principal::ReiniciarSesion(); }

    void terminalPorOrigenDeUsuario() {
        DefinirOrigenes();
        Terminal(QStringLiteral("TIENDA 7"), QStringLiteral("CAJA D'OR"));
        ADODB::Connection c;
        c.Open(QStringLiteral("dsn=Corvanta"));
        QCOMPARE(c.Base().driverName(), QStringLiteral("QODBC"));
        c.Close();

        // Start-up: the terminal's name through ODBC, its employee from the suite's database.
        BaseDatosPrueba db;
        db.Ejecutar(QStringLiteral("insert into opciones_terminal values (?, ?)"),
                    {"CAJA D'OR", 4});
        db.Ejecutar(QStringLiteral("insert into empleados values (4, 'Lucía', 'Sanz')"));
        SesionSuite.Conexion = std::make_unique<ADODB::Connection>();
        SesionSuite.Conexion->Open(db.Cadena());
        Principal::CargarSesion();
        QCOMPARE(SesionSuite.list1, QStringLiteral("TIENDA 7"));
        QCOMPARE(SesionSuite.list2, QStringLiteral("CAJA D'OR"));
        QCOMPARE(SesionSuite.EmpleadoNombre, QStringLiteral("Lucía S"));
        // The suite's to fill: nothing of the embedded default was made.
        SvcConexion().AbrirConexion(db.Cadena(), *SesionSuite.Conexion);
        QVERIFY(!QFile::exists(QDir(DirectorioDatosSuite()).filePath("Corvanta.sqlite")));
    }

    void terminalSinTabla() {
        // The driver's own text reaches the error report.
        DefinirOrigenes();
        QFile::remove(casa.filePath(QStringLiteral("terminal.sqlite")));
        const QString error = ErrorDe([] { Principal::LeerList2(); });
        QVERIFY2(error.contains(QStringLiteral("listadostemporal")), qPrintable(error));
    }

    void origenQueNoAbre_data() {
        // Driver: the data source's line; esperado: what the message must say, besides the
        // source's name and the file that defines it.
        const auto caso = Pruebas::Tabla<QString, QString, QStringList>();
        caso("controlador no instalado", "Driver = NoInstalado", "",
             {"usa el controlador \"NoInstalado\", que no está instalado",
              "no hay una sección [NoInstalado] en"});
        caso("biblioteca que no está", "Driver = /no/existe/libodbcx.so", "",
             {"cuyo fichero \"/no/existe/libodbcx.so\" no está"});
        caso("sin controlador", "Description = nada", "", {"falta su línea \"Driver = …\""});
        caso(
            "controlador que falla", "Driver = SQLite3", "/no/existe/terminal.sqlite",
            {"el controlador \"SQLite3\" del origen",
             "no ha podido abrir lo que el origen señala (database = /no/existe/terminal.sqlite)"});
    }
    void origenQueNoAbre() {
        // A data source that is defined and can't be opened: the message says what is wrong
        // and where, not only the driver manager's words.
        const auto [driver, database, esperado] = Pruebas::Fila<QString, QString, QStringList>();
        DefinirOrigenes(QStringLiteral("[Mala]\n%1\n%2\n")
                            .arg(driver, database.isEmpty()
                                             ? QString()
                                             : QStringLiteral("Database = ") + database));
        const QString error = ErrorDe([] {
            ADODB::Connection c;
            c.Open(QStringLiteral("dsn=Mala"));
        });
        QVERIFY2(
            error.startsWith(QStringLiteral("No se puede abrir el origen de datos ODBC \"Mala\"")),
            qPrintable(error));
        QVERIFY2(error.contains(QStringLiteral("definido en \"%1\"").arg(OdbcIni())),
                 qPrintable(error));
        for (const QString &parte : esperado)
            QVERIFY2(error.contains(parte), qPrintable(error));
    }

    void terminalSinList2() {
        // The terminal's table lacks a column: the message names the terminal's data source
        // and what it leads to, and the column.
        DefinirOrigenes();
        const QString ruta = casa.filePath(QStringLiteral("terminal.sqlite"));
        QFile::remove(ruta);
        {
            ADODB::Connection t;
            t.Open(QStringLiteral("sqlite:") + ruta);
            QSqlQuery q(t.Base());
            QVERIFY(q.exec(QStringLiteral("create table listadostemporal (list1 text)")));
        }
        const QString error = ErrorDe([] { Principal::LeerList2(); });
        QVERIFY2(error.startsWith(QStringLiteral("No se puede leer el dato \"list2\" del terminal "
                                                 "en la tabla listadostemporal del origen de datos "
                                                 "\"dsn=Corvanta\" (el origen de datos ODBC "
                                                 "\"Corvanta\").")),
                 qPrintable(error));
        QVERIFY2(error.contains(QStringLiteral("list2")), qPrintable(error));
    }

    void homeNoEsLaCuenta() {
        // unixODBC reads the account's ~/.odbc.ini, not $HOME's: neither does the program.
        qunsetenv("ODBCINI");
        DefinirOrigenes();
        const bool visto = ExisteOrigenODBC(QStringLiteral("Corvanta"));
        qputenv("ODBCINI", OdbcIni().toLocal8Bit());
        QVERIFY(!visto);
        QVERIFY(ExisteOrigenODBC(QStringLiteral("Corvanta")));
    }

    void otroPuestoPorOdbc() {
        // The suite's SQLite file reached through a data source: the driver passes no change
        // on, yet another terminal's price in the list in hand shows here without a click.
        SOLO_SQLITE("The data source leads to the test's SQLite file");
        BaseDatosPrueba db;
        DefinirOrigenes(
            QStringLiteral("[Suite]\nDriver = SQLite3\nDatabase = %1\n").arg(db.Ruta()));
        db.Ejecutar(QStringLiteral("insert into cabecera_precio (identificador, descripcion) "
                                   "values (1, 'General')"));
        db.Ejecutar(QStringLiteral("insert into detalle_precio (identificador, producto, precio) "
                                   "values (1, 1, 11)"));
        ADODB::Connection c;
        c.Open(QStringLiteral("dsn=Suite"));
        QCOMPARE(c.Base().driverName(), QStringLiteral("QODBC"));
        ADODB::VigiaCambios vigia(c);
        vigia.VigilarLista(1);
        QSignalSpy cambios(&vigia, &ADODB::VigiaCambios::Cambio);
        QTest::qWait(ADODB::VigiaCambios::intervaloHuella + 200);
        SvcRegistros r;
        r.ModificarRegistro(db.Conexion(), QStringLiteral("detalle_precio"),
                            QStringLiteral("precio=22|"), {}, false,
                            QStringLiteral("identificador=1"), 0, {}, {}, {});
        QTRY_COMPARE(cambios.count(), 1);
    }

    void suiteEnPostgreSQL() {
        SOLO_POSTGRESQL("The suite's database through ODBC needs the PostgreSQL run's server");
        BaseDatosPrueba db(false); // its first use, through ODBC, creates the tables
        const CadenaConexion pg = CadenaConexion::Interpretar(db.Cadena());
        DefinirOrigenes(QStringLiteral("[Suite]\n"
                                       "Driver     = PostgreSQL Unicode\n"
                                       "Servername = %1\n"
                                       "Port       = %2\n"
                                       "Database   = %3\n"
                                       "Username   = %4\n"
                                       "Password   = %5\n")
                            .arg(pg.servidor)
                            .arg(pg.puerto)
                            .arg(pg.base, pg.usuario, pg.clave));
        Terminal(QStringLiteral("TIENDA"), QStringLiteral("CAJA1"));
        SesionSuite.Conexion = std::make_unique<ADODB::Connection>();
        ADODB::Connection &c = *SesionSuite.Conexion;
        SvcConexion().AbrirConexion(QStringLiteral("dsn=Suite"), c);
        QCOMPARE(c.Base().driverName(), QStringLiteral("QODBC"));
        db.Ejecutar(QStringLiteral("insert into opciones_terminal values ('CAJA1', 1)"));
        db.Ejecutar(QStringLiteral("insert into productos values (1, 'C1', 'Camisa', 20, 'S', 0), "
                                   "(2, 'C2', null, 9, 'S', 0)"));

        // Writes through the record writer: dates, a price with a comma, a Boolean.
        SvcRegistros r;
        r.InsertarRegistro(c, QStringLiteral("cabecera_precio"),
                           QStringLiteral("identificador=2|Descripcion=Rebajas d'O|"
                                          "fechaalta=15/6/2026|preciovalidodesde=1/7/2026|"
                                          "preciovalidohasta=31/8/2026|"),
                           {}, false, {});
        r.InsertarRegistro(c, QStringLiteral("detalle_precio"),
                           QStringLiteral("identificador=2|producto=1|precio=12,50|"), {}, false,
                           {});
        r.InsertarRegistro(c, QStringLiteral("configuracionregional"),
                           QStringLiteral("segundoImpuesto=S|nombre=Canarias|"), {}, false, {});
        QCOMPARE(db.Valor(QStringLiteral("select cast(precio as text) from detalle_precio")),
                 QVariant(QStringLiteral("12.50"))); // exact, as typed

        // Reads as the screens make them.
        ADODB::Recordset rs;
        rs.Open(QStringLiteral("Select descripcion,preciovalidodesde,preciovalidohasta,"
                               "identificador from cabecera_precio"),
                c);
        QCOMPARE((QStringList{rs.Fields(0).Texto(), rs.Fields(1).Texto(), rs.Fields(2).Texto(),
                              rs.Fields(3).Texto()}),
                 (QStringList{"Rebajas d'O", "1/7/2026", "31/8/2026", "2"}));
        rs.Open(QStringLiteral("select codigo from productos where nombre like 'CAM%' and "
                               "nombre <> null order by nombre"),
                c);
        QCOMPARE(rs.RecordCount(), 1);

        Principal::CargarSesion();
        QCOMPARE(SesionSuite.list2, QStringLiteral("CAJA1"));
        QCOMPARE(SesionSuite.empleado, 1);
        QCOMPARE(SesionSuite.SegundoImpuesto, true);
        QCOMPARE(SesionSuite.NombreRegional, QStringLiteral("Canarias"));
    }
};

TARIFAS_PRUEBAS_SIN_VENTANAS(TstOdbc)
#include "tst_odbc.moc"
