#include "textoscolumna.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <stdexcept>

namespace {

/// The largest buffer a column may have: every text's start must fit in 32 bits.
constexpr size_t MaximoBytes = std::numeric_limits<std::uint32_t>::max();

/// Below this many bytes left behind a column is never written again: not worth the walk.
constexpr size_t SobrantesMinimos = 4096;

/// A text's length and form, as they lie before its characters.
struct Cabecera {
    size_t largo;    ///< characters
    bool utf16;      ///< UTF-16 units follow, else Latin-1 bytes
    size_t ocupados; ///< bytes of the cabecera itself
};

Cabecera Leer(const char *p) {
    quint64 v = 0;
    size_t n = 0;
    int desplazamiento = 0;
    uchar b;
    do {
        b = uchar(p[n++]);
        v |= quint64(b & 0x7f) << desplazamiento;
        desplazamiento += 7;
    } while (b & 0x80);
    return {size_t(v >> 1), (v & 1) != 0, n};
}

/// Writes `v` as a variable-length number at `p` (when given) and gives its bytes.
size_t Escribir(quint64 v, char *p = nullptr) {
    size_t n = 0;
    do {
        const uchar b = uchar(v & 0x7f) | (v > 0x7f ? 0x80 : 0);
        if (p)
            p[n] = char(b);
        ++n;
        v >>= 7;
    } while (v);
    return n;
}

bool EnLatin1(QStringView t) {
    // One OR over all the units: the loop the compiler widens.
    char16_t o = 0;
    const char16_t *p = t.utf16();
    for (qsizetype i = 0; i < t.size(); ++i)
        o |= p[i];
    return o < 0x100;
}

} // namespace

TextosColumna::TextosColumna(size_t filas) : datos(1, '\0'), posiciones(filas, 0) {}

void TextosColumna::redimensionar(size_t filas) {
    for (size_t f = filas; f < posiciones.size(); ++f)
        if (posiciones[f] != 0)
            basura += tamano(posiciones[f]);
    posiciones.resize(filas, 0);
    compactarSiConviene();
}

VistaTexto TextosColumna::vista(size_t fila) const {
    const char *p = datos.constData() + posiciones[fila];
    const Cabecera c = Leer(p);
    return {p + c.ocupados, qsizetype(c.largo), c.utf16};
}

void TextosColumna::poner(size_t fila, QStringView texto) {
    const std::uint32_t anterior = posiciones[fila];
    const size_t dejado = anterior != 0 ? tamano(anterior) : 0;
    // The old text stays live until the new one is in: a failure leaves the row as it was.
    posiciones[fila] = anadir(texto);
    basura += dejado;
    compactarSiConviene();
}

size_t TextosColumna::tamano(std::uint32_t posicion) const {
    const Cabecera c = Leer(datos.constData() + posicion);
    return c.ocupados + c.largo * (c.utf16 ? 2 : 1);
}

std::uint32_t TextosColumna::anadir(QStringView texto) {
    if (texto.isEmpty())
        return 0;
    const bool utf16 = !EnLatin1(texto);
    const size_t largo = size_t(texto.size());
    const size_t cabecera = Escribir(quint64(largo) * 2 + (utf16 ? 1 : 0));
    const size_t caracteres = largo * (utf16 ? 2 : 1);
    const auto necesarios = [&] {
        const size_t inicio = size_t(datos.size());
        // UTF-16 units start at an even byte, as a char16_t must.
        const size_t relleno = utf16 && (inicio + cabecera) % 2 != 0 ? 1 : 0;
        return inicio + relleno + cabecera + caracteres;
    };
    if (necesarios() > MaximoBytes && basura > 0)
        compactar();
    if (necesarios() > MaximoBytes)
        throw std::length_error("una columna de la rejilla no admite más de 4 GiB de textos");
    const size_t total = necesarios();
    if (total > size_t(datos.capacity()))
        datos.reserve(
            qsizetype(std::min(MaximoBytes, std::max(total, size_t(datos.size()) * 3 / 2))));
    size_t posicion = size_t(datos.size());
    datos.resize(qsizetype(total));
    char *p = datos.data();
    if (utf16 && (posicion + cabecera) % 2 != 0)
        p[posicion++] = '\0';
    Escribir(quint64(largo) * 2 + (utf16 ? 1 : 0), p + posicion);
    char *caracter = p + posicion + cabecera;
    const char16_t *origen = texto.utf16();
    if (utf16) {
        std::memcpy(caracter, origen, caracteres);
    } else {
        for (size_t i = 0; i < largo; ++i)
            caracter[i] = char(origen[i]);
    }
    return std::uint32_t(posicion);
}

void TextosColumna::compactarSiConviene() {
    if (basura > SobrantesMinimos && basura * 2 > size_t(datos.size()))
        compactar();
}

void TextosColumna::compactar() {
    QByteArray nuevos;
    nuevos.reserve(qsizetype(size_t(datos.size()) - std::min(basura, size_t(datos.size())) + 1));
    nuevos.append('\0');
    for (std::uint32_t &posicion : posiciones) {
        if (posicion == 0)
            continue;
        const Cabecera c = Leer(datos.constData() + posicion);
        if (c.utf16 && (size_t(nuevos.size()) + c.ocupados) % 2 != 0)
            nuevos.append('\0');
        const std::uint32_t nueva = std::uint32_t(nuevos.size());
        nuevos.append(datos.constData() + posicion,
                      qsizetype(c.ocupados + c.largo * (c.utf16 ? 2 : 1)));
        posicion = nueva;
    }
    datos = std::move(nuevos);
    basura = 0;
}
