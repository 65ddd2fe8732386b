#pragma once

#include <QString>
#include <QtGlobal>
#include <optional>

/// An exact amount of money (or a percentage): a whole number of units of 10^-escala, never a
/// binary floating-point value. Prices go from their text to the database through it.
/// At most 15 significant digits and 15 decimals, what every database of the suite keeps
/// exactly. A value is immutable; comparisons ignore trailing zeros (1,5 == 1,50).
class Importe {
  public:
    /// Zero, with no decimals.
    Importe() = default;

    /// The value of `texto`: an optional sign, digits and at most one decimal separator, a
    /// comma or a point ("12,5", "-3", ".75", " 19.95 "); spaces around it are ignored, and so
    /// are trailing zeros beyond 15 decimals' worth. No thousands separator, no letters, no
    /// exponent. Empty when it isn't such a number or it has more than 15 significant digits.
    static std::optional<Importe> Leer(QStringView texto);
    /// The value from its parts: `unidades` x 10^-escala. `escala` 0 to 15.
    static Importe DeUnidades(qint64 unidades, int escala);

    qint64 Unidades() const { return unidades; }
    int Escala() const { return escala; }
    int Signo() const { return unidades > 0 ? 1 : unidades < 0 ? -1 : 0; }

    /// The text the database is given: a point, as many decimals as the value has, no
    /// thousands separator ("21.95", "-0.5", "3").
    QString TextoSQL() const;
    /// The text the operator reads: exactly `decimales` decimals (the shop's NumDecimales),
    /// with `separador`; a value with more decimals is rounded half away from zero for the
    /// text only ("21,950" -> "21,95").
    QString Texto(int decimales, QChar separador = QLatin1Char(',')) const;

    /// The same value with its trailing decimal zeros dropped (21,950 -> 21,95).
    Importe Reducido() const;

    friend bool operator==(const Importe &a, const Importe &b);
    friend bool operator<(const Importe &a, const Importe &b);
    friend bool operator<=(const Importe &a, const Importe &b) { return !(b < a); }
    friend bool operator>(const Importe &a, const Importe &b) { return b < a; }

  private:
    qint64 unidades = 0;
    int escala = 0;
};
