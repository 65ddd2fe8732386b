#include "espera.h"

#include <QMutex>
#include <QThread>
#include <QWaitCondition>
#include <chrono>
#include <cstdio>
#include <map>

#include <sys/socket.h>

namespace {

Espera *actual = nullptr;

Espera::Aviso &aviso() {
    static Espera::Aviso a;
    return a;
}

/// The watchdog: one thread for the whole program, which shuts down the socket of each
/// statement whose deadline runs out. The blocked call then finds its connection closed and
/// returns, and the connection is given up.
class Vigilante {
  public:
    static Vigilante &instancia() {
        static Vigilante v;
        return v;
    }

    quint64 Armar(int socket, int plazo) {
        QMutexLocker cerrojo(&mutex);
        if (!hilo) {
            hilo.reset(QThread::create([this] { vigilar(); }));
            hilo->start();
        }
        const quint64 id = ++ultimo;
        pendientes[id] = {socket, Reloj::now() + std::chrono::milliseconds(plazo), false};
        cambio.wakeAll();
        return id;
    }

    /// Takes the deadline off; true when it had already run out.
    bool Desarmar(quint64 id) {
        QMutexLocker cerrojo(&mutex);
        const auto it = pendientes.find(id);
        if (it == pendientes.end())
            return false;
        const bool vencida = it->second.vencida;
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
        int socket;
        Reloj::time_point limite;
        bool vencida;
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
                } else if (p.limite < proximo) {
                    proximo = p.limite;
                }
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
    if (socket >= 0 && plazo > 0)
        vigilancia = Vigilante::instancia().Armar(socket, plazo);
    actual = this;
}

Espera::~Espera() {
    if (vigilancia != 0)
        Vigilante::instancia().Desarmar(vigilancia);
    actual = anterior;
    // A wait that nobody saw go by (a call blocked on a server tells nothing until it
    // returns) is long all the same: what the operator did meanwhile is dropped.
    if ((larga || reloj.elapsed() >= umbral) && aviso())
        aviso()(Fase::Acabada, {});
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
    if (aviso())
        aviso()(Fase::Larga, motivo);
}

void Espera::Latido() {
    if (actual)
        actual->avisar();
}

Espera::Aviso Espera::FijarAviso(Aviso nuevo) {
    std::swap(aviso(), nuevo);
    return nuevo;
}
