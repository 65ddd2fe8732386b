#pragma once

#include <QElapsedTimer>
#include <QString>
#include <functional>

/// A wait on the database while a statement runs: for another program's lock on an SQLite
/// file, or for a server's answer. The program's own deadline on a server and what the
/// operator sees of a long wait hang from it.
///
/// One Espera lives for each statement the program runs (the connection makes it). A wait of
/// more than a second is said once on stderr and shown on screen by the screens' layer (see
/// FijarAviso); when it ends, what the operator clicked or typed meanwhile is dropped.
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
