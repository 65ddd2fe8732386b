#pragma once

#include "dialecto.h"
#include "errorbd.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QString>
#include <functional>
#include <memory>

namespace ADODB {

/// A connection to one database, in the manner of ADO's Connection. It owns one
/// QSqlDatabase under a name of its own and closes it when destroyed. Not copyable.
///
/// A server is given 10 s to answer the opening and, for each statement, the seconds of
/// TARIFAS_ESPERA_SENTENCIA (30 when unset; 0 for no limit): the server cancels a statement of
/// its own a little before, and when it doesn't answer at all (stopped, hung) the program
/// gives the connection up at the limit. A connection that the server or the network lost is
/// noticed by the statement that fails (its ErrorBD says so) and opened again by the next use
/// of Base(), unless a unit of work is open on it. An SQLite file that another program holds
/// is waited for up to 30 s (shown after a second, see Espera); one that was deleted,
/// moved or replaced since the opening is opened again at the next use, when it is back.
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
    /// a server that refuses or does not answer, an ODBC driver that is missing or fails. An
    /// SQLite file that another program keeps locked is waited for (said after a second), up
    /// to 30 s.
    /// `opciones` is accepted and ignored.
    void Open(const QString &cadena = {}, const QString &usuario = {}, const QString &clave = {},
              int opciones = -1);
    void Close();
    /// True from Open to Close, also while the connection is lost (its next use reopens it).
    bool Abierta() const;
    /// What the open connection leads to, in words for a message ("el fichero SQLite …",
    /// "el origen de datos ODBC …"): never the password. Empty when it is closed.
    QString Destino() const { return destino; }
    /// When this program may read the database but not write it (an SQLite file, or its
    /// folder, that this account can't write), what the operator is told at start-up; empty
    /// otherwise. Found at the opening: a save then fails, saying the same.
    QString SoloLectura() const { return soloLectura; }

    /// The Qt database behind the connection, for the recordset and the suite's services.
    /// The non-const form is a use of the connection: one that was lost is opened again first
    /// (outside a unit of work), and raises ErrorBD when that fails.
    QSqlDatabase Base();
    QSqlDatabase Base() const;
    /// The ErrorBD for a statement of this connection that failed with `error`: the database's
    /// text and the statement, said plainly when the cause is a lost connection (which the
    /// next use then opens again) or a server that took too long.
    ErrorBD Fallo(const QSqlError &error, const QString &sentencia);
    /// Runs `paso`, one statement of this connection (its prepare and exec), under the
    /// program's deadline and the notice of a long wait; gives what `paso` gives. When the
    /// deadline ran out the connection is given up (the next use opens it again) and the
    /// answer is false: Fallo then says that the server does not answer.
    /// One statement at a time: a server streams a result's rows over the connection while
    /// they are read, so a statement asked for from inside `paso` (say, from a row handed
    /// over by Recordset::Recorrer) raises ErrorBD, on every database alike.
    bool Ejecutar(const std::function<bool()> &paso);
    bool Ejecutar(QSqlQuery &q);
    /// What differs in the SQL of the database this connection reached.
    const Dialecto &dialecto() const;

    /// A unit of work, as ADO names its steps; code uses Transaccion (transaccion.h), which
    /// never leaves one open. Each raises ErrorBD with the database's text when it fails.
    void BeginTrans();
    void CommitTrans();
    void RollbackTrans();
    bool EnTransaccion() const { return enTransaccion; }
    /// Which unit of work of this connection is open, or was the last: they are numbered from
    /// 1 as they begin.
    quint64 NumeroUnidad() const { return numeroUnidad; }
    /// True while a unit of work is open on any connection of the program: then nothing may
    /// wait on the operator (the message boxes ask).
    static bool HayUnidadAbierta();

    /// How many times this connection has told the other terminals of a change of its own
    /// (AnunciarCambios): a watcher that can't tell its own terminal's writes from others'
    /// (VigiaCambios by fingerprint) takes what it reads after them as its new starting point.
    quint64 CambiosPropios() const { return cambiosPropios; }
    void AnotarCambioPropio() { ++cambiosPropios; }

  private:
    void controlar(QSqlError (Dialecto::*paso)(QSqlDatabase &) const);
    bool Caida() const;
    void reabrir();
    QString nombreConexion;
    QString destino; ///< what it leads to, for messages: never the password
    bool enTransaccion = false;
    bool perdida = false;
    bool vencida = false;    ///< the last statement got no answer in time
    bool ejecutando = false; ///< a statement of Ejecutar is under way
    quint64 numeroUnidad = 0;
    QString ruta;            ///< the SQLite file, to tell when it is no longer the one opened
    quint64 identidad = 0;   ///< that file's device and inode at the opening
    int esperaSentencia = 0; ///< seconds a server has for a statement, as at the opening
    quint64 cambiosPropios = 0;
    QString soloLectura;
    std::unique_ptr<Dialecto> dialectoActivo;
};

} // namespace ADODB
