#pragma once

#include "platform/datos/conexion.h"
#include "platform/ui/colores.h"

#include <QString>

namespace Pantalla {
class Form;
} // namespace Pantalla

/// The suite's looks. A look gives a screen's frames, text boxes and labels their colours
/// and the colour a text box takes while it has the focus.
///   0 "Clásico": the greys of the design, white boxes, a pale yellow focus.
///   1 "Azul": blue-grey panels, white boxes, a pale blue focus.
/// Any other number is taken as 0.
class SvcAspecto {
  public:
    void AplicarAspecto(Pantalla::Form &pantalla, qint16 estiloAspecto,
                        ADODB::Connection &conexion);
    /// The focus colour of the look, as the decimal text of a 32-bit colour value.
    QString ColorFoco(ADODB::Connection &conexion, qint16 estiloAspecto);
};
