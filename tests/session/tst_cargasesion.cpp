// Start-up: what the session record holds for each state of the suite's tables.
#include "apoyo/ejecucion.h"
#include "apoyo/basedatosprueba.h"
#include "platform/datos/cadenaconexion.h"
#include "platform/datos/errorbd.h"
#include "platform/datos/recordset.h"
#include "session/principal.h"
#include "session/sesionsuite.h"
#include "suite/datos/esquema.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

class TstCargaSesion : public QObject {
    Q_OBJECT

    QTemporaryDir dir;
    QString corvanta;
    std::unique_ptr<BaseDatosPrueba> db;

    void Ejecutar(const QString &sql) { db->Ejecutar(sql); }

    /// The terminal's own data source, as the embedded default "dsn=Corvanta".
    void PrepararTerminal(const QString &list1, const QString &list2) {
        CrearTerminalSQLite(corvanta, list1, list2);
    }

private slots:
    void initTestCase() {
        QStandardPaths::setTestModeEnabled(true);
        QVERIFY(dir.isValid());
        corvanta = QDir(DirectorioDatosSuite()).filePath(QStringLiteral("Corvanta.sqlite"));
    }
    void cleanupTestCase() { QFile::remove(corvanta); }

    void init() {
        Principal::ReiniciarSesion();
        db = std::make_unique<BaseDatosPrueba>();
        SesionSuite.Conexion = std::make_unique<ADODB::Connection>();
        SesionSuite.Conexion->Open(db->Cadena());
        PrepararTerminal(QStringLiteral("TIENDA"), QStringLiteral("CAJA1"));
    }
    void cleanup() {
        Principal::ReiniciarSesion();
        db.reset();
    }

    void registroVacio() {
        // Empty tables: every field keeps the value it had before start-up.
        Principal::CargarSesion();
        QCOMPARE(SesionSuite.list1, QStringLiteral("TIENDA"));
        QCOMPARE(SesionSuite.list2, QStringLiteral("CAJA1"));
        QCOMPARE(SesionSuite.NumDecimales, qint16(0));
        QCOMPARE(SesionSuite.empleado, 0);
        QCOMPARE(SesionSuite.EmpleadoNombre, QString());
        QCOMPARE(SesionSuite.SegundoImpuesto, false);
        QCOMPARE(SesionSuite.nombreimpuesto1, QString()); // "Impuesto" only for a Null column
        QCOMPARE(SesionSuite.RutaBandera, QString());
        QCOMPARE(SesionSuite.NombreRegional, QString());
        QCOMPARE(SesionSuite.multitienda, false);
        QCOMPARE(SesionSuite.nombretienda, QString());
        QCOMPARE(SesionSuite.TipoNegocio, QString());
        QCOMPARE(SesionSuite.AnchoDiseno, 15360.0);
        QCOMPARE(SesionSuite.AltoDiseno, 11085.0);
        QVERIFY(SesionSuite.RutaFotos.endsWith(QStringLiteral("fotos") + QDir::separator()));
    }

    void opciones_data() {
        QTest::addColumn<QString>("fila");
        QTest::addColumn<int>("decimales");
        QTest::addColumn<bool>("multitienda");
        QTest::addColumn<QString>("tienda");
        QTest::addColumn<QString>("negocio");
        QTest::newRow("S") << "(2, 'S', 'Centro', 'TALLACOLOR')" << 2 << true << "Centro" << "TALLACOLOR";
        QTest::newRow("T como S") << "(3, 'T', 'Norte', '')" << 3 << true << "Norte" << "";
        QTest::newRow("s minuscula") << "(2, 's', 'Centro', 'x')" << 2 << false << "" << "x";
        QTest::newRow("N") << "(2, 'N', 'Centro', null)" << 2 << false << "" << "";
        QTest::newRow("vacio") << "(2, '', 'Centro', 'tallacolor')" << 2 << false << "" << "tallacolor";
        QTest::newRow("nulos") << "(null, null, 'Centro', null)" << 0 << false << "" << "";
        QTest::newRow("S sin nombre") << "(0, 'S', null, null)" << 0 << true << "" << "";
    }
    void opciones() {
        QFETCH(QString, fila);
        Ejecutar(QStringLiteral("insert into opciones (numdecimales, multitienda, nombretienda, tiponegocio) values ") + fila);
        Principal::CargarSesion();
        QFETCH(int, decimales);
        QCOMPARE(int(SesionSuite.NumDecimales), decimales);
        QTEST(SesionSuite.multitienda, "multitienda");
        QTEST(SesionSuite.nombretienda, "tienda");
        QTEST(SesionSuite.TipoNegocio, "negocio");
    }

    void empleado_data() {
        QTest::addColumn<QString>("terminal");
        QTest::addColumn<QString>("empleados");
        QTest::addColumn<int>("codigo");
        QTest::addColumn<QString>("nombre");
        QTest::newRow("nombre y una letra") << "('CAJA1', 7)" << "(7, 'María', 'López García')" << 7 << "María L";
        QTest::newRow("apellido nulo") << "('CAJA1', 7)" << "(7, 'Ana', null)" << 7 << "Ana ";
        QTest::newRow("nombre nulo") << "('CAJA1', 7)" << "(7, null, 'Ñúñez')" << 7 << " Ñ";
        QTest::newRow("otra caja") << "('CAJA2', 7)" << "(7, 'Ana', 'Ruiz')" << 0 << "";
        QTest::newRow("sin caja, empleado 0") << "('CAJA9', 1)" << "(0, 'Genérico', 'Caja')" << 0 << "Genérico C";
        QTest::newRow("empleado inexistente") << "('CAJA1', 8)" << "(7, 'Ana', 'Ruiz')" << 8 << "";
    }
    void empleado() {
        QFETCH(QString, terminal);
        QFETCH(QString, empleados);
        Ejecutar(QStringLiteral("insert into opciones_terminal (identificador, empleado) values ") + terminal);
        Ejecutar(QStringLiteral("insert into empleados (codigo, nombre, apellidos) values ") + empleados);
        Principal::CargarSesion();
        QFETCH(int, codigo);
        QCOMPARE(SesionSuite.empleado, codigo);
        QTEST(SesionSuite.EmpleadoNombre, "nombre");
    }

    void terminalConApostrofo() {
        // The terminal's name is bound, so an apostrophe in it finds its row.
        PrepararTerminal(QStringLiteral("T"), QStringLiteral("CAJA D'OR"));
        Ejecutar(QStringLiteral("insert into opciones_terminal values ('CAJA D''OR', 5)"));
        Principal::CargarSesion();
        QCOMPARE(SesionSuite.list2, QStringLiteral("CAJA D'OR"));
        QCOMPARE(SesionSuite.empleado, 5);
    }

    void regional_data() {
        QTest::addColumn<QString>("fila");
        QTest::addColumn<bool>("segundo");
        QTest::addColumn<QString>("impuesto");
        QTest::addColumn<QString>("region");
        QTest::newRow("completa") << "(true, 'IGIC', 'Canarias')" << true << "IGIC" << "Canarias";
        QTest::newRow("impuesto nulo") << "(false, null, 'España')" << false << "Impuesto" << "España";
    }
    void regional() {
        QFETCH(QString, fila);
        Ejecutar(QStringLiteral("insert into configuracionregional (segundoimpuesto, nombreimpuesto1, nombre) values ") + fila);
        Principal::CargarSesion();
        QTEST(SesionSuite.SegundoImpuesto, "segundo");
        QTEST(SesionSuite.nombreimpuesto1, "impuesto");
        QTEST(SesionSuite.NombreRegional, "region");
    }

    void bandera() {
        const QString existe = dir.filePath(QStringLiteral("bandera.gif"));
        QFile f(existe);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write("GIF89a");
        f.close();
        for (const auto &[ruta, esperada] : {std::pair{existe, existe},
                                             std::pair{dir.filePath(QStringLiteral("no.gif")), QString()},
                                             std::pair{dir.path(), QString()}}) {
            Ejecutar(QStringLiteral("delete from configuracionregional"));
            db->Ejecutar(QStringLiteral("insert into configuracionregional (segundoimpuesto, bandera) values (?, ?)"),
                         {false, ruta});
            QCOMPARE(Principal::LeerBandera(), esperada);
        }
    }

    void sinOrigenTerminal() {
        // The terminal's data source without its table is a failure of start-up, with the
        // database's own text.
        QFile::remove(corvanta);
        QVERIFY_THROWS_EXCEPTION(ErrorBD, Principal::LeerList2());
    }
};

TARIFAS_PRUEBAS_SIN_VENTANAS(TstCargaSesion)
#include "tst_cargasesion.moc"
