#pragma once

#include "platform/datos/conexion.h"

class Form;

/// Fits a screen laid out for the design size to the size the suite asks for.
/// Horizontal places and widths follow width / design width; vertical places and heights
/// follow height / design height; fonts follow the smaller of the two, so that texts never
/// outgrow their controls.
class SvcEscala {
  public:
    void AjustarFormulario(ADODB::Connection &conexion, Form &pantalla, double anchoPantalla,
                           double altoPantalla, double anchoDiseno, double altoDiseno);
    /// The horizontal factor of the last AjustarFormulario (1 before any): what a design
    /// width is multiplied by.
    double FactorEscala() const { return factorX; }

  private:
    double factorX = 1.0;
};
