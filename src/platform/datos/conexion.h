#pragma once

#include "dialecto.h"

#include <QSqlDatabase>
#include <QString>
#include <memory>

namespace ADODB {

/// A connection to one database, in the manner of ADO's Connection. It owns one
/// QSqlDatabase under a name of its own and closes it when destroyed. Not copyable.
class Connection {
public:
    Connection();
    ~Connection();
    Connection(const Connection &) = delete;
    Connection &operator=(const Connection &) = delete;

    /// What Open uses when it is given no string of its own.
    QString ConnectionString;

    /// Opens the database named by `cadena` (or by ConnectionString when `cadena` is empty);
    /// user and password, when given, override those of the string. Raises ErrorBD with the
    /// driver's text when the database can't be opened. `opciones` is accepted and ignored.
    void Open(const QString &cadena = {}, const QString &usuario = {}, const QString &clave = {},
              int opciones = -1);
    void Close();
    bool Abierta() const;

    /// The Qt database behind the connection, for the recordset and the suite's services.
    QSqlDatabase Base() const;
    /// What differs in the SQL of the database this connection reached.
    const Dialecto &dialecto() const;

private:
    QString nombreConexion;
    std::unique_ptr<Dialecto> dialecto_;
};

} // namespace ADODB
