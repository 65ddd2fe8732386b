#include "avisocambios.h"

#include <QSqlDriver>
#include <QSqlQuery>

namespace ADODB {

namespace {

/// How often the SQLite file's counter is read, and the PostgreSQL subscription checked.
constexpr int intervaloRevision = 500;

bool EsPostgreSQL(const QSqlDatabase &base) {
    return base.driverName() == QLatin1String("QPSQL");
}

/// The libpq connection behind a PostgreSQL database: a new one after a reconnection.
const void *SesionLibpq(const QSqlDatabase &base) {
    const QVariant manejador = base.driver() ? base.driver()->handle() : QVariant();
    if (qstrcmp(manejador.typeName(), "PGconn*") != 0)
        return nullptr;
    return *static_cast<const void *const *>(manejador.constData());
}

} // namespace

QString CanalCambios() {
    return QStringLiteral("tarifas_cambios");
}

void AnunciarCambios(Connection &conexion) {
    if (!conexion.Abierta())
        return;
    const QSqlDatabase base = std::as_const(conexion).Base();
    if (!EsPostgreSQL(base))
        return;
    // Inside a unit, only one that has a transaction number of its own has written (or
    // locked) anything: a unit that only read tells nobody.
    const QString sentencia =
        QStringLiteral("select pg_notify('%1', '')").arg(CanalCambios()) +
        (conexion.EnTransaccion() ? QStringLiteral(" where txid_current_if_assigned() is not null")
                                  : QString());
    QSqlQuery q(base);
    if (!q.exec(sentencia))
        throw conexion.Fallo(q.lastError(), sentencia);
}

VigiaCambios::VigiaCambios(Connection &conexion, QObject *padre)
    : QObject(padre), conexion(conexion) {
    reloj.setInterval(intervaloRevision);
    connect(&reloj, &QTimer::timeout, this, &VigiaCambios::revisar);
    reloj.start();
    revisar();
}

void VigiaCambios::revisar() {
    if (!conexion.Abierta() || conexion.EnTransaccion())
        return;
    QSqlDatabase base = std::as_const(conexion).Base();
    if (!base.isOpen())
        return;
    bool cambio = std::exchange(pendiente, false);
    if (base.driverName() == QLatin1String("QSQLITE")) {
        QSqlQuery q(base);
        if (q.exec(QStringLiteral("pragma data_version")) && q.next()) {
            const qint64 leida = q.value(0).toLongLong();
            cambio = cambio || (version >= 0 && leida != version);
            version = leida;
        }
    } else if (EsPostgreSQL(base)) {
        QSqlDriver *driver = base.driver();
        if (driver != oyente) {
            oyente = driver;
            connect(driver,
                    qOverload<const QString &, QSqlDriver::NotificationSource, const QVariant &>(
                        &QSqlDriver::notification),
                    this,
                    [this](const QString &canal, QSqlDriver::NotificationSource origen,
                           const QVariant &) { notificacion(canal, origen); });
        }
        // A new libpq connection (the old one was lost) listens to nothing yet, and what was
        // sent while there was none went unheard.
        const void *actual = SesionLibpq(base);
        if (actual && actual != sesion) {
            if (driver->subscribeToNotification(CanalCambios())) {
                cambio = cambio || sesion != nullptr;
                sesion = actual;
            }
        }
    }
    if (cambio)
        emit Cambio();
}

void VigiaCambios::notificacion(const QString &canal, QSqlDriver::NotificationSource origen) {
    // This terminal's own writes are already on its screens.
    if (canal != CanalCambios() || origen == QSqlDriver::SelfSource)
        return;
    if (conexion.EnTransaccion()) {
        pendiente = true;
        return;
    }
    emit Cambio();
}

} // namespace ADODB
