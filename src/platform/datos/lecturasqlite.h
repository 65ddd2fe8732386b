#pragma once

#include "valoresresultado.h"

#include <QSqlDatabase>
#include <QString>
#include <QStringList>
#include <QVariantList>

/// A result read straight through SQLite's own interface, on the handle of an open Qt SQLite
/// database: no value passes through Qt's driver, and each column's declared type is looked at
/// once, not once per value. The values come out as the SQLite dialect normalises them.
struct LecturaSQLite {
    QStringList nombres;
    ValoresResultado valores;
    int filas = 0;
};

/// Prepares `sentencia`, binds `valores` to its "?" placeholders in order, and reads the whole
/// result. Gives false, having run nothing, when `base` is not an open SQLite database whose
/// handle can be reached. Raises ErrorBD with SQLite's own text when the statement can't be
/// prepared or run, holds more than one statement, or has another number of placeholders.
bool LeerSQLite(const QSqlDatabase &base, const QString &sentencia, const QVariantList &valores,
                LecturaSQLite &lectura);
