#pragma once

#include "platform/datos/conexion.h"
#include "platform/datos/tipocolumna.h"

#include <QString>
#include <span>

/// The suite's schema: every table and column the program reads or writes, and the ones the
/// stand-in services keep (options, translations). It serves two purposes: creating the
/// tables a database lacks, and telling the record writer what type a column holds.
/// Names are compared without regard to case, as the suite's database does.

struct ColumnaEsquema {
    const char *nombre;
    TipoColumna tipo;
    bool clave = false;
};

struct TablaEsquema {
    const char *nombre;
    std::span<const ColumnaEsquema> columnas;
};

/// The tables of the suite's database.
std::span<const TablaEsquema> TablasSuite();
/// The tables of the terminal's own data source ("dsn=Corvanta"): listadostemporal.
std::span<const TablaEsquema> TablasTerminal();

const TablaEsquema *BuscarTabla(const QString &nombre);
const ColumnaEsquema *BuscarColumna(const TablaEsquema &tabla, const QString &nombre);

/// Creates, on `conexion`, those of `tablas` that it lacks; existing tables are left as they
/// are. Gives true when it created every table (a database that was empty). Raises ErrorBD.
bool CrearTablasQueFaltan(ADODB::Connection &conexion, std::span<const TablaEsquema> tablas);
