#pragma once

#include "platform/datos/conexion.h"

namespace Pantalla {
class Form;
} // namespace Pantalla

/// Fits a screen laid out for the design size to the size the suite asks for.
/// Horizontal places and widths follow width / design width; vertical places and heights
/// follow height / design height; fonts follow the smaller of the two, so that texts never
/// outgrow their controls.
///
/// A size asked for that would make the window larger than the display's available area (the
/// suite's options set for a bigger monitor) is not obeyed: the screen is fitted, with one
/// factor for both axes (the design's proportions), to the largest size the area holds, and
/// stderr says so once for the run.
class SvcEscala {
  public:
    void AjustarFormulario(ADODB::Connection &conexion, Pantalla::Form &pantalla,
                           double anchoPantalla, double altoPantalla, double anchoDiseno,
                           double altoDiseno);
    /// The horizontal factor of the last AjustarFormulario (1 before any): what a design
    /// width is multiplied by.
    double FactorEscala() const { return factorX; }

    /// The display's available area in twips, which no screen outgrows; 0 (the start) for an
    /// area not known, which bounds nothing. Set once at start-up from the display.
    static void FijarAreaDisponible(double anchoTwips, double altoTwips);

  private:
    double factorX = 1.0;
};
