#include "recordset.h"

#include "errorbd.h"
#include "lecturasqlite.h"
#include "regional.h"

#include <QRegularExpression>
#include <QSqlError>
#include <QSqlField>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QSqlResult>
#include <cmath>
#include <limits>
#include <utility>

using namespace Sistema;

namespace ADODB {

QString Field::Name() const {
    return rs->nombres.at(columna);
}

QVariant Field::Value() const {
    return rs->celdas.Valor(rs->Celda(columna));
}

bool Field::EsNulo() const {
    return rs->celdas.EsNulo(rs->Celda(columna));
}

QString Field::Texto() const {
    return rs->celdas.Texto(rs->Celda(columna));
}

bool Field::TextoUtf8(QByteArrayView &bytes) const {
    return rs->celdas.Utf8(rs->Celda(columna), bytes);
}

qint32 Field::Entero() const {
    const QVariant v = Value();
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
    Leer(conexion, sentencia, valores, {});
    posicion = 0;
    primera = 0;
    abierto = true;
}

void Recordset::Recorrer(const QString &sentencia, Connection &conexion,
                         const std::function<void()> &porFila, const QVariantList &valores) {
    Close();
    struct Cierre {
        Recordset &rs;
        ~Cierre() { rs.Close(); }
    } cierre{*this};
    Leer(conexion, sentencia, valores, porFila);
}

void Recordset::Leer(Connection &conexion, const QString &sentencia, const QVariantList &valores,
                     const std::function<void()> &porFila) {
    if (!conexion.Abierta())
        throw ErrorBD(QStringLiteral("La conexión no está abierta.\nSentencia: ") + sentencia);
    // First, as a use of the connection: one that was lost is opened again here.
    const QSqlDatabase base = conexion.Base();
    const Dialecto &dialecto = conexion.dialecto();
    const QString texto = dialecto.Adaptar(sentencia);

    LecturaSQLite sqlite;
    bool leida = false;
    std::function<void()> enFila;
    if (porFila)
        enFila = [&] { EnFila(sqlite.nombres, sqlite.valores, sqlite.filas, porFila); };
    try {
        if (!conexion.Ejecutar(
                [&] { return leida = LeerSQLite(base, texto, valores, sqlite, enFila); }) &&
            leida)
            throw conexion.Fallo(QSqlError(), texto);
    } catch (const FalloSQLite &fallo) {
        throw conexion.Fallo(fallo.error, texto);
    }
    if (!leida) {
        LeerConQt(conexion, dialecto, texto, valores, porFila);
    } else if (!porFila) {
        nombres = std::move(sqlite.nombres);
        celdas = std::move(sqlite.valores);
        filas = sqlite.filas;
    }
}

void Recordset::EnFila(const QStringList &columnas, ValoresResultado &fila, int leidas,
                       const std::function<void()> &porFila) {
    if (!abierto) {
        nombres = columnas;
        abierto = true;
    }
    // The row's values are lent to the recordset while `porFila` reads them, and go back to
    // the reading to hold the next row in the same memory.
    std::swap(celdas, fila);
    filas = leidas;
    posicion = primera = leidas - 1;
    porFila();
    std::swap(celdas, fila);
}

void Recordset::LeerConQt(Connection &conexion, const Dialecto &dialecto, const QString &texto,
                          const QVariantList &valores, const std::function<void()> &porFila) {
    QSqlQuery q(std::as_const(conexion).Base());
    // Every result is read whole and at once, so the driver need not keep rows behind us.
    q.setForwardOnly(true);
    QStringList leidos;
    ValoresResultado leidas;
    int cuenta = 0;
    // The rows come from a server as they are read: reading them is part of the statement.
    // One with nothing to bind runs as it stands: preparing it first would cost a server two
    // more round trips for each query.
    const bool ok = conexion.Ejecutar([&] {
        const bool hecha = valores.isEmpty() ? q.exec(texto) : q.prepare(texto) && [&] {
            for (const QVariant &valor : valores)
                q.addBindValue(valor);
            return q.exec();
        }();
        if (!hecha || !q.isSelect())
            return hecha;
        const QSqlRecord registro = q.record();
        const int columnas = registro.count();
        QStringList tipos;
        for (int c = 0; c < columnas; ++c) {
            leidos.append(registro.fieldName(c));
            tipos.append(QString::fromLatin1(registro.field(c).metaType().name()));
        }
        while (q.next()) {
            for (int c = 0; c < columnas; ++c) {
                // The driver's own word on Null: some give a typed value with a text of "0".
                const QVariant valor = q.isNull(c) ? QVariant() : q.value(c);
                leidas.Anadir(dialecto.Normalizar(valor, tipos.at(c)));
            }
            ++cuenta;
            if (porFila) {
                EnFila(leidos, leidas, cuenta, porFila);
                leidas.vaciar();
            }
        }
        return !q.lastError().isValid();
    });
    if (!ok)
        throw conexion.Fallo(q.lastError(), texto);
    if (porFila)
        return;
    nombres = std::move(leidos);
    celdas = std::move(leidas);
    filas = cuenta;
}

void Recordset::Close() {
    nombres.clear();
    celdas.clear();
    filas = 0;
    posicion = 0;
    primera = 0;
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

size_t Recordset::Celda(int columna) const {
    if (!abierto)
        throw ErrorBD(QStringLiteral("El recordset está cerrado."));
    // A recordset walked row by row holds only the row it stands on.
    if (posicion < primera || posicion >= filas)
        throw ErrorBD(QStringLiteral("No hay fila actual: la consulta no dio filas o ya se leyó la "
                                     "última (campo \"%1\").")
                          .arg(nombres.value(columna)));
    return size_t(posicion - primera) * size_t(nombres.size()) + size_t(columna);
}

} // namespace ADODB
