#pragma once

#include "platform/datos/conexion.h"

namespace Pantalla {
class Form;
} // namespace Pantalla

/// Translation of the screens' captions. The suite keeps them in the table traducciones
/// (idioma, formulario, control, texto); the language is opciones.idioma. The screens are
/// designed in Spanish ("es"), which needs no translation. A control that has no row for the
/// language keeps its design caption; the screen's own caption has the control name "".
class SvcTraduccion {
  public:
    void TraducirFormulario(ADODB::Connection &conexion, Pantalla::Form &pantalla);
    /// Stores the screen's design captions as the Spanish rows of traducciones, for the
    /// translators to copy; captions already stored are left alone.
    void GenerarCaptions(ADODB::Connection &conexion, Pantalla::Form &pantalla);
};
