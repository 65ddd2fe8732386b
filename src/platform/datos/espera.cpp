#include "espera.h"

#include <QCoreApplication>
#include <QMutex>
#include <QProcess>
#include <QThread>
#include <QWaitCondition>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <map>

#include <csignal>
#include <sys/socket.h>

namespace ADODB {

namespace {

Espera *actual = nullptr;

Espera::Aviso &AvisoInstalado() {
    static Espera::Aviso a;
    return a;
}

/// The program that draws the notice of a wait on a server, and where (see
/// Espera::FijarAvisoExterno). Set once, before any statement, by the screens' layer.
struct AvisoExterno {
    QString programa;
    std::function<QRect()> lugar;
};
AvisoExterno &avisoExterno() {
    static AvisoExterno a;
    return a;
}

/// The watchdog: one thread for the whole program, which starts the notice of each statement
/// that waits on a server past a second, and shuts down the socket of each one whose deadline
/// runs out. The blocked call then finds its connection closed and returns, and the connection
/// is given up.
class Vigilante {
  public:
    static Vigilante &instancia() {
        static Vigilante v;
        return v;
    }

    /// `plazo` 0: no deadline. `lugar` invalid: no notice.
    quint64 Armar(int socket, int plazo, const QRect &lugar, const QString &destino) {
        QMutexLocker cerrojo(&mutex);
        if (!hilo) {
            hilo.reset(QThread::create([this] { vigilar(); }));
            hilo->start();
        }
        const quint64 id = ++ultimo;
        const auto ahora = Reloj::now();
        Plazo p;
        p.socket = socket;
        p.limite = plazo > 0 ? ahora + std::chrono::milliseconds(plazo) : Reloj::time_point::max();
        p.aviso = lugar.isValid() && !avisoExterno().programa.isEmpty()
                      ? ahora + std::chrono::milliseconds(Espera::umbral)
                      : Reloj::time_point::max();
        p.lugar = lugar;
        p.destino = destino;
        p.plazo = plazo;
        p.programa = avisoExterno().programa;
        pendientes[id] = p;
        cambio.wakeAll();
        return id;
    }

    /// Takes the deadline off (and the notice down); true when it had already run out.
    bool Desarmar(quint64 id) {
        QMutexLocker cerrojo(&mutex);
        const auto it = pendientes.find(id);
        if (it == pendientes.end())
            return false;
        const bool vencida = it->second.vencida;
        Quitar(it->second);
        pendientes.erase(it);
        return vencida;
    }

    bool Vencida(quint64 id) {
        QMutexLocker cerrojo(&mutex);
        const auto it = pendientes.find(id);
        return it != pendientes.end() && it->second.vencida;
    }

  private:
    using Reloj = std::chrono::steady_clock;
    struct Plazo {
        int socket = -1;
        Reloj::time_point limite;
        Reloj::time_point aviso; ///< when the notice is started (max: never)
        QRect lugar;
        QString destino; ///< the words for the database the statement waits on
        int plazo = 0;
        QString programa;
        qint64 proceso = 0; ///< the notice's process, while it is up
        bool vencida = false;
    };

    ~Vigilante() {
        {
            QMutexLocker cerrojo(&mutex);
            fin = true;
            cambio.wakeAll();
        }
        if (hilo)
            hilo->wait();
    }

    /// Starts the notice of `p`. Under the lock: a statement that returns meanwhile waits the
    /// few ms of a fork for its Desarmar, which then ends the notice.
    static void Mostrar(Plazo &p) {
        p.aviso = Reloj::time_point::max();
        const QRect &l = p.lugar;
        const QString texto =
            p.plazo > 0 ? QStringLiteral("El servidor de la base de datos (%1) no contesta: se "
                                         "espera su respuesta, %2 s como mucho…")
                              .arg(p.destino)
                              .arg(p.plazo / 1000)
                        : QStringLiteral("El servidor de la base de datos (%1) no contesta: se "
                                         "espera su respuesta…")
                              .arg(p.destino);
        qint64 proceso = 0;
        if (QProcess::startDetached(
                p.programa,
                {QStringLiteral("--padre"), QString::number(QCoreApplication::applicationPid()),
                 QStringLiteral("--lugar"),
                 QStringLiteral("%1,%2,%3,%4").arg(l.x()).arg(l.y()).arg(l.width()).arg(l.height()),
                 QStringLiteral("--texto"), texto},
                {}, &proceso))
            p.proceso = proceso;
    }

    static void Quitar(Plazo &p) {
        if (p.proceso > 0)
            ::kill(pid_t(p.proceso), SIGTERM);
        p.proceso = 0;
        p.aviso = Reloj::time_point::max();
    }

    void vigilar() {
        QMutexLocker cerrojo(&mutex);
        while (!fin) {
            auto proximo = Reloj::time_point::max();
            const auto ahora = Reloj::now();
            for (auto &[id, p] : pendientes) {
                if (p.vencida)
                    continue;
                if (p.limite <= ahora) {
                    // Both ways: the call blocked reading the answer returns at once.
                    ::shutdown(p.socket, SHUT_RDWR);
                    p.vencida = true;
                    Quitar(p);
                    continue;
                }
                if (p.aviso <= ahora)
                    Mostrar(p);
                proximo = std::min({proximo, p.limite, p.aviso});
            }
            if (proximo == Reloj::time_point::max()) {
                cambio.wait(&mutex);
            } else {
                const auto falta =
                    std::chrono::duration_cast<std::chrono::milliseconds>(proximo - ahora);
                cambio.wait(&mutex, QDeadlineTimer(falta.count() + 1));
            }
        }
    }

    QMutex mutex;
    QWaitCondition cambio;
    std::unique_ptr<QThread> hilo;
    std::map<quint64, Plazo> pendientes;
    quint64 ultimo = 0;
    bool fin = false;
};

} // namespace

Espera::Espera(const QString &donde, int socket, int plazo) : destino(donde), anterior(actual) {
    reloj.start();
    // Where the window is now, taken here, on the statement's own thread.
    if (socket >= 0)
        vigilancia = Vigilante::instancia().Armar(
            socket, plazo, avisoExterno().lugar ? avisoExterno().lugar() : QRect(), destino);
    actual = this;
}

Espera::~Espera() {
    if (vigilancia != 0)
        Vigilante::instancia().Desarmar(vigilancia);
    actual = anterior;
    // A wait that nobody saw go by (a call blocked on a server tells nothing until it
    // returns) is long all the same: what the operator did meanwhile is dropped.
    if ((larga || reloj.elapsed() >= umbral) && AvisoInstalado())
        AvisoInstalado()(Fase::Acabada, {});
}

bool Espera::Vencida() const {
    return vigilancia != 0 && Vigilante::instancia().Vencida(vigilancia);
}

void Espera::avisar() {
    if (reloj.elapsed() < umbral)
        return;
    // Only a wait on a lock is told as it goes (a call blocked on a server tells nothing).
    const QString motivo = QStringLiteral("La base de datos (%1) está ocupada por otro programa: "
                                          "se espera a que la deje libre… %2 s")
                               .arg(destino)
                               .arg(reloj.elapsed() / 1000);
    if (!larga) {
        larga = true;
        std::fprintf(stderr, "%s\n", qPrintable(motivo));
        std::fflush(stderr);
    }
    if (AvisoInstalado())
        AvisoInstalado()(Fase::Larga, motivo);
}

void Espera::Latido() {
    if (actual)
        actual->avisar();
}

void Espera::FijarAvisoExterno(const QString &programa, std::function<QRect()> lugar) {
    avisoExterno() = {programa, std::move(lugar)};
}

Espera::Aviso Espera::FijarAviso(Aviso nuevo) {
    std::swap(AvisoInstalado(), nuevo);
    return nuevo;
}

} // namespace ADODB
