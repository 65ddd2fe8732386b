#pragma once

// Batches of rows into SQLite through SQLite's own interface: Qt's driver names every "?" of
// a statement and makes a text for each value it binds, which for the 300,000 values of an
// import of 100,000 prices costs more than the insert itself.

#include "platform/datos/conexion.h"

#include <QString>
#include <QVariant>
#include <vector>

namespace SQLMotor {

/// Runs `sentencia` (its "?" placeholders as many as a batch's values) once for each batch of
/// `porLote` values of `valores`, the last with `resto` (its own statement for the values
/// left over, empty when none are). Whole numbers, decimals, texts and Nulls (a null QString
/// too, as Qt's drivers have it) are bound as such; any other value as its text. Raises ErrorBD
/// with SQLite's text when a statement fails, or when the connection is not an open SQLite one.
void InsertarLotesSQLite(ADODB::Connection &conexion, const QString &sentencia, int porLote,
                         const QString &resto, const std::vector<QVariant> &valores);

} // namespace SQLMotor
