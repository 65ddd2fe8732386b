#include "conexion.h"

#include "cadenaconexion.h"
#include "errorbd.h"

#include <QSqlError>
#include <atomic>

namespace ADODB {

namespace {

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

} // namespace

Connection::Connection() : nombreConexion(NombreNuevo()) {}

Connection::~Connection() {
    Close();
}

void Connection::Open(const QString &cadena, const QString &usuario, const QString &clave, int) {
    Close();
    const QString texto = cadena.isEmpty() ? ConnectionString : cadena;
    const CadenaConexion c = CadenaConexion::Interpretar(texto);
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
            break;
        }
        base.setUserName(usuario.isEmpty() ? c.usuario : usuario);
        base.setPassword(clave.isEmpty() ? c.clave : clave);
        if (!base.isValid() || !base.open()) {
            const QString motivo = base.isValid()
                                       ? base.lastError().text()
                                       : QStringLiteral("el controlador de Qt no está instalado.");
            base = QSqlDatabase();
            QSqlDatabase::removeDatabase(nombreConexion);
            throw ErrorBD(QStringLiteral("No se puede abrir %1: %2").arg(Destino(c), motivo));
        }
        dialecto_ = Dialecto::Para(base);
    }
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
}

bool Connection::Abierta() const {
    return QSqlDatabase::contains(nombreConexion) &&
           QSqlDatabase::database(nombreConexion, false).isOpen();
}

QSqlDatabase Connection::Base() const {
    return QSqlDatabase::database(nombreConexion, false);
}

const Dialecto &Connection::dialecto() const {
    if (!dialecto_)
        throw ErrorBD(QStringLiteral("La conexión no está abierta."));
    return *dialecto_;
}

} // namespace ADODB
