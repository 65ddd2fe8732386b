#pragma once

#include "platform/datos/conexion.h"

#include <chrono>
#include <condition_variable>
#include <mutex>

/// The handshake of a test in which another terminal holds a lock while the program writes:
/// it tells when the program's connection has begun to wait for that lock, so that the other
/// terminal ends its unit only then, and the overlap is certain rather than guessed from time.
///
/// On SQLite the program's connection gets, while the watch lives, a busy handler of the
/// watch's (in place of its busy timeout, given back afterwards): its first call is the sign.
/// It waits up to 60 s in all, as a lock a test forgot must fail the test rather than hang it.
/// On a server, Esperar asks the server itself which sessions of the database wait for a lock.
class VigiaBloqueo {
  public:
    explicit VigiaBloqueo(ADODB::Connection &programa);
    ~VigiaBloqueo();
    VigiaBloqueo(const VigiaBloqueo &) = delete;
    VigiaBloqueo &operator=(const VigiaBloqueo &) = delete;

    /// From the other terminal's thread, with `otra` its own connection (still in its unit):
    /// true as soon as the program's connection waits for a lock; false when `limite` passes
    /// first (the program never waited: the test fails).
    bool Esperar(ADODB::Connection &otra, std::chrono::milliseconds limite);

  private:
    static int Ocupada(void *vigia, int intentos);

    ADODB::Connection &programa;
    bool sqlite = false;
    int esperaPrevia = 0; ///< the connection's own busy timeout, in ms, given back at the end
    std::mutex cerrojo;
    std::condition_variable aviso;
    bool esperando = false;
};
