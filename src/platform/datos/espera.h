#pragma once

#include <QElapsedTimer>
#include <QRect>
#include <QString>
#include <functional>

namespace ADODB {

/// A wait on the database while a statement runs: for another program's lock on an SQLite
/// file, or for a server's answer. The program's own deadline on a server and what the
/// operator sees of a long wait hang from it.
///
/// One Espera lives for each statement the program runs (the connection makes it). A wait of
/// more than a second is said once on stderr and shown on screen by the screens' layer (see
/// FijarAviso); when it ends, what the operator clicked or typed meanwhile is dropped.
///
/// A wait on a server is another matter: the call blocks inside the database library, with
/// nothing reported as it goes, so the program's own window can't repaint until it returns
/// (and no handler may run inside another to make it). Its notice is therefore drawn by a
/// process of its own (see FijarAvisoExterno): the watchdog thread that keeps the statement's
/// deadline starts it a second into the wait, over the bottom of the window, and ends it as
/// soon as the statement returns or is given up. The watchdog never touches a widget: where
/// the window lies is taken by the screen's thread as each statement starts. (Waiting on the
/// server's socket in a loop of our own instead would need the driver's handle for every
/// statement, and a loop inside a handler; a separate process keeps both threads and
/// handlers as they are.)
class Espera {
  public:
    /// What the screens' layer is told of a long wait.
    enum class Fase {
        Larga,  ///< the wait passed a second: show it (and repaint it, each time it is told)
        Acabada ///< a long wait is over: stop showing it and drop the input made during it
    };
    using Aviso = std::function<void(Fase fase, const QString &motivo)>;

    /// The statement's wait on `donde` (words for a message: "el fichero SQLite …").
    /// `socket`, when not -1, is a server connection's socket: shut down once `plazo` ms
    /// pass without an answer (0: no deadline), so that a call blocked on a server that no
    /// longer answers comes back.
    Espera(const QString &donde, int socket = -1, int plazo = 0);
    ~Espera();
    Espera(const Espera &) = delete;
    Espera &operator=(const Espera &) = delete;

    /// True once the deadline ran out and the connection's socket was shut down: the
    /// connection is of no more use.
    bool Vencida() const;

    /// From inside a wait that the database library reports as it goes (SQLite's busy
    /// handler): tells the screens' layer, past the first second, that the program still
    /// waits. Does nothing when no statement is under way.
    static void Latido();

    /// Sets what the screens' layer does with a long wait (nothing when it is not set: a
    /// program without screens). Returns the one set before.
    static Aviso FijarAviso(Aviso aviso);

    /// Where a wait on a server is shown: the program that draws the notice (`programa`,
    /// started with `--padre PID --lugar X,Y,ANCHO,ALTO --texto TEXTO`, and ended with
    /// SIGTERM), and what gives, on the thread that runs the statement, the window it covers
    /// the bottom of (an empty QRect: no notice for this statement). Nothing is shown while
    /// `programa` is empty. Called by the screens' layer, before any statement.
    static void FijarAvisoExterno(const QString &programa, std::function<QRect()> lugar);

    /// The ms after which a wait counts as long.
    static constexpr int umbral = 1000;

  private:
    void avisar();
    QString destino;
    QElapsedTimer reloj;
    Espera *anterior = nullptr;
    quint64 vigilancia = 0; ///< 0 when no deadline is armed
    bool larga = false;
};

} // namespace ADODB
