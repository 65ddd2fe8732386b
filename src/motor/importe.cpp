#include "importe.h"

#include "aritmetica.h"

#include <QVarLengthArray>
#include <algorithm>
#include <limits>

namespace {

constexpr int MaximoEscala = 15;

} // namespace

std::optional<Importe> Importe::Leer(QStringView texto) {
    // Read by hand rather than with a pattern: an import reads one price per line, and a file
    // of 100,000 lines would spend more on the pattern than on everything else in the line.
    const QStringView t = texto.trimmed();
    qsizetype i = 0;
    const bool negativo = i < t.size() && t[i] == u'-';
    if (i < t.size() && (t[i] == u'-' || t[i] == u'+'))
        ++i;
    const auto cifrasDesde = [&t](qsizetype desde) {
        qsizetype fin = desde;
        while (fin < t.size() && t[fin] >= u'0' && t[fin] <= u'9')
            ++fin;
        return fin;
    };
    const qsizetype finEntera = cifrasDesde(i);
    QStringView entera = t.sliced(i, finEntera - i);
    QStringView fraccion;
    qsizetype fin = finEntera;
    if (fin < t.size() && (t[fin] == u',' || t[fin] == u'.')) {
        const qsizetype finFraccion = cifrasDesde(fin + 1);
        fraccion = t.sliced(fin + 1, finFraccion - fin - 1);
        fin = finFraccion;
    }
    if (fin != t.size() || (entera.isEmpty() && fraccion.isEmpty()))
        return std::nullopt;
    // Trailing zeros of the decimals say nothing of the value; leading zeros of the units
    // neither.
    while (fraccion.endsWith(u'0'))
        fraccion.chop(1);
    while (entera.startsWith(u'0'))
        entera = entera.sliced(1);
    if (fraccion.size() > MaximoEscala)
        return std::nullopt;
    Importe r;
    int significativas = 0;
    for (const QStringView parte : {entera, fraccion}) {
        for (const QChar c : parte) {
            if (significativas == 0 && c == u'0')
                continue;
            if (++significativas > 15)
                return std::nullopt;
            r.unidades = r.unidades * 10 + (c.unicode() - u'0');
        }
    }
    r.escala = r.unidades == 0 ? 0 : int(fraccion.size());
    if (negativo)
        r.unidades = -r.unidades;
    return r;
}

Importe Importe::DeUnidades(qint64 unidades, int escala) {
    Importe r;
    r.unidades = unidades;
    r.escala = escala < 0 ? 0 : escala;
    return r.Reducido();
}

Importe Importe::Reducido() const {
    Importe r = *this;
    while (r.escala > 0 && r.unidades % 10 == 0) {
        r.unidades /= 10;
        --r.escala;
    }
    if (r.unidades == 0)
        r.escala = 0;
    return r;
}

namespace {

/// Writes the digits of `valor` backwards from `p`, with `separador` before the last `escala`
/// of them and a zero before it when nothing else is; gives where the text starts.
template <class Numero>
char16_t *EscribirCifras(Numero valor, int escala, char16_t separador, char16_t *p) {
    int escritas = 0;
    do {
        *--p = char16_t(u'0' + int(valor % 10));
        valor /= 10;
        if (++escritas == escala)
            *--p = separador;
    } while (valor > 0 || escritas <= escala);
    return p;
}

/// The text of `unidades` (>= 0) with `escala` decimals after `separador`, and a minus sign
/// before it when `negativo`. Written into one buffer: a list of 100,000 prices makes a text
/// of each.
QString Digitos(Aritmetica::Entero unidades, int escala, QChar separador, bool negativo) {
    // 39 digits hold any 128-bit value; then the zeros of the decimals, the separator, a sign.
    QVarLengthArray<char16_t, 64> texto(qsizetype(42 + std::max(escala, 0)));
    char16_t *fin = texto.data() + texto.size();
    char16_t *p = unidades <= std::numeric_limits<quint64>::max()
                      ? EscribirCifras(quint64(unidades), escala, separador.unicode(), fin)
                      : EscribirCifras(unidades, escala, separador.unicode(), fin);
    if (negativo)
        *--p = u'-';
    return QString(reinterpret_cast<const QChar *>(p), fin - p);
}

} // namespace

QString Importe::TextoSQL() const {
    const Aritmetica::Entero magnitud = unidades < 0 ? -Aritmetica::Entero(unidades) : unidades;
    return Digitos(magnitud, escala, QLatin1Char('.'), unidades < 0);
}

QString Importe::Texto(int decimales, QChar separador) const {
    if (decimales < 0)
        decimales = 0;
    Aritmetica::Entero valor = unidades;
    if (decimales < escala)
        valor = Aritmetica::DividirRedondeando(valor, *Aritmetica::Potencia10(escala - decimales));
    else
        valor *= *Aritmetica::Potencia10(decimales - escala);
    const bool negativo = valor < 0;
    return Digitos(negativo ? -valor : valor, decimales, separador, negativo);
}

bool operator==(const Importe &a, const Importe &b) {
    const Importe x = a.Reducido();
    const Importe y = b.Reducido();
    return x.unidades == y.unidades && x.escala == y.escala;
}

bool operator<(const Importe &a, const Importe &b) {
    const int escala = std::max(a.escala, b.escala);
    // Both hold at most 15 digits at a scale of at most 15: 10^30 fits in 128 bits.
    const Aritmetica::Entero x =
        Aritmetica::Entero(a.unidades) * *Aritmetica::Potencia10(escala - a.escala);
    const Aritmetica::Entero y =
        Aritmetica::Entero(b.unidades) * *Aritmetica::Potencia10(escala - b.escala);
    return x < y;
}
