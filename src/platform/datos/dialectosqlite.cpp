#include "dialectos.h"

#include <QDate>
#include <QDateTime>
#include <QSqlDatabase>
#include <QSqlQuery>

namespace ADODB {

namespace {

using ClaseColumna = DialectoSQLite::ClaseColumna;

/// Whether `tipo` starts with `prefijo` (lower-case ASCII), whatever the case.
template <qsizetype N> bool Empieza(QStringView tipo, const char (&prefijo)[N]) {
    if (tipo.size() < N - 1)
        return false;
    for (qsizetype i = 0; i < N - 1; ++i) {
        char16_t c = tipo[i].unicode();
        if (c >= u'A' && c <= u'Z')
            c = char16_t(c + (u'a' - u'A'));
        if (c != char16_t(prefijo[i]))
            return false;
    }
    return true;
}

} // namespace

DialectoSQLite::ClaseColumna DialectoSQLite::ClaseDe(QStringView tipo) {
    if (tipo.isEmpty())
        return ClaseColumna::Otra;
    switch (tipo[0].unicode() | 0x20) { // lower case, for letters
    case u'd':
        if (Empieza(tipo, "datetime"))
            return ClaseColumna::FechaHora;
        if (Empieza(tipo, "date"))
            return ClaseColumna::Fecha;
        if (Empieza(tipo, "decimal"))
            return ClaseColumna::Decimal;
        return ClaseColumna::Otra;
    case u't':
        return Empieza(tipo, "timestamp") ? ClaseColumna::FechaHora : ClaseColumna::Otra;
    case u'n':
        return Empieza(tipo, "numeric") ? ClaseColumna::Decimal : ClaseColumna::Otra;
    case u'b':
        return Empieza(tipo, "bool") ? ClaseColumna::Booleano : ClaseColumna::Otra;
    default:
        return ClaseColumna::Otra;
    }
}

namespace {

QVariant Booleano(const QVariant &valor) {
    switch (valor.typeId()) {
    case QMetaType::LongLong:
    case QMetaType::Int:
        return QVariant(valor.toLongLong() != 0);
    case QMetaType::Double:
        return QVariant(valor.toDouble() != 0);
    case QMetaType::QString: {
        const QString t = valor.toString().trimmed();
        for (const char *si : {"1", "-1", "true", "t", "s", "verdadero"})
            if (t.compare(QLatin1String(si), Qt::CaseInsensitive) == 0)
                return QVariant(true);
        for (const char *no : {"0", "false", "f", "n", "falso"})
            if (t.compare(QLatin1String(no), Qt::CaseInsensitive) == 0)
                return QVariant(false);
        return valor;
    }
    default:
        return valor;
    }
}

} // namespace

QVariant DialectoSQLite::Normalizar(const QVariant &valor, const QString &tipoDeclarado) const {
    return NormalizarClase(valor, ClaseDe(tipoDeclarado));
}

QVariant DialectoSQLite::NormalizarClase(const QVariant &valor, ClaseColumna clase) {
    if (valor.isNull())
        return {};
    switch (clase) {
    case ClaseColumna::Otra:
        // SQLite's own storage classes: a whole number, a double, a text or a blob.
        return valor.typeId() == QMetaType::Int ? QVariant(valor.toLongLong()) : valor;
    case ClaseColumna::Fecha:
        if (valor.typeId() == QMetaType::QString) {
            // "2026-01-31", or a date that another program stored with a time after it.
            const QDate fecha = QDate::fromString(valor.toString().left(10), Qt::ISODate);
            if (fecha.isValid())
                return fecha;
        }
        return valor; // anything else is shown as it was stored, not lost
    case ClaseColumna::FechaHora:
        if (valor.typeId() == QMetaType::QString) {
            const QDateTime momento = QDateTime::fromString(valor.toString(), Qt::ISODate);
            if (momento.isValid())
                return momento;
            const QDate fecha = QDate::fromString(valor.toString(), Qt::ISODate);
            if (fecha.isValid())
                return QDateTime(fecha, QTime(0, 0));
        }
        return valor;
    case ClaseColumna::Decimal:
        if (valor.typeId() == QMetaType::LongLong || valor.typeId() == QMetaType::Int)
            return QVariant(valor.toDouble());
        if (valor.typeId() == QMetaType::QString) {
            // An empty or non-numeric text (some programs store '' for "no price") stays text.
            bool ok = false;
            const double d = valor.toString().toDouble(&ok);
            if (ok)
                return d;
        }
        return valor;
    case ClaseColumna::Booleano:
        return Booleano(valor);
    }
    return valor;
}

QString DialectoSQLite::TipoSQL(TipoColumna tipo) const {
    // SQLite reads "double precision" as well, but "real" is its own name for a double.
    return tipo == TipoColumna::Real ? QStringLiteral("real") : Dialecto::TipoSQL(tipo);
}

// SQLite's like ignores the case of ASCII letters, and it reads a range of an index only when
// the index compares as the like does: with the collation nocase. An index on the bare column
// (collation binary) is never used by a like, and the table is read whole.
QString DialectoSQLite::ParecidoSinMayusculas(const QString &columna) const {
    return columna + QStringLiteral(" like ?");
}
QString DialectoSQLite::IndiceSinMayusculas(const QString &columna) const {
    return columna + QStringLiteral(" collate nocase");
}
// SQLite keeps each index's create statement as it was given; index names ignore case.
QString DialectoSQLite::DefinicionIndice() const {
    return QStringLiteral(
        "select sql from sqlite_master where type = 'index' and lower(name) = lower(?)");
}
QString DialectoSQLite::Limitar(const QString &sentencia, int filas) const {
    return sentencia + QStringLiteral(" limit ") + QString::number(filas);
}

namespace {

QSqlError Control(QSqlDatabase &base, const QString &sentencia) {
    QSqlQuery q(base);
    return q.exec(sentencia) ? QSqlError() : q.lastError();
}

} // namespace

QSqlError DialectoSQLite::ComenzarUnidad(QSqlDatabase &base) const {
    return Control(base, QStringLiteral("begin immediate"));
}

QSqlError DialectoSQLite::ConfirmarUnidad(QSqlDatabase &base) const {
    return Control(base, QStringLiteral("commit"));
}

QSqlError DialectoSQLite::DeshacerUnidad(QSqlDatabase &base) const {
    return Control(base, QStringLiteral("rollback"));
}

Dialecto::Seguimiento DialectoSQLite::SeguimientoCambios() const {
    return Seguimiento::ContadorFichero;
}

} // namespace ADODB
