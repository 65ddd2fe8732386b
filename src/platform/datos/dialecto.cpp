#include "dialecto.h"

#include <QRegularExpression>

#include "dialectos.h"

#include <QSqlDatabase>
#include <limits>

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

std::unique_ptr<Dialecto> Dialecto::Para(const QSqlDatabase &base) {
    const QString driver = base.driverName();
    if (driver == QLatin1String("QSQLITE"))
        return std::make_unique<DialectoSQLite>();
    if (driver == QLatin1String("QPSQL"))
        return std::make_unique<DialectoPostgreSQL>();
    return std::make_unique<DialectoODBC>();
}

QString Dialecto::Adaptar(const QString &sentencia) const {
    static const QRegularExpression distintoDeNulo(
        QStringLiteral("([A-Za-z_][A-Za-z0-9_.]*)\\s*<>\\s*null\\b"),
        QRegularExpression::CaseInsensitiveOption);
    if (!sentencia.contains(QLatin1String("null"), Qt::CaseInsensitive))
        return sentencia;
    QString adaptada = sentencia;
    adaptada.replace(distintoDeNulo, QStringLiteral("\\1 is not null"));
    return adaptada;
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
