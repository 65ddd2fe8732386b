#pragma once

#include "platform/datos/conexion.h"

#include <QString>

/// What the engine needs of the session: its caller fills it (from the session record, or the
/// command line's options), as the engine links no screen. The connection is borrowed.
struct ContextoMotor {
    ADODB::Connection *conexion = nullptr; ///< the suite's database, open
    QString terminal;                      ///< list2: this terminal, as the history records it
    qint32 empleado = 0;                   ///< the terminal's employee; 0 when it has none
    int numDecimales = 2;                  ///< the shop's NumDecimales (0 to 15)
    bool tallaColor = false;               ///< the size-and-colour business (TALLACOLOR)
};
