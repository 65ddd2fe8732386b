// The program's entry, run as the real program runs: in a process of its own, with the
// application object, Main and the end of the process. A crash on the way out (something that
// outlives Qt) shows only there.
#include "apoyo/ejecucion.h"
#include "app/programa.h"
#include "platform/datos/sistema.h"
#include "platform/ui/controles.h"
#include "platform/ui/form.h"
#include "platform/ui/grid.h"
#include "platform/ui/informeerror.h"

#include <QSqlDatabase>
#include <QSqlQuery>

using namespace Pantalla;
using namespace Sistema;

namespace {

/// The variable that makes this test's executable the program, with an operator's case.
const char *const VariableCaso = "TARIFAS_PRUEBA_CASO";

void Pulsar(Form *pantalla, const char *boton) {
    QTest::mouseClick(pantalla->control<CommandButton>(QString::fromLatin1(boton))->widget(),
                      Qt::LeftButton);
}

/// Runs `paso` once the screen `nombre` shows, polling the way an operator waits.
void Cuando(const char *nombre, std::function<void(Form *)> paso) {
    auto *reloj = new QTimer(qApp);
    QObject::connect(reloj, &QTimer::timeout, [reloj, nombre, paso] {
        Form *f = Form::Buscar(QString::fromLatin1(nombre));
        if (f && f->ventana() && f->ventana()->isVisible()) {
            reloj->deleteLater();
            reloj->stop();
            paso(f);
        }
    });
    reloj->start(20);
}

/// Opens the register's first list as the double click does.
void AbrirPrimeraLista(Form *registro) {
    auto *grid = registro->control<Grid>(QStringLiteral("grid_precios"));
    grid->setRow(1);
    emit grid->DblClick();
}

/// The child: the real start-up, with the operator's hand given by the case.
int Programa(int argc, char **argv, const QString &caso) {
    AplicacionTarifas aplicacion(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("tarifas"));
    Cuando("frmListas", [caso](Form *r) {
        if (caso == "puerta") {
            Pulsar(r, "cmdSalir");
        } else if (caso == "casilla") {
            r->ventana()->close();
        } else if (caso == "editor") {
            Cuando("frmTarifas", [r](Form *e) {
                Pulsar(e, "cmdSalir");
                QTimer::singleShot(50, [r] { Pulsar(r, "cmdSalir"); });
            });
            AbrirPrimeraLista(r);
        } else { // another program of the suite takes the catalogue away while the register is open
            {
                QSqlDatabase otra = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), "otra");
                otra.setDatabaseName(qEnvironmentVariable("TARIFAS_DB").mid(7));
                otra.open();
                QSqlQuery(otra).exec(QStringLiteral("alter table productos rename to viejos"));
            }
            QSqlDatabase::removeDatabase(QStringLiteral("otra"));
            AbrirPrimeraLista(r);
        }
    });
    return Principal::Main();
}

} // namespace

class TstMain : public QObject {
    Q_OBJECT
    QTemporaryDir dir;

    /// The program, or (caso empty) a second copy of the real executable, on `base`.
    QProcess *Ejecutar(const QString &base, const QString &caso) {
        auto *p = new QProcess(this);
        QProcessEnvironment e = QProcessEnvironment::systemEnvironment();
        e.insert("TARIFAS_DB", "sqlite:" + base);
        e.insert("TARIFAS_DEMO", "1");
        e.insert("QT_QPA_PLATFORM", "offscreen");
        e.insert("XDG_DATA_HOME", dir.filePath("datos"));
        e.insert("XDG_RUNTIME_DIR", dir.path()); // locks live there: a private one, ours alone
        e.insert(QLatin1String(VariableCaso), caso);
        p->setProcessEnvironment(e);
        p->start(caso.isEmpty() ? TARIFAS_EXE : QCoreApplication::applicationFilePath(), {});
        p->waitForFinished(60000);
        return p;
    }

  private slots:
    void initTestCase() { QVERIFY(dir.isValid()); }

    // How a run ends, as the process's status and its standard error, and whether the database
    // is there afterwards.
    void salida_data() {
        const auto caso = Pruebas::Tabla<QString, int, QString, bool>();
        caso("the register's door", "puerta", 0, "", true);
        caso("the window's close box", "casilla", 0, "", true);
        caso("the editor, and both doors", "editor", 0, "", true);
        caso("a failed load, reported", "carga fallida", 1, "productos", true);
        // Last: this test process becomes the copy that runs, and the real program started now
        // is a second copy, which ends at once and touches no database.
        caso("a second copy", "", 0, "", false);
    }
    void salida() {
        const auto [caso, estado, error, queda] = Pruebas::Fila<QString, int, QString, bool>();
        const QString base = dir.filePath(QTest::currentDataTag() + QStringLiteral(".sqlite"));
        if (caso.isEmpty()) {
            qputenv("XDG_RUNTIME_DIR", dir.path().toUtf8());
            QVERIFY(!HayInstanciaPrevia(QStringLiteral("tarifas")));
        }
        QProcess *programa = Ejecutar(base, caso);
        const QString salida = QString::fromLocal8Bit(programa->readAllStandardError());
        QCOMPARE(programa->state(), QProcess::NotRunning);
        QCOMPARE(programa->exitStatus(), QProcess::NormalExit); // no crash on the way out
        QVERIFY2(programa->exitCode() == estado, qPrintable(salida));
        QVERIFY2(error.isEmpty() ? salida.isEmpty() : salida.contains(error), qPrintable(salida));
        QCOMPARE(QFile::exists(base), queda);
    }
};

int main(int argc, char **argv) {
    const QString caso = qEnvironmentVariable(VariableCaso);
    if (!caso.isEmpty())
        return Programa(argc, argv, caso);
    QCoreApplication app(argc, argv);
    TstMain prueba;
    QTEST_SET_MAIN_SOURCE_PATH
    return Pruebas::EjecutarTodas(prueba, argc, argv);
}

#include "tst_main.moc"
