#include "avisocambios.h"

#include <QCryptographicHash>
#include <QElapsedTimer>
#include <QSqlDriver>
#include <QSqlQuery>
#include <QSqlRecord>

#include <dlfcn.h>

namespace ADODB {

namespace {

/// How often the SQLite file's counter is read, and the PostgreSQL subscription checked.
constexpr int intervaloRevision = 500;

bool EsPostgreSQL(const QSqlDatabase &base) {
    return base.driverName() == QLatin1String("QPSQL");
}

/// The server process that serves a PostgreSQL database's connection (libpq's PQbackendPID):
/// another one after a reconnection, though libpq's structure may sit at the same address.
/// 0 when it can't be told. libpq is in the process already, loaded by Qt's driver.
int ProcesoServidor(const QSqlDatabase &base) {
    using Proceso = int (*)(const void *);
    static const Proceso proceso = [] {
        void *libpq = ::dlopen("libpq.so.5", RTLD_LAZY | RTLD_NOLOAD);
        return libpq ? reinterpret_cast<Proceso>(::dlsym(libpq, "PQbackendPID")) : nullptr;
    }();
    const QVariant manejador = base.driver() ? base.driver()->handle() : QVariant();
    // Qt names the type by libpq's struct: "pg_conn*" (PGconn is its typedef).
    const char *tipo = manejador.typeName();
    if (!proceso || (qstrcmp(tipo, "pg_conn*") != 0 && qstrcmp(tipo, "PGconn*") != 0))
        return 0;
    const void *pg = *static_cast<const void *const *>(manejador.constData());
    return pg ? proceso(pg) : 0;
}

} // namespace

QString CanalCambios() {
    return QStringLiteral("tarifas_cambios");
}

void AnunciarCambios(Connection &conexion) {
    if (!conexion.Abierta())
        return;
    conexion.AnotarCambioPropio();
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

VigiaCambios::VigiaCambios(Connection &vigilada, QObject *padre, Modo como)
    : QObject(padre), conexion(vigilada), modo(como) {
    // The register: a list made, renamed, deleted or given another period. A few hundred
    // rows at most, read whole.
    Vigilar(QStringLiteral("select identificador, descripcion, preciovalidodesde, "
                           "preciovalidohasta from cabecera_precio order by identificador"));
    reloj.setInterval(intervaloRevision);
    connect(&reloj, &QTimer::timeout, this, &VigiaCambios::revisar);
    reloj.start();
    revisar();
}

void VigiaCambios::Vigilar(const QString &sentencia, const QVariantList &valores) {
    sentencias.append({sentencia, valores});
    huella.clear(); // the next read is the new starting point
}

void VigiaCambios::VigilarLista(qlonglong codigo) {
    Vigilar(QStringLiteral("select count(*), sum(precio), sum(precio * producto), "
                           "max(codproductotextil) from detalle_precio where identificador = ?"),
            {codigo});
}

QByteArray VigiaCambios::leerHuella(QSqlDatabase &base) const {
    QCryptographicHash suma(QCryptographicHash::Sha1);
    for (const Sentencia &s : sentencias) {
        QSqlQuery q(base);
        q.setForwardOnly(true);
        if (!q.prepare(s.texto))
            return {};
        for (const QVariant &valor : s.valores)
            q.addBindValue(valor);
        if (!q.exec())
            return {};
        const int columnas = q.record().count();
        // Each value as text, with a Null told apart from an empty text, and separators that
        // keep "ab","c" from "a","bc".
        while (q.next()) {
            for (int i = 0; i < columnas; ++i) {
                const QVariant valor = q.value(i);
                suma.addData(valor.isNull() ? QByteArrayView("\x1c")
                                            : QByteArrayView(valor.toString().toUtf8()));
                suma.addData(QByteArrayView("\x1f"));
            }
            suma.addData(QByteArrayView("\x1e"));
        }
        suma.addData(QByteArrayView("\x1d"));
    }
    return suma.result();
}

bool VigiaCambios::revisarHuella(QSqlDatabase &base) {
    QElapsedTimer medida;
    medida.start();
    const quint64 propiosAhora = conexion.CambiosPropios();
    const QByteArray leida = leerHuella(base);
    // A big list read slowly is read less often, never more than a tenth of the time.
    reloj.setInterval(std::max<qint64>(intervaloHuella, 10 * medida.elapsed()));
    if (leida.isEmpty())
        return false; // unreadable now (a lost connection): the next read tells
    const bool cambio = !huella.isEmpty() && leida != huella && propiosAhora == propios;
    huella = leida;
    propios = propiosAhora;
    return cambio;
}

void VigiaCambios::revisar() {
    if (!conexion.Abierta() || conexion.EnTransaccion())
        return;
    QSqlDatabase base = std::as_const(conexion).Base();
    if (!base.isOpen())
        return;
    bool cambio = std::exchange(pendiente, false);
    const Dialecto::Seguimiento seguimiento = modo == Modo::Huella
                                                  ? Dialecto::Seguimiento::Huella
                                                  : conexion.dialecto().SeguimientoCambios();
    switch (seguimiento) {
    case Dialecto::Seguimiento::Huella:
        cambio = revisarHuella(base) || cambio;
        break;
    case Dialecto::Seguimiento::ContadorFichero: {
        QSqlQuery q(base);
        if (q.exec(QStringLiteral("pragma data_version")) && q.next()) {
            const qint64 leida = q.value(0).toLongLong();
            cambio = cambio || (version >= 0 && leida != version);
            version = leida;
        }
        break;
    }
    case Dialecto::Seguimiento::Notificaciones: {
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
        const int actual = ProcesoServidor(base);
        if (actual != 0 && actual != proceso) {
            if (driver->subscribeToNotification(CanalCambios())) {
                cambio = cambio || proceso != 0;
                proceso = actual;
            }
        }
        break;
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
