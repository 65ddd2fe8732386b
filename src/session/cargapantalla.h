#pragma once

#include <QString>
#include <initializer_list>

namespace Pantalla {
class Control;
class DTPicker;
class Form;
} // namespace Pantalla

/// The load steps both screens take, on the session's database and options. Each screen
/// calls them in its own order, with its own steps in between.
namespace Principal {

/// The captions in the session's language.
void TraducirPantalla(Pantalla::Form &pantalla);

/// The focus colours a screen keeps for its boxes, as decimal text of a 32-bit colour.
struct ColoresFoco {
    QString conFoco; ///< the look's focus colour
    QString sinFoco; ///< a box's own colour, as the look left it
};

/// The session's look on `pantalla`; then the focus colours, the unfocused one read from
/// `caja`; and the calendars of `fechas` in the colours of `fondo` (days) and `titulo` (the
/// title), with black text.
ColoresFoco AplicarAspectoPantalla(Pantalla::Form &pantalla, const Pantalla::Control &caja,
                                   const Pantalla::Control &fondo, const Pantalla::Control &titulo,
                                   std::initializer_list<Pantalla::DTPicker *> fechas);

/// The screen fitted to the session's display, from its design size.
void EscalarPantalla(Pantalla::Form &pantalla);

} // namespace Principal
