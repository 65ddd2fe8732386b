#pragma once

#include <QRect>
#include <QString>

namespace Pantalla {

/// What the operator sees of a long wait on the database (see Espera): past a second, the
/// wait cursor and a line under the active window that says what the program waits for,
/// repainted while the wait goes on. Whatever the operator clicks or types during the wait is
/// dropped, never delivered afterwards to whatever control lies under it: the events the
/// window system queued meanwhile are eaten until the program has none left to handle.
///
/// A wait on a server, during which this program's window can't be repainted, is shown by the
/// program tarifas-espera beside this one (see Espera::FijarAvisoExterno), over the bottom of
/// the active window.
///
/// Installed once by the application object; tests install it themselves.
void InstalarIndicadorEspera();

/// Where a wait of the calling thread's statement is shown: the active window's frame, or the
/// screen's available area when no window is active; an empty QRect on any thread but the
/// GUI's.
QRect VentanaEnEspera();

/// For tests: the line shown now ("" when no wait is shown), and how many clicks and keys
/// the indicator has dropped since it was installed.
QString LineaEspera();
int EntradasDescartadas();

} // namespace Pantalla
