#pragma once

#include "importe.h"

#include <QString>
#include <optional>

/// How a bulk change turns a base price into a new one: a percentage and an amount added,
/// then the rounding: to a multiple of `paso` (halves away from zero), then, when an ending is
/// set, up to the smallest price at or above that whose decimals are the ending.
struct ReglaCambio {
    Importe porcentaje;                 ///< -12,5 is 12,5 % off; above -100
    Importe suma;                       ///< added after the percentage, any sign
    Importe paso;                       ///< above 0, with no more decimals than the shop
    std::optional<Importe> terminacion; ///< 0 <= t < 1 (",95"), decimals within the shop's
};

/// The texts of a rule as the operator typed them (the dialog and the command line).
/// An empty percentage or amount is 0, an empty step is one unit of the shop's last decimal,
/// an empty ending is none.
struct TextosRegla {
    QString porcentaje;
    QString suma;
    QString paso;
    QString terminacion;
};

/// What the operator is told about the texts of a rule, when they can't make one.
struct FalloRegla {
    enum Campo { Porcentaje, Suma, Paso, Terminacion };
    Campo campo;     ///< the box the face puts the focus on
    QString mensaje; ///< a clear Spanish sentence, the same in every face
};

/// Reads `textos` into `regla` for a shop of `numDecimales` decimals (0 to 15). Gives the
/// first fault found (a percentage or amount that is not a number, -100 % or less, a step of
/// 0 or less or with more decimals than the shop has, an ending with more decimals than the
/// shop has or not below 1); `regla` is only written when there is none.
std::optional<FalloRegla> LeerRegla(const TextosRegla &textos, int numDecimales,
                                    ReglaCambio &regla);

/// The step of an empty text: one unit of the shop's last decimal (0,01 with 2 decimals, 1
/// with none).
Importe PasoPorDefecto(int numDecimales);

/// `valor` rounded to a multiple of `paso` (> 0), halves away from zero: 21,945 at 0,01 is
/// 21,95; -2,345 is -2,35. Exact; empty only when the result can't be held (over 15 digits).
std::optional<Importe> RedondearAPaso(const Importe &valor, const Importe &paso);

/// The smallest value at or above `valor` whose decimals are `terminacion` (0 <= t < 1):
/// 21,20 with ,95 is 21,95; 21,96 is 22,95; 22 is 22,95. For `valor` > 0; empty when the
/// result can't be held.
std::optional<Importe> AplicarTerminacion(const Importe &valor, const Importe &terminacion);

/// The new price of `base` by `regla`: base x (1 + porcentaje/100) + suma, rounded, ended.
/// A result of 0 or less (before the ending) or beyond 15 digits is refused: empty, with the
/// reason in `motivo` when given.
std::optional<Importe> NuevoPrecio(const Importe &base, const ReglaCambio &regla,
                                   QString *motivo = nullptr);
