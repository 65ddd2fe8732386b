#pragma once

#include "conexion.h"

#include <QObject>
#include <QTimer>

namespace ADODB {

/// Tells the other terminals that this connection's unit of work changed the database. On
/// PostgreSQL it is a notification on the suite's channel, sent inside the unit: the server
/// delivers it when the unit commits and drops it when it rolls back, and only a unit that
/// wrote (or locked) a row sends it. Outside a unit it goes at once. An SQLite file needs no
/// word: its readers see the file's own change counter move (VigiaCambios). Raises ErrorBD as
/// any statement does.
void AnunciarCambios(Connection &conexion);

/// The channel the suite's writers notify on.
QString CanalCambios();

/// Watches the database for what other terminals change, and says so with Cambio(), a
/// second or less after they commit, without any click. On PostgreSQL it listens to the
/// channel of AnunciarCambios; on an SQLite file it reads the file's change counter
/// (PRAGMA data_version, which moves only for other connections' commits) every half second.
/// Nothing is said while a unit of work is open on the connection (it is said after it ends),
/// and a connection lost and opened again counts as a change, since what happened meanwhile
/// went unheard. Through ODBC nothing is watched.
class VigiaCambios : public QObject {
    Q_OBJECT
  public:
    explicit VigiaCambios(Connection &conexion, QObject *padre = nullptr);

  signals:
    void Cambio();

  private:
    void revisar();
    void notificacion(const QString &canal, QSqlDriver::NotificationSource origen);
    Connection &conexion;
    QTimer reloj;
    qint64 version = -1; ///< SQLite: the last change counter read
    int proceso = 0; ///< PostgreSQL: the server process of the connection the channel is heard on
    QSqlDriver *oyente = nullptr; ///< the driver whose notifications are connected
    bool pendiente = false;       ///< a change heard while a unit was open
};

} // namespace ADODB
