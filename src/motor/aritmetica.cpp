#include "aritmetica.h"

namespace Aritmetica {

std::optional<Entero> Potencia10(int n) {
    if (n < 0 || n > 38)
        return std::nullopt;
    Entero p = 1;
    for (int i = 0; i < n; ++i)
        p *= 10;
    return p;
}

std::optional<Entero> Multiplicar(Entero a, Entero b) {
    Entero r = 0;
    if (__builtin_mul_overflow(a, b, &r))
        return std::nullopt;
    return r;
}

std::optional<Entero> Sumar(Entero a, Entero b) {
    Entero r = 0;
    if (__builtin_add_overflow(a, b, &r))
        return std::nullopt;
    return r;
}

Entero DividirRedondeando(Entero a, Entero b) {
    const Entero magnitud = a < 0 ? -a : a;
    Entero q = magnitud / b;
    // Half or more of the divisor left over goes up, away from zero.
    if ((magnitud % b) * 2 >= b)
        ++q;
    return a < 0 ? -q : q;
}

Entero Suelo(Entero a, Entero b) {
    Entero q = a / b;
    if (a % b != 0 && a < 0)
        --q;
    return q * b;
}

std::optional<Importe> AImporte(Entero unidades, int escala) {
    while (escala > 0 && unidades % 10 == 0) {
        unidades /= 10;
        --escala;
    }
    constexpr Entero limite = 1'000'000'000'000'000; // 10^15
    if (escala < 0 || escala > 15 || unidades >= limite || unidades <= -limite)
        return std::nullopt;
    return Importe::DeUnidades(qint64(unidades), escala);
}

std::optional<Importe> LeerGuardado(const QString &texto) {
    const qsizetype e = texto.indexOf(QLatin1Char('e'), 0, Qt::CaseInsensitive);
    if (e < 0)
        return Importe::Leer(texto);
    const std::optional<Importe> mantisa = Importe::Leer(texto.left(e));
    bool ok = false;
    const int exponente = texto.mid(e + 1).toInt(&ok);
    if (!mantisa || !ok || exponente < -30 || exponente > 30)
        return std::nullopt;
    if (exponente <= 0)
        return AImporte(mantisa->Unidades(), mantisa->Escala() - exponente);
    const int escala = mantisa->Escala() - exponente;
    if (escala >= 0)
        return AImporte(mantisa->Unidades(), escala);
    const std::optional<Entero> factor = Potencia10(-escala);
    const std::optional<Entero> unidades =
        factor ? Multiplicar(mantisa->Unidades(), *factor) : std::nullopt;
    return unidades ? AImporte(*unidades, 0) : std::nullopt;
}

std::optional<Entero> AEscala(const Importe &valor, int escala) {
    const std::optional<Entero> factor = Potencia10(escala - valor.Escala());
    if (!factor)
        return std::nullopt;
    return Multiplicar(valor.Unidades(), *factor);
}

} // namespace Aritmetica
