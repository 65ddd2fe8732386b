#pragma once

#include <QSqlDatabase>
#include <QString>

namespace ADODB {

/// The checks of an SQLite file around its opening, so that a file that can't serve as the
/// suite's database is told apart from an empty one and named with its cause.

/// Before opening: a file that isn't there must be creatable (its folder exists and can be
/// written), one that is there must be a readable plain file. Raises ErrorBD naming the file
/// or the folder and the cause.
void ComprobarFicheroSQLite(const QString &ruta);

/// After opening (SQLite reads nothing until asked): reads the file's schema once. A file
/// that another program keeps locked is waited for as EsperarBloqueosSQLite says. Raises
/// ErrorBD naming the file and the cause (not a database, damaged, still locked) with SQLite's
/// own text; nothing is written to the file.
void ComprobarBaseSQLite(const QSqlDatabase &base, const QString &ruta);

/// After opening: what keeps this program from writing the file, in the operator's words
/// (the file, or its folder, where SQLite makes its journal at each save, can't be written by
/// this account); empty when it can be written. Nothing is written to find out.
QString SoloLecturaSQLite(const QSqlDatabase &base, const QString &ruta);

/// How long a statement waits for another program's lock on the file before it fails with
/// "database is locked".
inline constexpr int EsperaBloqueoSQLite = 30000;

/// Makes the open SQLite database `base` wait for other programs' locks, as long as
/// EsperaBloqueoSQLiteActual says, telling the wait under way (Espera::Latido) as it goes,
/// rather than fail at once.
void EsperarBloqueosSQLite(const QSqlDatabase &base);
/// The ms that a statement of any SQLite connection waits for another program's lock:
/// EsperaBloqueoSQLite unless changed (a test that must not wait that long).
int EsperaBloqueoSQLiteActual();
void FijarEsperaBloqueoSQLite(int ms);

} // namespace ADODB
