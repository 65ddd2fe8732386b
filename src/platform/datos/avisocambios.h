#pragma once

#include "conexion.h"

#include <QList>
#include <QObject>
#include <QTimer>
#include <QVariantList>

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

/// Watches the database for what other terminals change, and says so with Cambio(), without
/// any click: a second or less after they commit on PostgreSQL and SQLite, within two on
/// anything else. On PostgreSQL it listens to the channel of AnunciarCambios; on an SQLite file
/// it reads the file's change counter (PRAGMA data_version, which moves only for other
/// connections' commits) every half second. Through ODBC the driver passes no notification
/// on and the counter is SQLite's own, so a fingerprint of what the screens show is read
/// again every second instead: the register's lists (what Vigilar adds to it) hashed row by
/// row. A change of this terminal's own (AnunciarCambios) is taken as the new fingerprint
/// unsaid, as a change made by another terminal in the same second is.
/// Nothing is said while a unit of work is open on the connection (it is said after it ends),
/// and a connection lost and opened again counts as a change, since what happened meanwhile
/// went unheard.
class VigiaCambios : public QObject {
    Q_OBJECT
  public:
    /// As the database allows, or by fingerprint whatever it is (what a database behind ODBC
    /// gets, tried on another).
    enum class Modo { DelDialecto, Huella };
    explicit VigiaCambios(Connection &conexion, QObject *padre = nullptr,
                          Modo modo = Modo::DelDialecto);

    /// Adds to the fingerprint the rows of `sentencia` (run with `valores` bound): where a
    /// screen shows more than the register, a statement whose rows change whenever what it
    /// shows does. Keep it to an index's range, and its rows few (aggregates): it is read
    /// every second on the screen's own thread. Only the fingerprint reads it.
    void Vigilar(const QString &sentencia, const QVariantList &valores = {});
    /// Adds the prices of the list `codigo` to the fingerprint (the editor's): their count and
    /// two sums, one weighted by the product so that two prices swapped still show, read on
    /// the index of list and product. A list of 100,000 prices is one pass over its range of
    /// that index (some 40 ms on SQLite), read less often if it takes longer. A swap of two
    /// prices between the variants of one garment goes unseen until the next change.
    void VigilarLista(qlonglong codigo);

    /// The ms between two reads of the fingerprint, unless the last read took more than a
    /// tenth of that: then ten times what it took, so that the reads never take more than a
    /// tenth of the screen's time.
    static constexpr int intervaloHuella = 1000;

  signals:
    void Cambio();

  private:
    struct Sentencia {
        QString texto;
        QVariantList valores;
    };
    void revisar();
    bool revisarHuella(QSqlDatabase &base);
    QByteArray leerHuella(QSqlDatabase &base) const;
    void notificacion(const QString &canal, QSqlDriver::NotificationSource origen);
    Connection &conexion;
    Modo modo;
    QTimer reloj;
    qint64 version = -1; ///< SQLite: the last change counter read
    int proceso = 0; ///< PostgreSQL: the server process of the connection the channel is heard on
    QSqlDriver *oyente = nullptr; ///< the driver whose notifications are connected
    bool pendiente = false;       ///< a change heard while a unit was open
    QList<Sentencia> sentencias;  ///< the fingerprint's statements
    QByteArray huella;            ///< the last fingerprint read (empty: none yet)
    quint64 propios = 0;          ///< the connection's own changes when it was read
};

} // namespace ADODB
