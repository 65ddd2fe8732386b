#pragma once

// What the engine's statements share: how a row of detalle_precio is named on each database,
// running a statement with bound values, batches of rows in one statement, and the hold on a
// list's header that every write of a list takes first.

#include "platform/datos/conexion.h"

#include <QSqlQuery>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVariantList>
#include <vector>

namespace SQLMotor {

/// The databases whose rows the engine can name: SQLite (rowid) and PostgreSQL (ctid).
/// Raises ErrorBD with a clear sentence on any other.
enum class Motor { SQLite, PostgreSQL };
Motor De(ADODB::Connection &conexion);

/// The expression that names a row of a table in a select ("d.rowid", "cast(d.ctid as text)")
/// and in a comparison with a bound or stored key.
QString ClaveFila(Motor motor, const QString &alias);

/// Prepares, binds in order and runs `sentencia`; raises ErrorBD with the database's text.
QSqlQuery Ejecutar(ADODB::Connection &conexion, const QString &sentencia,
                   const QVariantList &valores = {});

/// Inserts rows into `columnas` of `tabla`, from `valores` (row after row, a value for each
/// column). SQLite takes batches of 400 rows, one statement each, bound through its own
/// interface; PostgreSQL takes them as JSON text, 20,000 rows a statement, each value read by
/// its column's own type. Raises ErrorBD.
void InsertarPorLotes(ADODB::Connection &conexion, const QString &tabla,
                      const QStringList &columnas, const std::vector<QVariant> &valores);

/// Inside the caller's unit: true when list `lista` still exists, and then its header is held
/// until the unit ends (select … for update on a server; SQLite's unit already holds the
/// database's write lock). Another terminal's write of the list waits for this unit.
bool BloquearLista(ADODB::Connection &conexion, qint32 lista);

/// A temporary table of this connection, `nombre` with `columnas` ("a integer, b text"), made
/// the first time and emptied every time, so that its rows never outlive the unit that wrote
/// them. (A server is asked first: its "if not exists" speaks up on stderr when it skips.)
/// `opciones` follow the columns ("without rowid").
void TemporalVacia(ADODB::Connection &conexion, const QString &nombre, const QString &columnas,
                   const QString &opciones = {});

/// Whether list `lista` exists, without holding it (for what only reads).
bool ExisteLista(ADODB::Connection &conexion, qint32 lista);

/// A Null of the type a text column binds, and the text of an amount or that Null.
QVariant TextoNulo();
/// Whether `valor` binds as a Null: a null variant, or a null QString in one, as Qt's drivers
/// have it.
bool EsNulo(const QVariant &valor);

} // namespace SQLMotor
