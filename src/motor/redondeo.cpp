#include "redondeo.h"

#include "aritmetica.h"

using Aritmetica::Entero;

Importe PasoPorDefecto(int numDecimales) {
    return Importe::DeUnidades(1, numDecimales);
}

namespace {

/// `numerador` x 10^-escala rounded to a multiple of `paso`, halves away from zero.
std::optional<Importe> RedondearEntero(Entero numerador, int escala, const Importe &paso) {
    const int comun = std::max(escala, paso.Escala());
    const std::optional<Entero> factor = Aritmetica::Potencia10(comun - escala);
    const std::optional<Entero> pasoComun = Aritmetica::AEscala(paso, comun);
    if (!factor || !pasoComun || *pasoComun <= 0)
        return std::nullopt;
    const std::optional<Entero> valor = Aritmetica::Multiplicar(numerador, *factor);
    if (!valor)
        return std::nullopt;
    const Entero veces = Aritmetica::DividirRedondeando(*valor, *pasoComun);
    const std::optional<Entero> resultado = Aritmetica::Multiplicar(veces, paso.Unidades());
    if (!resultado)
        return std::nullopt;
    return Aritmetica::AImporte(*resultado, paso.Escala());
}

} // namespace

std::optional<Importe> RedondearAPaso(const Importe &valor, const Importe &paso) {
    return RedondearEntero(valor.Unidades(), valor.Escala(), paso);
}

std::optional<Importe> AplicarTerminacion(const Importe &valor, const Importe &terminacion) {
    const int escala = std::max(valor.Escala(), terminacion.Escala());
    const std::optional<Entero> v = Aritmetica::AEscala(valor, escala);
    const std::optional<Entero> t = Aritmetica::AEscala(terminacion, escala);
    const std::optional<Entero> unidad = Aritmetica::Potencia10(escala);
    if (!v || !t || !unidad)
        return std::nullopt;
    // The whole part, then the ending's decimals; one unit more when that fell below.
    Entero candidato = Aritmetica::Suelo(*v, *unidad) + *t;
    if (candidato < *v)
        candidato += *unidad;
    return Aritmetica::AImporte(candidato, escala);
}

std::optional<Importe> NuevoPrecio(const Importe &base, const ReglaCambio &regla, QString *motivo) {
    const auto refusar = [&](const QString &texto) -> std::optional<Importe> {
        if (motivo)
            *motivo = texto;
        return std::nullopt;
    };
    const QString demasiado = QStringLiteral("el precio nuevo es demasiado grande");
    // base x (100 + p) / 100 + suma, as one numerator over 10^escala.
    const int escalaProducto = base.Escala() + regla.porcentaje.Escala() + 2;
    const int escala = std::max(escalaProducto, regla.suma.Escala());
    const std::optional<Entero> cien =
        Aritmetica::AEscala(Importe::DeUnidades(100, 0), regla.porcentaje.Escala());
    if (!cien)
        return refusar(demasiado);
    const std::optional<Entero> factor = Aritmetica::Sumar(*cien, regla.porcentaje.Unidades());
    const std::optional<Entero> producto =
        factor ? Aritmetica::Multiplicar(base.Unidades(), *factor) : std::nullopt;
    const std::optional<Entero> ajuste = Aritmetica::Potencia10(escala - escalaProducto);
    const std::optional<Entero> parteProducto =
        producto && ajuste ? Aritmetica::Multiplicar(*producto, *ajuste) : std::nullopt;
    const std::optional<Entero> parteSuma = Aritmetica::AEscala(regla.suma, escala);
    const std::optional<Entero> total =
        parteProducto && parteSuma ? Aritmetica::Sumar(*parteProducto, *parteSuma) : std::nullopt;
    if (!total)
        return refusar(demasiado);
    const std::optional<Importe> redondeado = RedondearEntero(*total, escala, regla.paso);
    if (!redondeado)
        return refusar(demasiado);
    if (redondeado->Signo() <= 0)
        return refusar(
            QStringLiteral("el precio nuevo sería 0 o menos (%1)")
                .arg(redondeado->TextoSQL().replace(QLatin1Char('.'), QLatin1Char(','))));
    if (!regla.terminacion)
        return redondeado;
    const std::optional<Importe> terminado = AplicarTerminacion(*redondeado, *regla.terminacion);
    if (!terminado)
        return refusar(demasiado);
    return terminado;
}

std::optional<FalloRegla> LeerRegla(const TextosRegla &textos, int numDecimales,
                                    ReglaCambio &regla) {
    const auto fallo = [](FalloRegla::Campo campo, const QString &mensaje) {
        return std::optional<FalloRegla>(FalloRegla{campo, mensaje});
    };
    const auto leer = [](const QString &texto) {
        return texto.trimmed().isEmpty() ? std::optional<Importe>(Importe()) : Importe::Leer(texto);
    };
    const std::optional<Importe> porcentaje = leer(textos.porcentaje);
    if (!porcentaje)
        return fallo(FalloRegla::Porcentaje,
                     QStringLiteral("El porcentaje \"%1\" no es un número: escriba, por ejemplo, "
                                    "10 para subir un 10 % o -12,5 para bajar un 12,5 %.")
                         .arg(textos.porcentaje));
    if (*porcentaje <= Importe::DeUnidades(-100, 0))
        return fallo(FalloRegla::Porcentaje,
                     QStringLiteral("Un porcentaje de -100 o menos dejaría los precios en 0 o "
                                    "por debajo: escriba uno mayor que -100."));
    const std::optional<Importe> suma = leer(textos.suma);
    if (!suma)
        return fallo(FalloRegla::Suma,
                     QStringLiteral("El importe \"%1\" no es un número: escriba, por ejemplo, "
                                    "1,50 para sumar o -2 para restar.")
                         .arg(textos.suma));
    std::optional<Importe> paso = textos.paso.trimmed().isEmpty()
                                      ? std::optional<Importe>(PasoPorDefecto(numDecimales))
                                      : Importe::Leer(textos.paso);
    if (!paso)
        return fallo(FalloRegla::Paso,
                     QStringLiteral("El redondeo \"%1\" no es un número: escriba, por ejemplo, "
                                    "0,05 o 1.")
                         .arg(textos.paso));
    if (paso->Signo() <= 0)
        return fallo(FalloRegla::Paso, QStringLiteral("El redondeo tiene que ser mayor que 0."));
    if (paso->Escala() > numDecimales)
        return fallo(FalloRegla::Paso,
                     QStringLiteral("El redondeo \"%1\" tiene más decimales de los que usa la "
                                    "tienda (%2).")
                         .arg(textos.paso)
                         .arg(numDecimales));
    std::optional<Importe> terminacion;
    if (!textos.terminacion.trimmed().isEmpty()) {
        terminacion = Importe::Leer(textos.terminacion);
        if (!terminacion || terminacion->Signo() < 0 || !(*terminacion < Importe::DeUnidades(1, 0)))
            return fallo(FalloRegla::Terminacion,
                         QStringLiteral("La terminación \"%1\" tiene que ser la parte decimal "
                                        "de un precio: escriba, por ejemplo, ,95 o ,99.")
                             .arg(textos.terminacion));
        if (terminacion->Escala() > numDecimales)
            return fallo(FalloRegla::Terminacion,
                         QStringLiteral("La terminación \"%1\" tiene más decimales de los que "
                                        "usa la tienda (%2).")
                             .arg(textos.terminacion)
                             .arg(numDecimales));
    }
    regla = ReglaCambio{*porcentaje, *suma, *paso, terminacion};
    return std::nullopt;
}
