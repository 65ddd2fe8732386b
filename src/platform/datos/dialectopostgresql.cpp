#include "dialectos.h"

#include <QDate>

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
QString DialectoPostgreSQL::Limitar(const QString &sentencia, int filas) const {
    return sentencia + QStringLiteral(" limit ") + QString::number(filas);
}
