// When other programs and the database misbehave around a unit of work: a box never waits on
// the operator inside one, another program's lock is waited for and shown, a file damaged,
// read-only, gone or replaced is named with its cause, and a server that stops answering is
// given up at the program's own deadline.
#include "apoyo/basedatosprueba.h"
#include "apoyo/ejecucion.h"
#include "apoyo/errores.h"
#include "apoyo/respuestas.h"
#include "platform/datos/aperturasqlite.h"
#include "platform/datos/espera.h"
#include "platform/datos/recordset.h"
#include "platform/datos/transaccion.h"
#include "platform/ui/indicadorespera.h"
#include "platform/ui/informeerror.h"
#include "platform/ui/mensajes.h"
#include "suite/datos/svcregistros.h"

#include <QApplication>
#include <QPushButton>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QSqlQuery>
#include <atomic>
#include <future>
#include <thread>

#include <csignal>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

using namespace ADODB;
using namespace Pantalla;

namespace {

const QString Cabecera = QStringLiteral("cabecera_precio");

void Escribir(ADODB::Connection &c, int codigo) {
    SvcRegistros().InsertarRegistro(
        c, Cabecera,
        QStringLiteral("identificador=%1|Descripcion=X|fechaalta=1/2/2026|"
                       "preciovalidodesde=1/2/2026|preciovalidohasta=28/2/2026|")
            .arg(codigo),
        {}, false, {});
}

int Cuenta(ADODB::Connection &c) {
    ADODB::Recordset rs;
    rs.Open(QStringLiteral("select count(*) as n from cabecera_precio"), c);
    return rs.Fields(QStringLiteral("n")).Entero();
}

/// Another program holds the database's write lock, in a thread of its own, from when
/// `tomado` is set until `soltar` is set.
void OtroPrograma(const QString &cadena, std::promise<void> &tomado,
                  std::shared_future<void> soltar) {
    ADODB::Connection otra;
    otra.Open(cadena);
    ADODB::Transaccion unidad(otra);
    tomado.set_value();
    soltar.wait();
    unidad.Commit();
}

/// Runs `accion` while another program holds the lock, released `ms` after the start (or, with
/// ms < 0, only once `accion` has returned). Gives what the wait showed: the phases that the
/// screens' layer was told, in order.
QStringList ConBloqueo(BaseDatosPrueba &db, int ms, const std::function<void()> &accion) {
    std::promise<void> tomado, soltar;
    std::shared_future<void> suelta = soltar.get_future().share();
    std::thread otro(OtroPrograma, db.Cadena(), std::ref(tomado), suelta);
    tomado.get_future().wait();
    QStringList fases;
    const Espera::Aviso antes = Espera::FijarAviso([&](Espera::Fase fase, const QString &texto) {
        const QString nombre =
            fase == Espera::Fase::Larga ? QStringLiteral("larga") : QStringLiteral("fin");
        if (fases.isEmpty() || fases.last() != nombre)
            fases << nombre;
        if (fase == Espera::Fase::Larga &&
            !(texto.contains(db.Ruta()) && texto.contains("ocupada por otro programa")))
            fases << QStringLiteral("no nombra el fichero ni al otro programa: ") + texto;
    });
    std::thread reloj;
    if (ms >= 0)
        reloj = std::thread([&] {
            std::this_thread::sleep_for(std::chrono::milliseconds(ms));
            soltar.set_value();
        });
    try {
        accion();
    } catch (...) {
        if (ms < 0)
            soltar.set_value();
        if (reloj.joinable())
            reloj.join();
        otro.join();
        Espera::FijarAviso(antes);
        throw;
    }
    if (ms < 0)
        soltar.set_value();
    if (reloj.joinable())
        reloj.join();
    otro.join();
    Espera::FijarAviso(antes);
    return fases;
}

/// The notices of a wait on a server up now for this test program: the processes of
/// tarifas-espera started for it.
int Avisos() {
    const QByteArray padre = QByteArray::number(QCoreApplication::applicationPid());
    int avisos = 0;
    for (const QString &proceso : QDir(QStringLiteral("/proc")).entryList(QDir::Dirs)) {
        QFile f(QStringLiteral("/proc/%1/cmdline").arg(proceso));
        const QList<QByteArray> argumentos =
            f.open(QIODevice::ReadOnly) ? f.readAll().split('\0') : QList<QByteArray>();
        avisos += argumentos.value(0) == TARIFAS_ESPERA_EXE && argumentos.contains(padre);
    }
    return avisos;
}

/// Lets the event loop run until it has nothing left to do, as the program's loop does after a
/// handler.
void HastaQuedarQuieto() {
    QEventLoop bucle;
    QTimer::singleShot(50, &bucle, &QEventLoop::quit);
    bucle.exec();
}

} // namespace

class TstEsperas : public QObject {
    Q_OBJECT

  private slots:
    void cleanup() { FijarEsperaBloqueoSQLite(EsperaBloqueoSQLite); }

    void cajaEnUnaUnidad_data() {
        const auto caso = Pruebas::Tabla<QString, bool>();
        for (const QString &caja : {QStringLiteral("informacion"), QStringLiteral("pregunta"),
                                    QStringLiteral("informe de error")}) {
            caso(qPrintable(QStringLiteral("%1, fuera").arg(caja)), caja, false);
            caso(qPrintable(QStringLiteral("%1, dentro").arg(caja)), caja, true);
        }
    }
    void cajaEnUnaUnidad() {
        // Whatever kind of box, asked for while a unit is open, is marked in the record and
        // counted; after the unit has ended (committed or rolled back) it is recorded as is.
        const auto [caja, dentro] = Pruebas::Fila<QString, bool>();
        BaseDatosPrueba db;
        RespuestasMensajes cajas;
        const auto mostrar = [&] {
            if (caja == "informacion")
                MsgBoxInformacion(QStringLiteral("Texto"));
            else if (caja == "pregunta")
                MsgBoxPregunta(QStringLiteral("Texto"));
            else
                MostrarError(QStringLiteral("Texto"));
        };
        {
            ADODB::Transaccion unidad(db.Conexion());
            if (dentro)
                mostrar();
        }
        if (!dentro)
            mostrar();
        QCOMPARE(cajas.Mostrados(),
                 QStringList{dentro ? MarcaDentroDeUnidad + "Texto" : QStringLiteral("Texto")});
        QCOMPARE(cajas.DentroDeUnidad(), dentro ? 1 : 0);
        QVERIFY(!ADODB::Connection::HayUnidadAbierta());
    }

    void ocupada_data() {
        // ms: when the other program lets go (-1: never, while this one waits); limite: this
        // program's wait for it.
        const auto caso = Pruebas::Tabla<int, int, bool>();
        caso("lo suelta enseguida", 100, EsperaBloqueoSQLite, true);
        caso("lo suelta a los 2 s", 2000, EsperaBloqueoSQLite, true);
        caso("no lo suelta", -1, 1500, false);
    }
    void ocupada() {
        // Another program holds the SQLite file's write lock: a unit waits for it, shows the
        // wait past a second (naming the file), and then writes; or, past the limit, fails
        // naming the file and the other program, having written nothing.
        SOLO_SQLITE("Only an SQLite file is locked whole by another program");
        const auto [ms, limite, escrita] = Pruebas::Fila<int, int, bool>();
        BaseDatosPrueba db;
        ADODB::Connection &c = db.Conexion();
        FijarEsperaBloqueoSQLite(limite);
        QString error;
        const QStringList fases = ConBloqueo(db, ms, [&] {
            error = ErrorDe([&] {
                ADODB::Transaccion unidad(c);
                Escribir(c, 1);
                unidad.Commit();
            });
        });
        const bool larga = ms < 0 || ms >= 2 * Espera::umbral;
        QCOMPARE(fases, larga ? (QStringList{"larga", "fin"}) : QStringList());
        QCOMPARE(error.isNull(), escrita);
        if (!escrita)
            QVERIFY2(error.startsWith(QStringLiteral("El fichero SQLite \"%1\" lo tiene ocupado "
                                                     "otro programa, que no lo ha dejado libre "
                                                     "en 1 s.")
                                          .arg(db.Ruta())),
                     qPrintable(error));
        QCOMPARE(Cuenta(c), escrita ? 1 : 0);
        QVERIFY(!c.EnTransaccion());
    }

    void entradaDuranteLaEspera() {
        // A click made while the program waits is dropped, not delivered afterwards to the
        // button under it; once the wait is over and its queue handled, a click works again.
        // Meanwhile the wait cursor and a line naming the file are up.
        SOLO_SQLITE("The wait is made by another program's lock on an SQLite file");
        InstalarIndicadorEspera();
        BaseDatosPrueba db;
        QPushButton boton(QStringLiteral("Eliminar Tarifa"));
        boton.show();
        QVERIFY(QTest::qWaitForWindowExposed(&boton));
        QSignalSpy pulsado(&boton, &QPushButton::clicked);
        const int antes = EntradasDescartadas();
        QString linea;
        Qt::CursorShape cursor = Qt::ArrowCursor;
        const Espera::Aviso indicador = Espera::FijarAviso({});
        std::promise<void> tomado, soltar;
        std::thread otro(OtroPrograma, db.Cadena(), std::ref(tomado), soltar.get_future().share());
        tomado.get_future().wait();
        bool pulsadoYa = false;
        Espera::FijarAviso([&](Espera::Fase fase, const QString &texto) {
            indicador(fase, texto);
            if (fase != Espera::Fase::Larga || pulsadoYa)
                return;
            pulsadoYa = true;
            linea = LineaEspera();
            if (QGuiApplication::overrideCursor())
                cursor = QGuiApplication::overrideCursor()->shape();
            QTest::mouseClick(&boton, Qt::LeftButton);
            soltar.set_value();
        });
        ADODB::Connection &c = db.Conexion();
        {
            ADODB::Transaccion unidad(c);
            Escribir(c, 1);
            unidad.Commit();
        }
        otro.join();
        Espera::FijarAviso(indicador);
        QVERIFY(pulsadoYa);
        QVERIFY2(linea.contains(db.Ruta()), qPrintable(linea));
        QCOMPARE(cursor, Qt::WaitCursor);
        QCOMPARE(LineaEspera(), QString());
        QCOMPARE(QGuiApplication::overrideCursor(), nullptr);
        HastaQuedarQuieto();
        QCOMPARE(pulsado.count(), 0);
        QVERIFY(EntradasDescartadas() > antes);
        QTest::mouseClick(&boton, Qt::LeftButton);
        QCOMPARE(pulsado.count(), 1);
        QCOMPARE(Cuenta(c), 1);
    }

    void ficheroMal_data() {
        const auto caso = Pruebas::Tabla<QString, QString>();
        caso("solo lectura", "solo lectura", "es de solo lectura");
        caso("danado", "danado", "está dañado");
    }
    void ficheroMal() {
        // A file that can't be written, or whose pages are damaged: the message names the
        // file and the cause in the shop's words; nothing is written.
        SOLO_SQLITE("About SQLite files as such");
        const auto [como, causa] = Pruebas::Fila<QString, QString>();
        BaseDatosPrueba db;
        ADODB::Connection &c = db.Conexion();
        {
            ADODB::Transaccion unidad(c);
            for (int i = 1; i <= 300; ++i)
                Escribir(c, i);
            unidad.Commit();
        }
        if (como == "solo lectura") {
            // As root a file's permissions stop nothing: SQLite's own refusal to write.
            QVERIFY(QSqlQuery(c.Base()).exec(QStringLiteral("pragma query_only = 1")));
        } else {
            c.Close();
            QFile f(db.Ruta());
            QVERIFY(f.open(QIODevice::ReadWrite));
            // Every page but the first (the schema's root), overwritten.
            for (qint64 p = 4096; p < f.size(); p += 512) {
                f.seek(p);
                f.write(QByteArray(512, '\x5a'));
            }
            f.close();
            c.Open(db.Cadena());
        }
        const QString error = ErrorDe([&] {
            ADODB::Transaccion unidad(c);
            Cuenta(c);
            Escribir(c, 999);
            unidad.Commit();
        });
        QVERIFY2(
            error.startsWith(QStringLiteral("El fichero SQLite \"%1\" %2").arg(db.Ruta(), causa)),
            qPrintable(error));
        QVERIFY(!c.EnTransaccion());
    }

    void soloLecturaAlAbrir_data() {
        // What this account can't write: the file, its folder (where each save makes its
        // journal), or nothing. The opening says which, once; reading goes on; a save fails
        // saying the file is read-only, having written nothing.
        const auto caso = Pruebas::Tabla<int, int, QString>();
        caso("el fichero", 0444, 0755,
             "El fichero SQLite \"%1\" es de solo lectura: se pueden "
             "consultar las tarifas, pero no guardar cambios.");
        caso("la carpeta", 0666, 0555,
             "La carpeta \"%2\" del fichero SQLite \"%1\" es de solo "
             "lectura");
        caso("los dos se pueden escribir", 0666, 0777, {});
    }
    void soloLecturaAlAbrir() {
        SOLO_SQLITE("About SQLite files as such");
        const auto [fichero, carpeta, aviso] = Pruebas::Fila<int, int, QString>();
        BaseDatosPrueba db;
        Escribir(db.Conexion(), 1);
        const auto permisos = [](const QString &camino, int modo) {
            return ::chmod(QFile::encodeName(camino).constData(), mode_t(modo)) == 0;
        };
        QVERIFY(permisos(db.Ruta(), fichero) && permisos(db.Directorio(), carpeta));
        QString error;
        {
            // Root writes whatever the permissions say: the program runs as a shop's account.
            const bool root = ::geteuid() == 0;
            QVERIFY(!root || ::seteuid(65534) == 0);
            const auto volver = qScopeGuard([root] {
                if (root)
                    QVERIFY(::seteuid(0) == 0);
            });
            ADODB::Connection c;
            c.Open(db.Cadena());
            if (aviso.isEmpty())
                QCOMPARE(c.SoloLectura(), QString());
            else
                QVERIFY2(c.SoloLectura().startsWith(aviso.arg(db.Ruta(), db.Directorio())),
                         qPrintable(c.SoloLectura()));
            QCOMPARE(Cuenta(c), 1);
            error = ErrorDe([&] {
                ADODB::Transaccion unidad(c);
                Escribir(c, 2);
                unidad.Commit();
            });
        }
        QVERIFY(permisos(db.Directorio(), 0700) && permisos(db.Ruta(), 0600));
        if (aviso.isEmpty())
            QCOMPARE(error, QString());
        else
            QVERIFY2(
                error.startsWith(
                    QStringLiteral("El fichero SQLite \"%1\" es de solo lectura").arg(db.Ruta())),
                qPrintable(error));
        QCOMPARE(Cuenta(db.Conexion()), aviso.isEmpty() ? 2 : 1);
    }

    void ficheroQueSeVaYVuelve_data() {
        const auto caso = Pruebas::Tabla<bool>();
        caso("el mismo fichero, devuelto", false);
        caso("una copia en su lugar", true);
    }
    void ficheroQueSeVaYVuelve() {
        // The file is moved away while the program runs: the next action says it is gone and
        // does nothing; once it is back (or a copy is put in its place) the program works on
        // it again, without a restart, and writes where the file now is.
        SOLO_SQLITE("About SQLite files as such");
        const auto [copia] = Pruebas::Fila<bool>();
        BaseDatosPrueba db;
        ADODB::Connection &c = db.Conexion();
        Escribir(c, 1);
        const QString fuera = db.Directorio() + QStringLiteral("/fuera.sqlite");
        QVERIFY(QFile::rename(db.Ruta(), fuera));
        const QString error = ErrorDe([&] { Escribir(c, 2); });
        QVERIFY2(
            error.startsWith(QStringLiteral("El fichero SQLite \"%1\" ya no está").arg(db.Ruta())),
            qPrintable(error));
        QVERIFY(copia ? QFile::copy(fuera, db.Ruta()) : QFile::rename(fuera, db.Ruta()));
        {
            ADODB::Transaccion unidad(c);
            Escribir(c, 3);
            unidad.Commit();
        }
        QCOMPARE(Cuenta(c), 2);
        QCOMPARE(db.Valor(QStringLiteral("select count(*) from cabecera_precio")).toInt(), 2);
    }

    void servidorDetenido() {
        // The server's process for this connection stops (a paused machine, a hung server):
        // the statement is abandoned at the program's deadline, the unit rolled back, the
        // operator told that the server does not answer; once it runs again, the next action
        // connects anew and finds nothing of the unit.
        SOLO_POSTGRESQL("Only a server's process can be stopped");
        BaseDatosPrueba db;
        qputenv("TARIFAS_ESPERA_SENTENCIA", "2");
        ADODB::Connection c;
        c.Open(db.Cadena());
        qunsetenv("TARIFAS_ESPERA_SENTENCIA");
        ADODB::Recordset rs;
        rs.Open(QStringLiteral("select pg_backend_pid() as p"), c);
        const pid_t proceso = rs.Fields(QStringLiteral("p")).Entero();
        // Meanwhile this thread can't repaint: the notice is another process's, watched from
        // a thread of the test's own, from the wait's start.
        Espera::FijarAvisoExterno(QStringLiteral(TARIFAS_ESPERA_EXE),
                                  [] { return QRect(20, 20, 600, 400); });
        std::atomic<bool> esperando{false};
        std::atomic<qint64> primera{-1}, ultima{-1};
        QElapsedTimer reloj;
        std::thread observador([&] {
            while (!esperando)
                std::this_thread::sleep_for(std::chrono::milliseconds(5));
            while (esperando) {
                if (Avisos() > 0) {
                    qint64 nada = -1;
                    primera.compare_exchange_strong(nada, reloj.elapsed());
                    ultima = reloj.elapsed();
                }
                std::this_thread::sleep_for(std::chrono::milliseconds(50));
            }
        });
        QString error;
        {
            ADODB::Transaccion unidad(c);
            Escribir(c, 1);
            QCOMPARE(::kill(proceso, SIGSTOP), 0);
            reloj.start();
            esperando = true;
            error = ErrorDe([&] { Escribir(c, 2); });
            esperando = false;
        }
        observador.join();
        QCOMPARE(::kill(proceso, SIGCONT), 0);
        Espera::FijarAvisoExterno({}, {});
        // Shown a second into the wait, up until it was given up at 2 s, and gone after.
        QVERIFY2(primera >= Espera::umbral - 50 && primera < 1900,
                 qPrintable(QString::number(primera)));
        QVERIFY2(ultima >= 1700, qPrintable(QString::number(ultima)));
        QTRY_COMPARE(Avisos(), 0);
        QVERIFY2(error.contains(QStringLiteral("no responde: en 2 s no ha contestado")),
                 qPrintable(error));
        QVERIFY(!c.EnTransaccion());
        QCOMPARE(Cuenta(c), 0);
        Escribir(c, 3);
        QCOMPARE(db.Valor(QStringLiteral("select count(*) from cabecera_precio")).toInt(), 1);
    }
};

TARIFAS_PRUEBAS(TstEsperas)
#include "tst_esperas.moc"
