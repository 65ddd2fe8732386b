#pragma once

#include "valoresresultado.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QString>
#include <QStringList>
#include <QVariantList>

#include <functional>

namespace ADODB {

/// A result read straight through SQLite's own interface, on the handle of an open Qt SQLite
/// database: no value passes through Qt's driver, and each column's declared type is looked at
/// once, not once per value. The values come out as the SQLite dialect normalises them.
struct LecturaSQLite {
    QStringList nombres;
    ValoresResultado valores;
    int filas = 0;
};

/// SQLite's refusal of a statement, with its text and (extended) result code as the native
/// code, as Qt's driver gives them: the connection words it for the operator (Fallo).
struct FalloSQLite {
    QSqlError error;
};

/// Prepares `sentencia`, binds `valores` to its "?" placeholders in order, and reads the whole
/// result. Gives false, having run nothing, when `base` is not an open SQLite database whose
/// handle can be reached. Raises FalloSQLite when SQLite can't prepare or run the statement,
/// and ErrorBD when it holds more than one statement or has another number of placeholders.
///
/// With `porFila`, the result is never held whole: each row is handed over as soon as it is
/// read, its values alone in `lectura.valores` (lectura.filas counts it), and dropped after.
/// What `porFila` raises ends the reading and goes through.
bool LeerSQLite(const QSqlDatabase &base, const QString &sentencia, const QVariantList &valores,
                LecturaSQLite &lectura, const std::function<void()> &porFila = {});

} // namespace ADODB
