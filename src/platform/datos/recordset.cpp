#include "recordset.h"

#include "errorbd.h"
#include "regional.h"

#include <QRegularExpression>
#include <QSqlError>
#include <QSqlField>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QSqlResult>
#include <cmath>
#include <limits>
#include <sqlite3.h>

namespace ADODB {

namespace {

QString TextoError(const QSqlError &error, const QString &sentencia) {
    return error.text().trimmed() + QStringLiteral("\nSentencia: ") + sentencia;
}

/// The declared type of each column, straight from SQLite: the driver reports only the
/// storage class of the first row, which can't tell a date or a price from a text.
std::vector<QString> TiposSQLite(const QSqlQuery &q, int columnas) {
    std::vector<QString> tipos(columnas);
    const QVariant handle = q.result()->handle();
    if (qstrcmp(handle.typeName(), "sqlite3_stmt*") != 0)
        return tipos;
    sqlite3_stmt *stmt = *static_cast<sqlite3_stmt *const *>(handle.constData());
    if (!stmt)
        return tipos;
    for (int c = 0; c < columnas && c < sqlite3_column_count(stmt); ++c)
        if (const char *tipo = sqlite3_column_decltype(stmt, c))
            tipos[c] = QString::fromUtf8(tipo);
    return tipos;
}

} // namespace

QString Field::Name() const {
    return rs->nombres.at(columna);
}

QVariant Field::Value() const {
    return rs->Celda(columna);
}

QString Field::Texto() const {
    return ValorATexto(rs->Celda(columna));
}

qint32 Field::Entero() const {
    const QVariant &v = rs->Celda(columna);
    const QString nombre = rs->nombres.at(columna);
    const auto noEsEntero = [&] {
        return ErrorBD(QStringLiteral("El campo \"%1\" vale \"%2\", que no es un número entero.")
                           .arg(nombre, ValorATexto(v)));
    };
    const auto noCabe = [&] {
        return ErrorBD(
            QStringLiteral("El campo \"%1\" vale %2, que no cabe en un entero de 32 bits.")
                .arg(nombre, ValorATexto(v)));
    };
    if (v.isNull())
        throw ErrorBD(
            QStringLiteral("El campo \"%1\" es nulo y se esperaba un número entero.").arg(nombre));
    constexpr double minimo = std::numeric_limits<qint32>::min();
    constexpr double maximo = std::numeric_limits<qint32>::max();
    switch (v.typeId()) {
    case QMetaType::LongLong:
    case QMetaType::Int: {
        const qlonglong n = v.toLongLong();
        if (n < minimo || n > maximo)
            throw noCabe();
        return qint32(n);
    }
    case QMetaType::Bool:
        return v.toBool() ? 1 : 0;
    case QMetaType::Double: {
        // A whole value kept in a decimal column (3.0) is a whole number; 3.5 is not.
        const double d = v.toDouble();
        if (!std::isfinite(d) || std::trunc(d) != d)
            throw noEsEntero();
        if (d < minimo || d > maximo)
            throw noCabe();
        return qint32(d);
    }
    case QMetaType::QString: {
        const QString t = v.toString().trimmed();
        static const QRegularExpression digitos(QStringLiteral("^[+-]?[0-9]+$"));
        if (!digitos.match(t).hasMatch())
            throw noEsEntero();
        bool ok = false;
        const qlonglong n = t.toLongLong(&ok);
        if (!ok || n < minimo || n > maximo)
            throw noCabe();
        return qint32(n);
    }
    default:
        throw noEsEntero();
    }
}

void Recordset::Open(const QString &sentencia, Connection &conexion, int cursorType, int lockType,
                     int options) {
    Open(sentencia, QVariantList(), conexion, cursorType, lockType, options);
}

void Recordset::Open(const QString &sentencia, const QVariantList &valores, Connection &conexion,
                     int, int, int) {
    Close();
    if (!conexion.Abierta())
        throw ErrorBD(QStringLiteral("La conexión no está abierta.\nSentencia: ") + sentencia);
    const Dialecto &dialecto = conexion.dialecto();
    const QString texto = dialecto.Adaptar(sentencia);
    QSqlDatabase base = conexion.Base();
    const bool esSQLite = base.driverName() == QLatin1String("QSQLITE");

    QSqlQuery q(base);
    // Every result is read whole and at once, so the driver need not keep rows behind us.
    q.setForwardOnly(true);
    if (!q.prepare(texto))
        throw ErrorBD(TextoError(q.lastError(), texto));
    for (const QVariant &valor : valores)
        q.addBindValue(valor);
    if (!q.exec())
        throw ErrorBD(TextoError(q.lastError(), texto));

    QStringList leidos;
    std::vector<QVariant> leidas;
    int cuenta = 0;
    if (q.isSelect()) {
        const QSqlRecord registro = q.record();
        const int columnas = registro.count();
        leidos.reserve(columnas);
        std::vector<QString> tipos;
        if (esSQLite) {
            tipos = TiposSQLite(q, columnas);
        } else {
            tipos.reserve(columnas);
            for (int c = 0; c < columnas; ++c)
                tipos.emplace_back(QString::fromLatin1(registro.field(c).metaType().name()));
        }
        for (int c = 0; c < columnas; ++c)
            leidos.append(registro.fieldName(c));
        // size() is known only to some drivers (not SQLite nor ODBC): count while reading.
        if (const int previstas = q.size(); previstas > 0)
            leidas.reserve(size_t(previstas) * size_t(columnas));
        while (q.next()) {
            for (int c = 0; c < columnas; ++c) {
                QVariant valor = q.value(c);
                // The driver's own word on Null: some give a typed value with a text of "0".
                if (!esSQLite && !valor.isNull() && q.isNull(c))
                    valor = QVariant();
                leidas.push_back(dialecto.Normalizar(valor, tipos[size_t(c)]));
            }
            ++cuenta;
        }
        if (q.lastError().isValid())
            throw ErrorBD(TextoError(q.lastError(), texto));
    }
    nombres = std::move(leidos);
    celdas = std::move(leidas);
    filas = cuenta;
    posicion = 0;
    abierto = true;
}

void Recordset::Close() {
    nombres.clear();
    celdas.clear();
    celdas.shrink_to_fit();
    filas = 0;
    posicion = 0;
    abierto = false;
}

void Recordset::MoveNext() {
    if (!abierto)
        throw ErrorBD(QStringLiteral("El recordset está cerrado."));
    if (Eof())
        throw ErrorBD(QStringLiteral("No hay más filas: el recordset ya está al final."));
    ++posicion;
}

Field Recordset::Fields(const QString &nombre) const {
    if (!abierto)
        throw ErrorBD(QStringLiteral("El recordset está cerrado: no se puede leer el campo \"%1\".")
                          .arg(nombre));
    for (int c = 0; c < nombres.size(); ++c)
        if (nombres.at(c).compare(nombre, Qt::CaseInsensitive) == 0)
            return Field(this, c);
    throw ErrorBD(QStringLiteral("La consulta no tiene el campo \"%1\". Sus campos son: %2.")
                      .arg(nombre, nombres.join(QStringLiteral(", "))));
}

Field Recordset::Fields(int indice) const {
    if (!abierto)
        throw ErrorBD(
            QStringLiteral("El recordset está cerrado: no se puede leer el campo %1.").arg(indice));
    if (indice < 0 || indice >= nombres.size())
        throw ErrorBD(
            QStringLiteral("La consulta no tiene el campo %1: tiene %2 campos, del 0 al %3.")
                .arg(indice)
                .arg(nombres.size())
                .arg(nombres.size() - 1));
    return Field(this, indice);
}

const QVariant &Recordset::Celda(int columna) const {
    if (!abierto)
        throw ErrorBD(QStringLiteral("El recordset está cerrado."));
    if (posicion < 0 || posicion >= filas)
        throw ErrorBD(QStringLiteral("No hay fila actual: la consulta no dio filas o ya se leyó la "
                                     "última (campo \"%1\").")
                          .arg(nombres.value(columna)));
    return celdas[size_t(posicion) * size_t(nombres.size()) + size_t(columna)];
}

} // namespace ADODB
