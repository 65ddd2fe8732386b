#include "sqlmotor.h"

#include "filasjson.h"
#include "lotessqlite.h"

#include "platform/datos/errorbd.h"
#include "platform/datos/recordset.h"

#include <QSqlDriver>
#include <QSqlError>

using namespace ADODB;

namespace SQLMotor {

Motor De(ADODB::Connection &conexion) {
    switch (conexion.dialecto().Producto()) {
    case QSqlDriver::SQLite:
        return Motor::SQLite;
    case QSqlDriver::PostgreSQL:
        return Motor::PostgreSQL;
    default:
        break;
    }
    if (conexion.Base().driverName() == QLatin1String("QSQLITE"))
        return Motor::SQLite;
    throw ErrorBD(
        QStringLiteral("Los cambios de una tarifa entera (cambiar precios, copiar, quitar "
                       "un producto, deshacer) solo se pueden hacer en una base de datos "
                       "SQLite o PostgreSQL; esta es %1. No se ha grabado nada.")
            .arg(conexion.Base().driverName()));
}

QString ClaveFila(Motor motor, const QString &alias) {
    if (motor == Motor::SQLite)
        return alias + QStringLiteral(".rowid");
    return QStringLiteral("cast(") + alias + QStringLiteral(".ctid as text)");
}

QSqlQuery Ejecutar(ADODB::Connection &conexion, const QString &sentencia,
                   const QVariantList &valores) {
    QSqlQuery q(conexion.Base());
    // A statement with nothing to bind runs as it is: PostgreSQL prepares no DDL, lock or
    // savepoint.
    if (valores.isEmpty()) {
        if (!q.exec(sentencia))
            throw conexion.Fallo(q.lastError(), sentencia);
        return q;
    }
    if (!q.prepare(sentencia))
        throw conexion.Fallo(q.lastError(), sentencia);
    for (const QVariant &v : valores)
        q.addBindValue(v);
    if (!q.exec())
        throw conexion.Fallo(q.lastError(), sentencia);
    return q;
}

void InsertarPorLotes(ADODB::Connection &conexion, const QString &tabla,
                      const QStringList &columnas, const std::vector<QVariant> &valores) {
    const QString lista = columnas.join(QStringLiteral(", "));
    const size_t porFila = size_t(columnas.size());
    if (De(conexion) == Motor::PostgreSQL) {
        // 20,000 rows a statement: a few megabytes of text at a time.
        const size_t porSentencia = 20000 * porFila;
        const QString texto = QStringLiteral("insert into ") + tabla + QStringLiteral(" (") +
                              lista + QStringLiteral(") select ") + lista +
                              QStringLiteral(" from json_populate_recordset(null::") + tabla +
                              QStringLiteral(", cast(? as json))");
        for (size_t desde = 0; desde < valores.size(); desde += porSentencia)
            Ejecutar(conexion, texto,
                     {FilasJson(columnas, valores, desde,
                                std::min(valores.size(), desde + porSentencia))});
        return;
    }
    // 400 rows a statement keeps well inside SQLite's limit of bound values and saves nearly
    // all the cost of a statement per row.
    constexpr int FilasPorLote = 400;
    const int filas = int(valores.size() / porFila);
    const QString cabecera = QStringLiteral("insert into ") + tabla + QStringLiteral(" (") + lista +
                             QStringLiteral(") values ");
    QString fila = QStringLiteral("(?");
    for (size_t c = 1; c < porFila; ++c)
        fila += QStringLiteral(", ?");
    fila += QLatin1Char(')');
    const auto sentencia = [&](int n) -> QString {
        QStringList partes;
        partes.reserve(n);
        for (int i = 0; i < n; ++i)
            partes << fila;
        return cabecera + partes.join(QStringLiteral(", "));
    };
    const int sobrantes = filas % FilasPorLote;
    InsertarLotesSQLite(conexion, sentencia(FilasPorLote), FilasPorLote * int(porFila),
                        sobrantes ? sentencia(sobrantes) : QString(), valores);
}

bool BloquearLista(ADODB::Connection &conexion, qint32 lista) {
    const bool servidor = De(conexion) == Motor::PostgreSQL;
    ADODB::Recordset rs;
    rs.Open(QStringLiteral("select identificador from cabecera_precio where identificador = ?") +
                (servidor ? QStringLiteral(" for update") : QString()),
            {lista}, conexion);
    const bool viva = rs.RecordCount() > 0;
    rs.Close();
    return viva;
}

void TemporalVacia(ADODB::Connection &conexion, const QString &nombre, const QString &columnas,
                   const QString &opciones) {
    bool falta = true;
    if (De(conexion) == Motor::PostgreSQL) {
        QSqlQuery q = Ejecutar(conexion, QStringLiteral("select to_regclass(?) is null"),
                               {QString(QStringLiteral("pg_temp.") + nombre)});
        falta = q.next() && q.value(0).toBool();
    }
    if (falta)
        Ejecutar(conexion, QStringLiteral("create temporary table if not exists ") + nombre +
                               QStringLiteral(" (") + columnas + QStringLiteral(") ") + opciones);
    Ejecutar(conexion, QStringLiteral("delete from ") + nombre);
}

bool ExisteLista(ADODB::Connection &conexion, qint32 lista) {
    ADODB::Recordset rs;
    rs.Open(QStringLiteral("select identificador from cabecera_precio where identificador = ?"),
            {lista}, conexion);
    return rs.RecordCount() > 0;
}

bool EsNulo(const QVariant &valor) {
    return valor.isNull() || (valor.typeId() == QMetaType::QString &&
                              static_cast<const QString *>(valor.constData())->isNull());
}

QVariant TextoNulo() {
    return QVariant(QMetaType::fromType<QString>());
}

} // namespace SQLMotor
