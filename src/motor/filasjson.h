#pragma once

// Rows for PostgreSQL as one JSON text: the server reads them with
// json_populate_recordset, each value by the type of the table's own column, in one
// statement rather than one bound value at a time.

#include <QString>
#include <QStringList>
#include <QVariant>
#include <vector>

namespace SQLMotor {

/// The JSON array of the rows `desde` to `hasta` (not included) of `valores`, each row of
/// `columnas.size()` values: one object a row, its values under the columns' names. Nulls (and
/// null QStrings, as Qt's drivers have them) are null, whole numbers numbers (a truth 1 or 0),
/// and anything else the string of its text.
QString FilasJson(const QStringList &columnas, const std::vector<QVariant> &valores, size_t desde,
                  size_t hasta);

} // namespace SQLMotor
