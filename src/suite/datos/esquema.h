#pragma once

#include "platform/datos/conexion.h"
#include "platform/datos/tipocolumna.h"

#include <QString>
#include <QStringList>
#include <span>
#include <vector>

/// The suite's schema: every table and column the program reads or writes, and the ones the
/// stand-in services keep (options, translations). It serves two purposes: creating the
/// tables a database lacks, and telling the record writer what type a column holds.
/// Names are compared without regard to case, as the suite's database does.

struct ColumnaEsquema {
    const char *nombre;
    ADODB::TipoColumna tipo;
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

/// Those of `tablas` that the database of `conexion` lacks. A database whose list of tables
/// can't be read raises ErrorBD with its text: it is never taken for an empty one.
std::vector<const TablaEsquema *> TablasQueFaltan(ADODB::Connection &conexion,
                                                  std::span<const TablaEsquema> tablas);

/// Creates, on `conexion`, those of `tablas` that it lacks, all in one unit of work (which
/// joins the caller's when one is open); existing tables are left as they are. Gives true
/// when it created every table (a database that was empty). Raises ErrorBD.
bool CrearTablasQueFaltan(ADODB::Connection &conexion, std::span<const TablaEsquema> tablas);

/// The indexes of `tablas` that the database holds under the schema's name but defined
/// otherwise than the schema makes them now, each dropped and made again, all of them in one
/// unit of work. A database made by an older program keeps the index it was given: the extra
/// codes' one on the bare column, say, which SQLite's case-ignoring like can't read, so that
/// every code search reads the whole table. Gives the names of the indexes made again (none
/// where the database can't say how its indexes are defined). Raises ErrorBD with the
/// database's text when it can't read them or make them again; nothing is left changed then.
QStringList RehacerIndicesCambiados(ADODB::Connection &conexion,
                                    std::span<const TablaEsquema> tablas);

/// RehacerIndicesCambiados at start-up: what it made again is said once on stderr, and so is a
/// failure (another program holding the database, say), which ends nothing: the indexes stay
/// as they were and the searches that need them still work, only slower.
void RevisarIndices(ADODB::Connection &conexion, std::span<const TablaEsquema> tablas);
