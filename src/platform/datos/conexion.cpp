#include "conexion.h"

#include "aperturasqlite.h"
#include "cadenaconexion.h"

#include <QElapsedTimer>
#include <QSqlDriver>
#include <QSqlQuery>
#include <atomic>
#include <utility>

#include <dlfcn.h>

namespace ADODB {

namespace {

/// How long a server has to answer the opening.
constexpr int esperaConexion = 10;

QString NombreNuevo() {
    static std::atomic<quint64> contador{0};
    return QStringLiteral("tarifas_conexion_%1").arg(++contador);
}

/// Where a string leads, for an error text: never the password.
QString Destino(const CadenaConexion &c) {
    switch (c.tipo) {
    case CadenaConexion::Tipo::SQLite:
        return QStringLiteral("el fichero SQLite \"%1\"").arg(c.ruta);
    case CadenaConexion::Tipo::ODBC:
        return QStringLiteral("el origen de datos ODBC \"%1\"").arg(c.dsn);
    case CadenaConexion::Tipo::PostgreSQL:
        return QStringLiteral("la base PostgreSQL \"%1\" en %2:%3")
            .arg(c.base, c.servidor)
            .arg(c.puerto);
    }
    return {};
}

/// The seconds a server may take over one statement: TARIFAS_ESPERA_SENTENCIA, 30 when it is
/// unset or not a whole number, 0 for no limit.
int EsperaSentencia() {
    bool ok = false;
    const int segundos = qEnvironmentVariable("TARIFAS_ESPERA_SENTENCIA").trimmed().toInt(&ok);
    return ok && segundos >= 0 ? segundos : 30;
}

/// libpq's own word on a connection (PQstatus): anything but CONNECTION_OK (0) is a
/// connection gone. libpq is already in the process when a PostgreSQL connection exists,
/// loaded by Qt's driver; nothing here links it.
bool PostgreSQLCaida(const QSqlDatabase &base) {
    using Estado = int (*)(const void *);
    static const Estado estado = [] {
        void *libpq = ::dlopen("libpq.so.5", RTLD_LAZY | RTLD_NOLOAD);
        return libpq ? reinterpret_cast<Estado>(::dlsym(libpq, "PQstatus")) : nullptr;
    }();
    const QVariant manejador = base.driver() ? base.driver()->handle() : QVariant();
    if (!estado || qstrcmp(manejador.typeName(), "PGconn*") != 0)
        return false;
    const void *pg = *static_cast<void *const *>(manejador.constData());
    return pg && estado(pg) != 0;
}

} // namespace

Connection::Connection() : nombreConexion(NombreNuevo()) {}

Connection::~Connection() {
    Close();
}

void Connection::Open(const QString &cadena, const QString &usuario, const QString &clave, int) {
    Close();
    const QString texto = cadena.isEmpty() ? ConnectionString : cadena;
    const CadenaConexion c = CadenaConexion::Interpretar(texto);
    if (c.tipo == CadenaConexion::Tipo::SQLite)
        ComprobarFicheroSQLite(c.ruta);
    esperaSentencia = EsperaSentencia();
    {
        QSqlDatabase base;
        switch (c.tipo) {
        case CadenaConexion::Tipo::SQLite:
            base = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), nombreConexion);
            base.setDatabaseName(c.ruta);
            // Other programs of the suite write the same file: wait for their locks rather
            // than fail at once with "database is locked".
            base.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=5000"));
            break;
        case CadenaConexion::Tipo::ODBC:
            base = QSqlDatabase::addDatabase(QStringLiteral("QODBC"), nombreConexion);
            base.setDatabaseName(c.dsn);
            break;
        case CadenaConexion::Tipo::PostgreSQL:
            base = QSqlDatabase::addDatabase(QStringLiteral("QPSQL"), nombreConexion);
            base.setHostName(c.servidor);
            base.setPort(c.puerto);
            base.setDatabaseName(c.base);
            // A server that takes the connection and never answers must not hold the screen
            // for ever, neither at the opening nor in a statement; keepalives find a peer that
            // vanished while the connection sat idle.
            base.setConnectOptions(
                QStringLiteral("connect_timeout=%1;keepalives_idle=60;keepalives_interval=10;"
                               "keepalives_count=3;options='-c statement_timeout=%2'")
                    .arg(esperaConexion)
                    .arg(qint64(esperaSentencia) * 1000));
            break;
        }
        base.setUserName(usuario.isEmpty() ? c.usuario : usuario);
        base.setPassword(clave.isEmpty() ? c.clave : clave);
        QElapsedTimer reloj;
        reloj.start();
        if (!base.isValid() || !base.open()) {
            QString motivo = base.isValid()
                                 ? base.lastError().text().trimmed()
                                 : QStringLiteral("el controlador de Qt no está instalado.");
            if (c.tipo == CadenaConexion::Tipo::PostgreSQL &&
                reloj.elapsed() >= (esperaConexion - 1) * 1000)
                motivo = QStringLiteral("el servidor no ha respondido en %1 s. %2")
                             .arg(esperaConexion)
                             .arg(motivo);
            base = QSqlDatabase();
            QSqlDatabase::removeDatabase(nombreConexion);
            throw ErrorBD(QStringLiteral("No se puede abrir %1: %2").arg(Destino(c), motivo));
        }
        if (c.tipo == CadenaConexion::Tipo::SQLite) {
            try {
                ComprobarBaseSQLite(base, c.ruta);
            } catch (...) {
                base = QSqlDatabase();
                QSqlDatabase::removeDatabase(nombreConexion);
                throw;
            }
        }
        dialecto_ = Dialecto::Para(base);
    }
    destino = Destino(c);
    perdida = false;
}

void Connection::Close() {
    if (!QSqlDatabase::contains(nombreConexion))
        return;
    {
        QSqlDatabase base = QSqlDatabase::database(nombreConexion, false);
        base.close();
    }
    QSqlDatabase::removeDatabase(nombreConexion);
    dialecto_.reset();
    destino.clear();
    enTransaccion = false;
    perdida = false;
}

bool Connection::Abierta() const {
    // Open until closed, as ADO has it: a connection the server lost is still this program's
    // open connection, and its next use opens it again.
    return QSqlDatabase::contains(nombreConexion) && !destino.isEmpty();
}

QSqlDatabase Connection::Base() const {
    return QSqlDatabase::database(nombreConexion, false);
}

bool Connection::Caida() const {
    if (!Abierta())
        return false;
    if (perdida)
        return true;
    // Qt's PostgreSQL driver marks itself closed when libpq finds the connection gone.
    const QSqlDatabase base = Base();
    return !base.isOpen() || (base.driverName() == QLatin1String("QPSQL") && PostgreSQLCaida(base));
}

QSqlDatabase Connection::Base() {
    // Never inside a unit of work: what it wrote went with the old connection, and the rest
    // of it must fail too rather than go on alone.
    if (!enTransaccion && Caida()) {
        QSqlDatabase base = std::as_const(*this).Base();
        base.close();
        if (!base.open())
            throw ErrorBD(QStringLiteral("Se ha perdido la conexión con %1 y no se puede volver "
                                         "a abrir: %2")
                              .arg(destino, base.lastError().text().trimmed()));
        perdida = false;
    }
    return std::as_const(*this).Base();
}

ErrorBD Connection::Fallo(const QSqlError &error, const QString &sentencia) {
    const QString texto = error.text().trimmed();
    const QString cola =
        sentencia.isEmpty() ? QString() : QStringLiteral("\nSentencia: ") + sentencia;
    const QString codigo = error.nativeErrorCode();
    // SQLSTATE class 08 is a connection exception, on a server and through ODBC alike.
    // 57P01 to 57P03: the server shut down, crashed, or is starting again.
    if (codigo.startsWith(QLatin1String("08")) || codigo.contains(QLatin1String(";08")) ||
        codigo.startsWith(QLatin1String("57P0")) || Caida())
        perdida = true;
    if (perdida)
        return ErrorBD(QStringLiteral("Se ha perdido la conexión con la base de datos (%1). Lo que "
                                      "se estaba haciendo no ha terminado; la próxima acción "
                                      "volverá a conectar.\n")
                           .arg(destino) +
                       texto + cola);
    if (codigo == QLatin1String("57014")) // query_canceled: statement_timeout ran out
        return ErrorBD(QStringLiteral("El servidor (%1) no ha terminado la sentencia en %2 s y se "
                                      "ha cancelado (el límite es TARIFAS_ESPERA_SENTENCIA).\n")
                           .arg(destino)
                           .arg(esperaSentencia) +
                       texto + cola);
    return ErrorBD(texto + cola);
}

void Connection::ejecutarControl(const QString &sentencia) {
    QSqlQuery q(std::as_const(*this).Base());
    if (!q.exec(sentencia))
        throw Fallo(q.lastError(), {});
}

void Connection::BeginTrans() {
    if (!Abierta())
        throw ErrorBD(QStringLiteral("La conexión no está abierta."));
    if (enTransaccion)
        throw ErrorBD(QStringLiteral("Ya hay una transacción abierta en esta conexión."));
    QSqlDatabase base = Base();
    // SQLite: the write lock now, not at the first write, so that what the unit reads first
    // can't be changed by another terminal before it writes.
    if (base.driverName() == QLatin1String("QSQLITE"))
        ejecutarControl(QStringLiteral("begin immediate"));
    else if (!base.transaction())
        throw Fallo(base.lastError(), {});
    enTransaccion = true;
}

void Connection::CommitTrans() {
    if (!enTransaccion)
        return;
    QSqlDatabase base = std::as_const(*this).Base();
    if (base.driverName() == QLatin1String("QSQLITE"))
        ejecutarControl(QStringLiteral("commit"));
    else if (!base.commit())
        throw Fallo(base.lastError(), {});
    enTransaccion = false;
}

void Connection::RollbackTrans() {
    if (!enTransaccion)
        return;
    enTransaccion = false;
    QSqlDatabase base = std::as_const(*this).Base();
    if (base.driverName() == QLatin1String("QSQLITE"))
        ejecutarControl(QStringLiteral("rollback"));
    else if (!base.rollback())
        throw Fallo(base.lastError(), {});
}

const Dialecto &Connection::dialecto() const {
    if (!dialecto_)
        throw ErrorBD(QStringLiteral("La conexión no está abierta."));
    return *dialecto_;
}

} // namespace ADODB
