#include "conexion.h"

#include "aperturasqlite.h"
#include "cadenaconexion.h"

#include "espera.h"

#include <QElapsedTimer>
#include <QFile>
#include <QSqlDriver>
#include <QSqlQuery>
#include <atomic>
#include <utility>

#include <sys/stat.h>

namespace ADODB {

namespace {

/// How long a server has to answer the opening.
constexpr int esperaConexion = 10;

QString NombreNuevo() {
    static std::atomic<quint64> contador{0};
    return QStringLiteral("tarifas_conexion_%1").arg(++contador);
}

/// Where a string leads, for an error text: never the password.
QString DestinoDe(const CadenaConexion &c) {
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

/// How many units of work are open on the connections of this thread (a test's second
/// terminal runs in a thread of its own).
thread_local int unidadesAbiertas = 0;

/// The device and inode of a file, 0 when it isn't there: what tells the file opened from
/// another put in its place.
quint64 Identidad(const QString &ruta) {
    struct stat datos {};
    if (::stat(QFile::encodeName(ruta).constData(), &datos) != 0)
        return 0;
    return (quint64(datos.st_dev) << 40) ^ quint64(datos.st_ino);
}

/// The deadline the server keeps of its own for a statement: a little before the program's,
/// so that a server that runs cancels the statement (and the connection goes on serving)
/// before the program gives up on it.
qint64 PlazoServidor(int segundos) {
    return qint64(segundos) * 900;
}

// SQLite's result codes that the operator is told in words of their own.
constexpr int sqliteBusy = 5;
constexpr int sqliteLocked = 6;
constexpr int sqliteReadOnly = 8;
constexpr int sqliteIoErr = 10;
constexpr int sqliteCorrupt = 11;
constexpr int sqliteCantOpen = 14;
constexpr int sqliteNotADb = 26;
constexpr int sqliteReadOnlyDbMoved = 8 | (4 << 8);

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
            // Other programs of the suite write the same file: their locks are waited for
            // (EsperarBloqueosSQLite, once it is open) rather than failed at once.
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
                    .arg(PlazoServidor(esperaSentencia)));
            break;
        }
        base.setUserName(usuario.isEmpty() ? c.usuario : usuario);
        base.setPassword(clave.isEmpty() ? c.clave : clave);
        QElapsedTimer reloj;
        reloj.start();
        // A server that takes its time over the opening is a wait like a statement's.
        const auto abrir = [&] {
            const Espera espera(DestinoDe(c));
            return base.open();
        };
        if (!base.isValid() || !abrir()) {
            QString motivo = base.isValid()
                                 ? base.lastError().text().trimmed()
                                 : QStringLiteral("el controlador de Qt no está instalado.");
            if (c.tipo == CadenaConexion::Tipo::PostgreSQL &&
                reloj.elapsed() >= (esperaConexion - 1) * 1000)
                motivo = QStringLiteral("el servidor no ha respondido en %1 s. %2")
                             .arg(esperaConexion)
                             .arg(motivo);
            if (c.tipo == CadenaConexion::Tipo::ODBC && base.isValid())
                motivo = MotivoODBC(c.dsn, motivo);
            base = QSqlDatabase();
            QSqlDatabase::removeDatabase(nombreConexion);
            throw ErrorBD(QStringLiteral("No se puede abrir %1: %2").arg(DestinoDe(c), motivo));
        }
        if (c.tipo == CadenaConexion::Tipo::SQLite) {
            try {
                EsperarBloqueosSQLite(base);
                ComprobarBaseSQLite(base, c.ruta);
                soloLectura = SoloLecturaSQLite(base, c.ruta);
            } catch (...) {
                base = QSqlDatabase();
                QSqlDatabase::removeDatabase(nombreConexion);
                throw;
            }
        }
        dialectoActivo = Dialecto::Para(base);
    }
    destino = DestinoDe(c);
    perdida = false;
    vencida = false;
    ruta = c.tipo == CadenaConexion::Tipo::SQLite ? c.ruta : QString();
    identidad = ruta.isEmpty() ? 0 : Identidad(ruta);
}

void Connection::Close() {
    if (!QSqlDatabase::contains(nombreConexion))
        return;
    {
        QSqlDatabase base = QSqlDatabase::database(nombreConexion, false);
        base.close();
    }
    QSqlDatabase::removeDatabase(nombreConexion);
    dialectoActivo.reset();
    destino.clear();
    if (enTransaccion)
        --unidadesAbiertas;
    enTransaccion = false;
    perdida = false;
    vencida = false;
    ruta.clear();
    identidad = 0;
    soloLectura.clear();
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
    return perdida || (dialectoActivo && dialectoActivo->ConexionPerdida(QSqlError(), Base()));
}

void Connection::reabrir() {
    QSqlDatabase base = std::as_const(*this).Base();
    base.close();
    bool abierta = false;
    {
        const Espera espera(destino);
        abierta = base.open();
    }
    if (!abierta)
        throw ErrorBD(QStringLiteral("Se ha perdido la conexión con %1 y no se puede volver "
                                     "a abrir: %2")
                          .arg(destino, base.lastError().text().trimmed()));
    if (!ruta.isEmpty()) {
        EsperarBloqueosSQLite(base);
        identidad = Identidad(ruta);
    }
    perdida = false;
    vencida = false;
}

QSqlDatabase Connection::Base() {
    // Never inside a unit of work: what it wrote went with the old connection, and the rest
    // of it must fail too rather than go on alone.
    if (enTransaccion)
        return std::as_const(*this).Base();
    if (!ruta.isEmpty()) {
        // An SQLite file deleted, moved or put back from a copy since the opening: the
        // connection still writes to the old one (or can't), so it is opened on the file
        // that is there now, or the operator is told that there is none.
        const quint64 ahora = Identidad(ruta);
        if (ahora == 0)
            throw ErrorBD(QStringLiteral("El fichero SQLite \"%1\" ya no está: se ha borrado o "
                                         "movido mientras el programa lo usaba. No se ha hecho "
                                         "nada; vuelva a ponerlo en su sitio y repita la acción.")
                              .arg(ruta));
        if (ahora != identidad)
            perdida = true;
    }
    if (Caida())
        reabrir();
    return std::as_const(*this).Base();
}

bool Connection::Ejecutar(const std::function<bool()> &paso) {
    if (ejecutando)
        throw ErrorBD(QStringLiteral("Se ha pedido una sentencia a %1 mientras otra aún entregaba "
                                     "sus filas: la conexión atiende una sola a la vez.")
                          .arg(destino));
    ejecutando = true;
    struct Fin {
        bool &ejecutando;
        ~Fin() { ejecutando = false; }
    } fin{ejecutando};
    const int socket =
        dialectoActivo ? dialectoActivo->SocketServidor(std::as_const(*this).Base()) : -1;
    Espera espera(destino, socket, esperaSentencia * 1000);
    const bool hecho = paso();
    if (espera.Vencida()) {
        // The socket is shut: whatever the statement did, the connection is no more use.
        vencida = true;
        perdida = true;
        return false;
    }
    return hecho;
}

bool Connection::Ejecutar(QSqlQuery &q) {
    return Ejecutar([&q] { return q.exec(); });
}

ErrorBD Connection::Fallo(const QSqlError &error, const QString &sentencia) {
    const QString texto = error.text().trimmed();
    const QString cola =
        sentencia.isEmpty() ? QString() : QStringLiteral("\nSentencia: ") + sentencia;
    const QString codigo = error.nativeErrorCode();
    if (vencida)
        return ErrorBD(QStringLiteral("El servidor de la base de datos (%1) no responde: en %2 s "
                                      "no ha contestado y se ha dejado de esperar. Lo que se "
                                      "estaba haciendo no se ha guardado; la próxima acción "
                                      "volverá a conectar.")
                           .arg(destino)
                           .arg(esperaSentencia) +
                       cola);
    if (!ruta.isEmpty()) {
        const int sqlite = codigo.toInt();
        QString causa;
        switch (sqlite & 0xff) {
        case sqliteBusy:
        case sqliteLocked:
            causa = QStringLiteral("lo tiene ocupado otro programa, que no lo ha dejado libre "
                                   "en %1 s. No se ha guardado nada: repita la acción cuando el "
                                   "otro programa termine.")
                        .arg(EsperaBloqueoSQLiteActual() / 1000);
            break;
        case sqliteReadOnly:
            if (sqlite == sqliteReadOnlyDbMoved) {
                perdida = true;
                causa = QStringLiteral("se ha borrado, movido o sustituido mientras el programa "
                                       "lo usaba. No se ha guardado nada; la próxima acción lo "
                                       "volverá a abrir.");
            } else {
                causa = QStringLiteral("es de solo lectura (el fichero o su carpeta no se pueden "
                                       "escribir). No se ha guardado nada: pida que le den "
                                       "permiso de escritura.");
            }
            break;
        case sqliteCorrupt:
        case sqliteNotADb:
            causa = QStringLiteral("está dañado: hay que recuperarlo de una copia de "
                                   "seguridad. No se ha guardado nada.");
            break;
        case sqliteIoErr:
        case sqliteCantOpen:
            perdida = true;
            causa = QStringLiteral("no se puede leer ni escribir: el disco o la carpeta que lo "
                                   "guarda no responde, o el fichero ya no está. No se ha "
                                   "guardado nada.");
            break;
        default:
            break;
        }
        if (!causa.isEmpty())
            return ErrorBD(QStringLiteral("El fichero SQLite \"%1\" %2\n").arg(ruta, causa) +
                           texto + cola);
    }
    if (dialectoActivo && dialectoActivo->ConexionPerdida(error, std::as_const(*this).Base()))
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

void Connection::controlar(QSqlError (Dialecto::*paso)(QSqlDatabase &) const) {
    QSqlDatabase base = std::as_const(*this).Base();
    QSqlError error;
    if (!Ejecutar([&] {
            error = (dialecto().*paso)(base);
            return !error.isValid();
        }))
        throw Fallo(error, {});
}

void Connection::BeginTrans() {
    if (!Abierta())
        throw ErrorBD(QStringLiteral("La conexión no está abierta."));
    if (enTransaccion)
        throw ErrorBD(QStringLiteral("Ya hay una transacción abierta en esta conexión."));
    Base(); // a use: one that was lost is opened again first
    controlar(&Dialecto::ComenzarUnidad);
    enTransaccion = true;
    ++numeroUnidad;
    ++unidadesAbiertas;
}

void Connection::CommitTrans() {
    if (!enTransaccion)
        return;
    controlar(&Dialecto::ConfirmarUnidad);
    enTransaccion = false;
    --unidadesAbiertas;
}

void Connection::RollbackTrans() {
    if (!enTransaccion)
        return;
    enTransaccion = false;
    --unidadesAbiertas;
    controlar(&Dialecto::DeshacerUnidad);
}

bool Connection::HayUnidadAbierta() {
    return unidadesAbiertas > 0;
}

const Dialecto &Connection::dialecto() const {
    if (!dialectoActivo)
        throw ErrorBD(QStringLiteral("La conexión no está abierta."));
    return *dialectoActivo;
}

} // namespace ADODB
