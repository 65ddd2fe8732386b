#pragma once

#include "platform/datos/conexion.h"

#include <QString>

/// Finds and opens the suite's database.
///   TARIFAS_DB set: the connection string it holds (see cadenaconexion.h).
///   Otherwise: the SQLite file tarifas.sqlite in the suite's data directory.
/// A database that lacks the suite's tables gets them. One that lacked them all gets the demo
/// shop too when it is the embedded default, or when TARIFAS_DEMO=1. Tables and demo go in
/// one unit of work. A database that can't be read is reported, never taken for an empty one.
/// An index of the schema that an older program made otherwise is made again (RevisarIndices).
class SvcConexion {
  public:
    /// `cadena` empty: the rules above; otherwise that connection string.
    void AbrirConexion(const QString &cadena, ADODB::Connection &conexion);

    /// The connection string the rules above lead to when nothing is given.
    static QString CadenaSuite();
};

/// Prepares the terminal's own data source, "dsn=Corvanta", when it is the embedded
/// default (no ODBC data source of that name) and lacks listadostemporal: creates the table
/// with the demo terminal's row, in one unit. An ODBC data source is the suite's to fill and
/// is left alone.
void PrepararOrigenTerminal();
