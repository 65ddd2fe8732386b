#pragma once

#include "dialecto.h"
#include "errorbd.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QString>
#include <memory>

namespace ADODB {

/// A connection to one database, in the manner of ADO's Connection. It owns one
/// QSqlDatabase under a name of its own and closes it when destroyed. Not copyable.
///
/// A server is given 10 s to answer the opening and, for each statement, the seconds of
/// TARIFAS_ESPERA_SENTENCIA (30 when unset; 0 for no limit). A connection that the server or
/// the network lost is noticed by the statement that fails (its ErrorBD says so) and opened
/// again by the next use of Base(), unless a unit of work is open on it.
class Connection {
  public:
    Connection();
    ~Connection();
    Connection(const Connection &) = delete;
    Connection &operator=(const Connection &) = delete;

    /// What Open uses when it is given no string of its own.
    QString ConnectionString;

    /// Opens the database named by `cadena` (or by ConnectionString when `cadena` is empty);
    /// user and password, when given, override those of the string. Raises ErrorBD naming the
    /// database (never the password) and the cause, with the driver's text, when it can't be
    /// opened: an SQLite file that is not a database, is damaged or can't be read or created,
    /// a server that refuses or does not answer. An SQLite file that another program keeps
    /// locked is waited for (said on stderr after a second), up to 30 s.
    /// `opciones` is accepted and ignored.
    void Open(const QString &cadena = {}, const QString &usuario = {}, const QString &clave = {},
              int opciones = -1);
    void Close();
    /// True from Open to Close, also while the connection is lost (its next use reopens it).
    bool Abierta() const;

    /// The Qt database behind the connection, for the recordset and the suite's services.
    /// The non-const form is a use of the connection: one that was lost is opened again first
    /// (outside a unit of work), and raises ErrorBD when that fails.
    QSqlDatabase Base();
    QSqlDatabase Base() const;
    /// The ErrorBD for a statement of this connection that failed with `error`: the database's
    /// text and the statement, said plainly when the cause is a lost connection (which the
    /// next use then opens again) or a server that took too long.
    ErrorBD Fallo(const QSqlError &error, const QString &sentencia);
    /// What differs in the SQL of the database this connection reached.
    const Dialecto &dialecto() const;

    /// A unit of work, as ADO names its steps; code uses Transaccion (transaccion.h), which
    /// never leaves one open. Each raises ErrorBD with the database's text when it fails.
    void BeginTrans();
    void CommitTrans();
    void RollbackTrans();
    bool EnTransaccion() const { return enTransaccion; }

  private:
    void ejecutarControl(const QString &sentencia);
    bool Caida() const;
    QString nombreConexion;
    QString destino; ///< what it leads to, for messages: never the password
    bool enTransaccion = false;
    bool perdida = false;
    int esperaSentencia = 0; ///< seconds a server has for a statement, as at the opening
    std::unique_ptr<Dialecto> dialecto_;
};

} // namespace ADODB
