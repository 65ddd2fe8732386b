#pragma once

#include <QString>

namespace Pantalla {
class TextBox;
} // namespace Pantalla

/// Keyboard services of the suite.
class SvcTeclado {
  public:
    /// The keyboard's layout as the suite knows it: the input locale's name ("es_ES").
    QString LeerAjusteTeclado();

    /// What a price box lets through of a typed key: digits; one decimal separator (a comma
    /// or a point, written as the one the operator typed) while the text has none, and only
    /// when numDecimales is above 0; a minus sign at the start; Backspace (8). A digit that
    /// would give more than numDecimales decimals is dropped. Everything else gives 0, which
    /// drops the key. The text box's selection counts: typed text replaces it.
    qint16 FiltrarTeclaPrecio(qint16 tecla, Pantalla::TextBox &caja, qint16 numDecimales);
};
