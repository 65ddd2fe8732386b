#pragma once

#include "platform/datos/conexion.h"

#include <QString>

/// Finds and opens the suite's database.
///   TARIFAS_DB set: the connection string it holds (see cadenaconexion.h).
///   Otherwise: the SQLite file tarifas.sqlite in the suite's data directory.
/// A database that lacks the suite's tables gets them; an SQLite file that did not exist is
/// also given the demo shop. A PostgreSQL or ODBC database gets the demo shop only when
/// TARIFAS_DEMO=1 and its tables were all missing.
class SvcConexion {
public:
    /// `cadena` empty: the rules above; otherwise that connection string.
    void AbrirConexion(const QString &cadena, ADODB::Connection &conexion);

    /// The connection string the rules above lead to when nothing is given.
    static QString CadenaSuite();
};

/// Prepares the terminal's own data source, "dsn=Corvanta", when it is the embedded
/// default (no ODBC data source of that name): creates listadostemporal with the demo
/// terminal's row. An ODBC data source is the suite's to fill and is left alone.
void PrepararOrigenTerminal();
