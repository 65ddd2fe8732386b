#pragma once

#include "conexion.h"

namespace ADODB {

/// One unit of work on a connection, all or nothing: begun when made, kept by Commit(), and
/// rolled back when destroyed uncommitted (an error on its way out). A unit made while
/// another is open on the same connection joins it: only the outermost one commits.
///
/// On SQLite the unit takes the database's write lock at its start (BEGIN IMMEDIATE), so two
/// terminals never both read and then both write; a terminal that finds it taken waits for it
/// as the connection waits for any lock. On a server, what a unit must hold still while it
/// decides (a price list's header, say) is locked by its own statements (select … for update).
class Transaccion {
  public:
    explicit Transaccion(Connection &conexion);
    ~Transaccion();
    Transaccion(const Transaccion &) = delete;
    Transaccion &operator=(const Transaccion &) = delete;

    /// Keeps what the unit wrote. Raises ErrorBD with the database's text when it can't; the
    /// unit is rolled back then.
    void Commit();

  private:
    Connection &conexion;
    bool propia = false; ///< false when it joined a unit already open
    bool terminada = false;
};

} // namespace ADODB
