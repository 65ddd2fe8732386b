#pragma once

#include "dialecto.h"

namespace ADODB {

/// The dialects the suite runs on. Each overrides only what its database does differently.
/// Private to the data layer: the rest of the program sees Dialecto.

/// SQLite: declared types are only names, so a column's declared type tells a date (stored
/// as ISO text "yyyy-MM-dd"), a decimal or a Boolean (stored as 0/1) from its raw value.
class DialectoSQLite : public Dialecto {
  public:
    QVariant Normalizar(const QVariant &valor, const QString &tipoDeclarado) const override;
    QString TipoSQL(TipoColumna tipo) const override;
    QString ParecidoSinMayusculas(const QString &columna) const override;
    QString IndiceSinMayusculas(const QString &columna) const override;
    /// The statement an index was made with, as sqlite_master keeps it.
    QString DefinicionIndice() const override;
    QString Limitar(const QString &sentencia, int filas) const override;
    /// BEGIN IMMEDIATE: the write lock at the start, not at the first write, so that what the
    /// unit reads first can't be changed by another terminal before it writes.
    QSqlError ComenzarUnidad(QSqlDatabase &base) const override;
    QSqlError ConfirmarUnidad(QSqlDatabase &base) const override;
    QSqlError DeshacerUnidad(QSqlDatabase &base) const override;
    /// PRAGMA data_version.
    Seguimiento SeguimientoCambios() const override;

    /// What a declared type means, by SQLite's habit of reading the type's name: "date",
    /// "numeric(10,2)", "decimal", "boolean"... Other names ("integer", "text", "real", none)
    /// are Otra and change nothing. Worked out once per column of a result.
    enum class ClaseColumna { Otra, Fecha, FechaHora, Decimal, Booleano };
    static ClaseColumna ClaseDe(QStringView tipoDeclarado);
    /// Normalizar, for a column whose class is known.
    static QVariant NormalizarClase(const QVariant &valor, ClaseColumna clase);
};

/// PostgreSQL, through Qt's QPSQL driver. `tipoDeclarado` is the name of the column's Qt type.
class DialectoPostgreSQL : public Dialecto {
  public:
    QVariant Normalizar(const QVariant &valor, const QString &tipoDeclarado) const override;
    QString ParecidoSinMayusculas(const QString &columna) const override;
    QString PatronParecido(const QString &texto) const override;
    QString IndiceSinMayusculas(const QString &columna) const override;
    /// pg_indexes' indexdef, in the connection's own schema.
    QString DefinicionIndice() const override;
    QString Limitar(const QString &sentencia, int filas) const override;
    /// Also libpq's own word on the connection (PQstatus), which a failed statement leaves.
    bool ConexionPerdida(const QSqlError &error, const QSqlDatabase &base) const override;
    /// PQsocket of the connection.
    int SocketServidor(const QSqlDatabase &base) const override;
    /// LISTEN on the suite's channel.
    Seguimiento SeguimientoCambios() const override;
};

/// Any other database reached through an ODBC data source: standard SQL types, and the
/// values as the driver gives them.
class DialectoODBC : public Dialecto {
  public:
    QString TipoSQL(TipoColumna tipo) const override;
    /// A PostgreSQL or SQLite database behind the source is searched as when reached directly.
    QString ParecidoSinMayusculas(const QString &columna) const override;
    QString PatronParecido(const QString &texto) const override;
    QString IndiceSinMayusculas(const QString &columna) const override;
    QString DefinicionIndice() const override;
    QString Limitar(const QString &sentencia, int filas) const override;

  private:
    /// The dialect of the database product behind the source, when it is one of ours.
    const Dialecto *detras() const;
};

} // namespace ADODB
