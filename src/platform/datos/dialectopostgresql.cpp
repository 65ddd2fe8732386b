#include "dialectos.h"

#include <QDate>
#include <QSqlDatabase>

#include <dlfcn.h>

namespace ADODB {

namespace {

/// A function of libpq, found in the process: libpq is there whenever a PostgreSQL
/// connection exists, loaded by Qt's driver; nothing here links it.
template <class F> F FuncionLibpq(const char *nombre) {
    void *libpq = ::dlopen("libpq.so.5", RTLD_LAZY | RTLD_NOLOAD);
    return libpq ? reinterpret_cast<F>(::dlsym(libpq, nombre)) : nullptr;
}

/// The PGconn of an open connection of Qt's driver, or nullptr.
const void *Manejador(const QSqlDatabase &base) {
    const QVariant manejador = base.driver() ? base.driver()->handle() : QVariant();
    // PGconn is libpq's name for struct pg_conn; Qt names the type by the one or the other.
    if (qstrcmp(manejador.typeName(), "PGconn*") != 0 &&
        qstrcmp(manejador.typeName(), "pg_conn*") != 0)
        return nullptr;
    return *static_cast<void *const *>(manejador.constData());
}

} // namespace

QVariant DialectoPostgreSQL::Normalizar(const QVariant &valor, const QString &tipoDeclarado) const {
    if (valor.isNull())
        return {};
    // numeric arrives as a double, or as its text when the query asked for full precision.
    if (valor.typeId() == QMetaType::QString && tipoDeclarado == QLatin1String("double")) {
        bool ok = false;
        const double d = valor.toString().toDouble(&ok);
        return ok ? QVariant(d) : valor;
    }
    if (valor.typeId() == QMetaType::QString && tipoDeclarado == QLatin1String("QDate")) {
        const QDate fecha = QDate::fromString(valor.toString(), Qt::ISODate);
        return fecha.isValid() ? QVariant(fecha) : valor;
    }
    return Dialecto::Normalizar(valor, tipoDeclarado);
}

// lower() on both sides, which an index on lower(columna) text_pattern_ops answers, and "~~",
// PostgreSQL's own like: the word "like" would be reworded as ilike by Adaptar, which no such
// index serves. text_pattern_ops compares characters as they are, whatever the database's
// collation, which is what a range for a fixed start needs.
QString DialectoPostgreSQL::ParecidoSinMayusculas(const QString &columna) const {
    return QStringLiteral("lower(") + columna + QStringLiteral(") ~~ lower(?)");
}
QString DialectoPostgreSQL::PatronParecido(const QString &texto) const {
    // The backslash is PostgreSQL's escape character in a like; doubled it is a character, as
    // it is in SQLite.
    QString patron = texto;
    patron.replace(QLatin1Char('\\'), QStringLiteral("\\\\"));
    return patron;
}
QString DialectoPostgreSQL::IndiceSinMayusculas(const QString &columna) const {
    return QStringLiteral("lower(") + columna + QStringLiteral(") text_pattern_ops");
}
// An unquoted name is kept in small letters; the tables live in the connection's schema.
QString DialectoPostgreSQL::DefinicionIndice() const {
    return QStringLiteral("select indexdef from pg_indexes where schemaname = current_schema() "
                          "and indexname = lower(?)");
}
QString DialectoPostgreSQL::Limitar(const QString &sentencia, int filas) const {
    return sentencia + QStringLiteral(" limit ") + QString::number(filas);
}

bool DialectoPostgreSQL::ConexionPerdida(const QSqlError &error, const QSqlDatabase &base) const {
    if (Dialecto::ConexionPerdida(error, base))
        return true;
    // PQstatus: anything but CONNECTION_OK (0) is a connection gone.
    using Estado = int (*)(const void *);
    static const Estado estado = FuncionLibpq<Estado>("PQstatus");
    const void *pg = Manejador(base);
    return estado && pg && estado(pg) != 0;
}

int DialectoPostgreSQL::SocketServidor(const QSqlDatabase &base) const {
    using Socket = int (*)(const void *);
    static const Socket socket = FuncionLibpq<Socket>("PQsocket");
    const void *pg = Manejador(base);
    return socket && pg ? socket(pg) : -1;
}

Dialecto::Seguimiento DialectoPostgreSQL::SeguimientoCambios() const {
    return Seguimiento::Notificaciones;
}

} // namespace ADODB
