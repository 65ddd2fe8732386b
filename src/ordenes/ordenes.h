#pragma once

/// The command line: `tarifas COMANDO …` does one job on the suite's database, with no display,
/// and ends. Plain `tarifas`, or one started with Qt's own options (-platform …), is the
/// program with its screens.
namespace Ordenes {

/// Whether the arguments ask for the command line: a command, --help or --version.
bool EsOrden(int argc, char **argv);
/// Runs it, making its own application object (no widget, no display). Gives the exit
/// status: 0 done, 1 refused or failed (nothing written), 2 a command used wrongly.
int Ejecutar(int argc, char **argv);

} // namespace Ordenes
