#include "textosgrid.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <stdexcept>

namespace Pantalla {

namespace {

/// The largest buffer the grid may have: every row's start must fit in 32 bits.
constexpr size_t MaximoBytes = std::numeric_limits<std::uint32_t>::max();

/// Below this many bytes left behind the buffer is never written again: not worth the walk.
constexpr size_t SobrantesMinimos = 4096;

/// Reads a variable-length number at `p` and leaves `p` after it.
quint64 LeerNumero(const char *&p) {
    quint64 v = 0;
    int desplazamiento = 0;
    uchar b;
    do {
        b = uchar(*p++);
        v |= quint64(b & 0x7f) << desplazamiento;
        desplazamiento += 7;
    } while (b & 0x80);
    return v;
}

void EscribirNumero(quint64 v, std::vector<char> &destino) {
    do {
        destino.push_back(char(uchar(v & 0x7f) | (v > 0x7f ? 0x80 : 0)));
        v >>= 7;
    } while (v);
}

/// The cell at `p` of the row starting at `fila` (an even byte), leaving `p` after it.
VistaTexto LeerCelda(const char *fila, const char *&p) {
    const quint64 v = LeerNumero(p);
    const qsizetype largo = qsizetype(v >> 1);
    const bool utf16 = (v & 1) != 0;
    if (utf16 && (p - fila) % 2 != 0)
        ++p;
    const char *inicio = p;
    p += largo * (utf16 ? 2 : 1);
    return {inicio, largo, utf16};
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

TextosGrid::TextosGrid(size_t filas, int columnas)
    : datos(2, '\0'), posiciones(filas, 0), nColumnas(columnas) {
    // Offset 0 is the empty row every new row points at (no cells), padded to an even size.
}

void TextosGrid::redimensionar(size_t filas) {
    if (filas < posiciones.size()) {
        for (size_t f = filas; f < posiciones.size(); ++f)
            if (posiciones[f] != 0)
                basura += tamano(posiciones[f]);
        if (filaFinal != SinFila && filaFinal >= filas)
            filaFinal = SinFila;
        posiciones.resize(filas);
        compactarSiConviene();
        // A grid emptied or cut to its rows gives back the room it had grown for.
        if (posiciones.capacity() > filas + filas / 4 + 1024)
            posiciones.shrink_to_fit();
        if (size_t(datos.capacity()) > size_t(datos.size()) + size_t(datos.size()) / 4 + 4096)
            datos.squeeze();
        return;
    }
    // Grown by a quarter at least: a grid grown a row at a time costs no more than that, and
    // one grown by a listing's own steps gets just what it asks for.
    if (filas > posiciones.capacity())
        posiciones.reserve(std::max(filas, posiciones.capacity() + posiciones.capacity() / 4));
    posiciones.resize(filas, 0);
}

void TextosGrid::setColumnas(int columnas) {
    if (columnas < nColumnas)
        for (size_t f = 0; f < posiciones.size(); ++f) {
            if (posiciones[f] == 0)
                continue;
            const char *p = datos.constData() + posiciones[f];
            if (LeerNumero(p) <= quint64(columnas))
                continue;
            componer(posiciones[f], -1, {}, false, columnas);
            colocar(f);
        }
    nColumnas = columnas;
}

VistaTexto TextosGrid::vista(size_t fila, int columna) const {
    const char *inicio = datos.constData() + posiciones[fila];
    const char *p = inicio;
    if (LeerNumero(p) <= quint64(columna))
        return {datos.constData(), 0, false};
    for (int c = 0; c < columna; ++c)
        LeerCelda(inicio, p);
    return LeerCelda(inicio, p);
}

void TextosGrid::poner(size_t fila, int columna, QStringView texto) {
    ponerVista(fila, columna, VistaTexto::De(texto), EnLatin1(texto));
}

void TextosGrid::poner(size_t fila, int columna, QLatin1StringView texto) {
    ponerVista(fila, columna, {texto.data(), texto.size(), false}, false);
}

void TextosGrid::ponerVista(size_t fila, int columna, VistaTexto texto, bool estrechar) {
    // An empty text on an empty cell changes nothing: a listing writes many (no size, no
    // colour), and the row need not be composed again for them.
    if (texto.largo == 0 && vista(fila, columna).largo == 0)
        return;
    if (fila == filaFinal && anadirAlFinal(columna, texto, estrechar))
        return;
    componer(posiciones[fila], columna, texto, estrechar, nColumnas);
    colocar(fila);
}

bool TextosGrid::anadirAlFinal(int columna, VistaTexto texto, bool estrechar) {
    // The row at the end of the buffer gets a cell after its last one: the cells go on after
    // it, as a listing writes a row from left to right, and only the count at its start
    // changes (while it fits in one byte).
    const size_t inicio = posiciones[filaFinal];
    const uchar cuenta = uchar(datos.at(qsizetype(inicio)));
    if (texto.largo == 0 || cuenta >= 0x80 || columna < cuenta || columna >= 0x7f)
        return false;
    const bool utf16 = texto.utf16 && !estrechar;
    const size_t huecos = size_t(columna - cuenta); // empty cells in between
    const quint64 cabecera = quint64(texto.largo) * 2 + (utf16 ? 1 : 0);
    size_t largoCabecera = 0;
    for (quint64 v = cabecera; largoCabecera == 0 || v; v >>= 7)
        ++largoCabecera;
    const size_t desde = size_t(datos.size());
    const size_t relleno = utf16 && (desde + huecos + largoCabecera) % 2 != 0 ? 1 : 0;
    const size_t total =
        desde + huecos + largoCabecera + relleno + size_t(texto.largo) * (utf16 ? 2 : 1);
    if (total > MaximoBytes)
        return false;
    if (total > size_t(datos.capacity()))
        datos.reserve(qsizetype(std::min(MaximoBytes, std::max(total, desde * 3 / 2))));
    datos.resize(qsizetype(total));
    char *p = datos.data() + desde;
    std::memset(p, 0, huecos);
    p += huecos;
    for (quint64 v = cabecera;;) {
        *p++ = char(uchar(v & 0x7f) | (v > 0x7f ? 0x80 : 0));
        v >>= 7;
        if (!v)
            break;
    }
    if (relleno)
        *p++ = '\0';
    if (estrechar) {
        const auto *origen = reinterpret_cast<const char16_t *>(texto.datos);
        for (qsizetype i = 0; i < texto.largo; ++i)
            p[i] = char(origen[i]);
    } else {
        std::memcpy(p, texto.datos, size_t(texto.largo) * (utf16 ? 2 : 1));
    }
    datos.data()[inicio] = char(columna + 1);
    return true;
}

size_t TextosGrid::tamano(std::uint32_t posicion) const {
    const char *inicio = datos.constData() + posicion;
    const char *p = inicio;
    for (quint64 n = LeerNumero(p); n > 0; --n)
        LeerCelda(inicio, p);
    return size_t(p - inicio);
}

void TextosGrid::componer(std::uint32_t posicion, int columna, VistaTexto texto, bool enLatin1,
                          int limite) {
    // The row's cells as they are, with the one written in its place.
    celdas.clear();
    const char *inicio = datos.constData() + posicion;
    const char *p = inicio;
    for (quint64 n = LeerNumero(p); n > 0; --n)
        celdas.push_back(LeerCelda(inicio, p));
    if (columna >= 0) {
        if (size_t(columna) >= celdas.size())
            celdas.resize(size_t(columna) + 1);
        celdas[size_t(columna)] = texto;
    }
    if (celdas.size() > size_t(limite))
        celdas.resize(size_t(limite));
    while (!celdas.empty() && celdas.back().largo == 0)
        celdas.pop_back();

    borrador.clear();
    EscribirNumero(celdas.size(), borrador);
    for (size_t c = 0; c < celdas.size(); ++c) {
        const VistaTexto &t = celdas[c];
        // The text written comes as UTF-16 and goes in as Latin-1 when it fits.
        const bool estrechar = int(c) == columna && enLatin1;
        const bool utf16 = t.utf16 && !estrechar;
        EscribirNumero(quint64(t.largo) * 2 + (utf16 ? 1 : 0), borrador);
        if (utf16 && borrador.size() % 2 != 0)
            borrador.push_back('\0');
        if (estrechar) {
            const auto *origen = reinterpret_cast<const char16_t *>(t.datos);
            const size_t desde = borrador.size();
            borrador.resize(desde + size_t(t.largo));
            for (qsizetype i = 0; i < t.largo; ++i)
                borrador[desde + size_t(i)] = char(origen[i]);
        } else {
            borrador.insert(borrador.end(), t.datos, t.datos + t.largo * (utf16 ? 2 : 1));
        }
    }
}

void TextosGrid::colocar(size_t fila) {
    const bool vacia = borrador.size() == 1; // no cells
    // Room for the row at the very end, aligned: compacted first when that is what it takes.
    if (!vacia && size_t(datos.size()) + 1 + borrador.size() > MaximoBytes && basura > 0)
        compactar();
    if (!vacia && size_t(datos.size()) + 1 + borrador.size() > MaximoBytes)
        throw std::length_error("la rejilla no admite más de 4 GiB de textos");

    const std::uint32_t antes = posiciones[fila];
    const size_t tamanoAntes = antes != 0 ? tamano(antes) : 0;
    // The last row of the buffer is written over where it lies: a listing that fills its rows
    // in order leaves nothing behind.
    const bool ultima = antes != 0 && antes + tamanoAntes == size_t(datos.size());
    if (ultima)
        datos.resize(qsizetype(antes));
    else
        basura += tamanoAntes;
    if (fila == filaFinal)
        filaFinal = SinFila;
    if (vacia) {
        posiciones[fila] = 0;
        compactarSiConviene();
        return;
    }
    const size_t inicio = size_t(datos.size()) + size_t(datos.size()) % 2;
    const size_t total = inicio + borrador.size();
    if (total > size_t(datos.capacity()))
        datos.reserve(
            qsizetype(std::min(MaximoBytes, std::max(total, size_t(datos.size()) * 3 / 2))));
    if (inicio > size_t(datos.size()))
        datos.append('\0');
    datos.append(borrador.data(), qsizetype(borrador.size()));
    posiciones[fila] = std::uint32_t(inicio);
    filaFinal = fila;
    compactarSiConviene();
}

void TextosGrid::compactarSiConviene() {
    if (basura > SobrantesMinimos && basura * 2 > size_t(datos.size()))
        compactar();
}

void TextosGrid::compactar() {
    QByteArray nuevos;
    nuevos.reserve(qsizetype(size_t(datos.size()) - std::min(basura, size_t(datos.size())) + 2));
    nuevos.append(2, '\0');
    for (std::uint32_t &posicion : posiciones) {
        if (posicion == 0)
            continue;
        if (nuevos.size() % 2 != 0)
            nuevos.append('\0');
        const std::uint32_t nueva = std::uint32_t(nuevos.size());
        nuevos.append(datos.constData() + posicion, qsizetype(tamano(posicion)));
        posicion = nueva;
    }
    datos = std::move(nuevos);
    basura = 0;
    // The rows lie in row order now: the last one that holds texts ends the buffer.
    filaFinal = SinFila;
    for (size_t f = posiciones.size(); f-- > 0;)
        if (posiciones[f] != 0) {
            filaFinal = f;
            break;
        }
}

} // namespace Pantalla
