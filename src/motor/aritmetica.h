#pragma once

// The engine's exact arithmetic on scaled whole numbers: 128 bits, every step checked, so
// that a value too large to hold is refused instead of wrapped round.

#include "importe.h"

#include <optional>

namespace Aritmetica {

using Entero = __int128;

/// 10^n, for 0 <= n <= 38; empty beyond.
std::optional<Entero> Potencia10(int n);
/// a x b and a + b, empty when they overflow.
std::optional<Entero> Multiplicar(Entero a, Entero b);
std::optional<Entero> Sumar(Entero a, Entero b);
/// a / b rounded half away from zero; b > 0.
Entero DividirRedondeando(Entero a, Entero b);
/// The largest multiple of b at or below a; b > 0.
Entero Suelo(Entero a, Entero b);

/// `unidades` x 10^-escala as an amount, when it holds in one (15 digits, 15 decimals).
std::optional<Importe> AImporte(Entero unidades, int escala);
/// A price as a database gives it back in text: Importe::Leer's forms, and also an exponent
/// ("1.0e+15", "5.0e-05"), which SQLite writes for very large and very small values.
std::optional<Importe> LeerGuardado(const QString &texto);
/// The units of `valor` at `escala` (>= its own), empty when they overflow.
std::optional<Entero> AEscala(const Importe &valor, int escala);

} // namespace Aritmetica
