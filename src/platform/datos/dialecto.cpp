#include "dialecto.h"

#include "dialectos.h"

#include <QSqlDatabase>
#include <QSqlDriver>
#include <limits>

namespace ADODB {

QVariant Dialecto::Normalizar(const QVariant &valor, const QString &) const {
    if (valor.isNull())
        return {}; // whatever type the driver gave its Null, the program sees one Null
    switch (valor.typeId()) {
    case QMetaType::Int:
    case QMetaType::Short:
    case QMetaType::Long:
    case QMetaType::SChar:
    case QMetaType::UInt:
    case QMetaType::UShort:
    case QMetaType::UChar:
        return QVariant(valor.toLongLong());
    case QMetaType::ULong:
    case QMetaType::ULongLong:
        if (valor.toULongLong() <= quint64(std::numeric_limits<qlonglong>::max()))
            return QVariant(valor.toLongLong());
        return valor;
    case QMetaType::Float:
        return QVariant(valor.toDouble());
    default:
        return valor;
    }
}

// A database we know nothing of: the standard like (which Adaptar rewords where the
// database's like tells capitals apart), any index, and no limit that it might not read.
QString Dialecto::ParecidoSinMayusculas(const QString &columna) const {
    return columna + QStringLiteral(" like ?");
}
QString Dialecto::PatronParecido(const QString &texto) const {
    return texto;
}
QString Dialecto::IndiceSinMayusculas(const QString &columna) const {
    return columna;
}
QString Dialecto::DefinicionIndice() const {
    return {};
}
QString Dialecto::Limitar(const QString &sentencia, int) const {
    return sentencia;
}

std::unique_ptr<Dialecto> Dialecto::Para(const QSqlDatabase &base) {
    const QString driver = base.driverName();
    if (driver == QLatin1String("QSQLITE"))
        return std::make_unique<DialectoSQLite>();
    // PostgreSQL reads the statements' text alike whether Qt reaches it directly or through
    // its ODBC driver; the values come through each driver in its own way.
    static constexpr Diferencias postgresql{true, true, true, true};
    std::unique_ptr<Dialecto> dialecto;
    if (driver == QLatin1String("QPSQL"))
        dialecto = std::make_unique<DialectoPostgreSQL>();
    else
        dialecto = std::make_unique<DialectoODBC>();
    if (base.driver())
        dialecto->producto = base.driver()->dbmsType();
    if (dialecto->producto == QSqlDriver::PostgreSQL)
        dialecto->diferencias = postgresql;
    return dialecto;
}

QString Dialecto::TipoSQL(TipoColumna tipo) const {
    switch (tipo) {
    case TipoColumna::Entero:
        return QStringLiteral("integer");
    case TipoColumna::EnteroCorto:
        return QStringLiteral("smallint");
    case TipoColumna::Texto:
        return QStringLiteral("text");
    case TipoColumna::Fecha:
        return QStringLiteral("date");
    case TipoColumna::Decimal:
        return QStringLiteral("numeric");
    case TipoColumna::Real:
        return QStringLiteral("double precision");
    case TipoColumna::Booleano:
        return QStringLiteral("boolean");
    }
    return QStringLiteral("text");
}

QSqlError Dialecto::ComenzarUnidad(QSqlDatabase &base) const {
    return base.transaction() ? QSqlError() : base.lastError();
}

QSqlError Dialecto::ConfirmarUnidad(QSqlDatabase &base) const {
    return base.commit() ? QSqlError() : base.lastError();
}

QSqlError Dialecto::DeshacerUnidad(QSqlDatabase &base) const {
    return base.rollback() ? QSqlError() : base.lastError();
}

bool Dialecto::ConexionPerdida(const QSqlError &error, const QSqlDatabase &base) const {
    const QString codigo = error.nativeErrorCode();
    // SQLSTATE class 08 is a connection exception, on a server and through ODBC alike.
    // 57P01 to 57P03: the server shut down, crashed, or is starting again.
    return codigo.startsWith(QLatin1String("08")) || codigo.contains(QLatin1String(";08")) ||
           codigo.startsWith(QLatin1String("57P0")) || !base.isOpen();
}

QString Dialecto::BloquearFilas(const QString &consulta) const {
    // A PostgreSQL server, reached directly or through ODBC, locks the rows it selects.
    return Producto() == QSqlDriver::PostgreSQL ? consulta + QStringLiteral(" for update")
                                                : consulta;
}

int Dialecto::SocketServidor(const QSqlDatabase &) const {
    return -1;
}

Dialecto::Seguimiento Dialecto::SeguimientoCambios() const {
    return Seguimiento::Huella;
}

} // namespace ADODB
