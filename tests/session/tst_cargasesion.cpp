// Start-up: what the session record holds for each state of the suite's tables.
#include "apoyo/basedatosprueba.h"
#include "apoyo/ejecucion.h"
#include "platform/datos/cadenaconexion.h"
#include "platform/datos/errorbd.h"
#include "session/principal.h"
#include "session/sesionsuite.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

class TstCargaSesion : public QObject {
    Q_OBJECT

    QTemporaryDir dir;
    QString corvanta; // the terminal's own data source, as the embedded default "dsn=Corvanta"
    std::unique_ptr<BaseDatosPrueba> db;

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
    }
    void cleanup() {
        Principal::ReiniciarSesion();
        db.reset();
    }

    // The rows put in the tables, one table's letter each (o: options, t: terminals, e:
    // employees, r: regional settings), and the record after start-up: terminal, decimals,
    // multi-shop, shop, business, employee and name, second tax, tax name, region.
    void carga_data() {
        QTest::addColumn<QString>("caja");
        QTest::addColumn<QString>("filas");
        QTest::addColumn<QString>("sesion");
        auto caso = [](const char *n, const char *caja, const char *filas, const char *sesion) {
            QTest::newRow(n) << caja << filas << sesion;
        };
        caso("empty tables keep what was there", "CAJA1", "", "CAJA1|0|0|||0||0||");
        caso("multi-shop S", "CAJA1", "o(2, 'S', 'Centro', 'TALLACOLOR')",
             "CAJA1|2|1|Centro|TALLACOLOR|0||0||");
        caso("multi-shop T as S", "CAJA1", "o(3, 'T', 'Norte', '')", "CAJA1|3|1|Norte||0||0||");
        caso("lower-case s is no", "CAJA1", "o(2, 's', 'Centro', 'x')", "CAJA1|2|0||x|0||0||");
        caso("Nulls", "CAJA1", "o(null, null, 'Centro', null)", "CAJA1|0|0|||0||0||");
        caso("employee: name and one letter", "CAJA1", "t('CAJA1', 7);e(7, 'María', 'López')",
             "CAJA1|0|0|||7|María L|0||");
        caso("employee, Null name", "CAJA1", "t('CAJA1', 7);e(7, null, 'Ñúñez')",
             "CAJA1|0|0|||7| Ñ|0||");
        caso("employee of another terminal", "CAJA1", "t('CAJA2', 7);e(7, 'Ana', 'Ruiz')",
             "CAJA1|0|0|||0||0||");
        caso("no terminal row: employee 0", "CAJA1", "e(0, 'Genérico', 'Caja')",
             "CAJA1|0|0|||0|Genérico C|0||");
        caso("employee who doesn't exist", "CAJA1", "t('CAJA1', 8)", "CAJA1|0|0|||8||0||");
        caso("terminal with an apostrophe", "CAJA D'OR", "t('CAJA D''OR', 5)",
             "CAJA D'OR|0|0|||5||0||");
        caso("regional settings", "CAJA1", "r(true, 'IGIC', 'Canarias')",
             "CAJA1|0|0|||0||1|IGIC|Canarias");
        caso("Null tax name", "CAJA1", "r(false, null, 'España')",
             "CAJA1|0|0|||0||0|Impuesto|España");
    }
    void carga() {
        QFETCH(QString, caja);
        QFETCH(QString, filas);
        CrearTerminalSQLite(corvanta, QStringLiteral("TIENDA"), caja);
        const QMap<QChar, QString> tablas{
            {'o', "opciones (numdecimales, multitienda, nombretienda, tiponegocio)"},
            {'t', "opciones_terminal (identificador, empleado)"},
            {'e', "empleados (codigo, nombre, apellidos)"},
            {'r', "configuracionregional (segundoimpuesto, nombreimpuesto1, nombre)"}};
        for (const QString &fila : filas.split(';', Qt::SkipEmptyParts))
            db->Ejecutar("insert into " + tablas.value(fila[0]) + " values " + fila.mid(1));
        Principal::CargarSesion();
        const auto &s = SesionSuite;
        QTEST(QStringList({s.list2, QString::number(s.NumDecimales), QString::number(s.multitienda),
                           s.nombretienda + '|' + s.TipoNegocio, QString::number(s.empleado),
                           s.EmpleadoNombre, QString::number(s.SegundoImpuesto), s.nombreimpuesto1,
                           s.NombreRegional})
                  .join('|'),
              "sesion");
        QCOMPARE(s.list1, QStringLiteral("TIENDA"));
    }

    void bandera() {
        const QString existe = dir.filePath(QStringLiteral("bandera.gif"));
        QFile f(existe);
        QVERIFY(f.open(QIODevice::WriteOnly) && f.write("GIF89a") == 6);
        f.close();
        for (const auto &[ruta, esperada] :
             {std::pair{existe, existe}, std::pair{dir.filePath("no.gif"), QString()},
              std::pair{dir.path(), QString()}}) {
            db->Ejecutar("delete from configuracionregional");
            db->Ejecutar(
                "insert into configuracionregional (segundoimpuesto, bandera) values (?, ?)",
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
