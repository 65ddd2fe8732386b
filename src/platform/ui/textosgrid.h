#pragma once

#include <QByteArray>
#include <QLatin1StringView>
#include <QString>
#include <QStringView>

#include <cstdint>
#include <vector>

namespace Pantalla {

/// A text as the grid keeps it, read in place: Latin-1 bytes, or UTF-16 units lying on an
/// even address. Valid until the grid's next write or resize.
struct VistaTexto {
    const char *datos = nullptr;
    qsizetype largo = 0; ///< characters
    bool utf16 = false;

    static VistaTexto De(QStringView t) {
        return {reinterpret_cast<const char *>(t.utf16()), t.size(), true};
    }
    QString texto() const {
        return utf16 ? QString(reinterpret_cast<const QChar *>(datos), largo)
                     : QString::fromLatin1(datos, largo);
    }
};

/// The texts of a grid, kept compactly: all of them in one buffer, row after row, each row
/// holding only where its texts start. A row lies as the number of cells it holds (the
/// columns after them are empty) and then each cell as its length (a variable-length number:
/// twice the length, plus one when UTF-16 follows) and its characters, one byte each when every
/// one of them fits in Latin-1 (the usual case: codes, names, prices), else as UTF-16 units on
/// an even byte. A million rows of a few short texts cost little more than their characters:
/// no QString, no heap block and no offset a cell.
///
/// Every row starts empty, pointing at the empty row at the start of the buffer. A row written
/// again goes to the end of the buffer (or is written over where it lies, when it is the last
/// one there, as when a listing fills the rows in order) and its old place is left behind;
/// once what is left behind outweighs what is in use, the buffer is written again with only
/// the live rows, in order. A view given out is valid until the next write or resize.
///
/// Rows and columns are 0-based and not checked: the grid checks them.
class TextosGrid {
  public:
    explicit TextosGrid(size_t filas = 0, int columnas = 0);

    size_t filas() const { return posiciones.size(); }
    int columnas() const { return nColumnas; }
    /// New rows are empty; the texts of the rows that go are left behind. The room kept for
    /// rows beyond these is given back when the rows shrink by a good part.
    void redimensionar(size_t filas);
    /// New columns are empty; the texts of the columns that go are dropped.
    void setColumnas(int columnas);

    /// The text of (`fila`, `columna`), in the form it is kept (Latin-1 or UTF-16).
    VistaTexto vista(size_t fila, int columna) const;
    QString texto(size_t fila, int columna) const { return vista(fila, columna).texto(); }
    /// Raises std::length_error, changing nothing, when the texts would outgrow 4 GiB.
    void poner(size_t fila, int columna, QStringView texto);
    /// The same, from Latin-1 bytes (plain ASCII is Latin-1 too).
    void poner(size_t fila, int columna, QLatin1StringView texto);

    /// The bytes the buffer holds, live and left behind.
    size_t bytes() const { return size_t(datos.size()); }

  private:
    /// The bytes the row at `posicion` takes.
    size_t tamano(std::uint32_t posicion) const;
    /// Writes into `borrador` the row at `posicion` with its cell `columna` (none when <0)
    /// made `texto`, which goes in as Latin-1 when `enLatin1`, and its cells from `limite` on
    /// dropped.
    void componer(std::uint32_t posicion, int columna, VistaTexto texto, bool enLatin1, int limite);
    /// Adds `texto` as cell `columna` of row filaFinal when that cell lies after the row's
    /// last one; false, having changed nothing, when it doesn't (or the row's count of cells
    /// would outgrow a byte).
    bool anadirAlFinal(int columna, VistaTexto texto, bool estrechar);
    /// Writes `texto` (UTF-16 to be narrowed to Latin-1 when `estrechar`) into the cell.
    void ponerVista(size_t fila, int columna, VistaTexto texto, bool estrechar);
    /// Puts the row in `borrador` in the place of row `fila`.
    void colocar(size_t fila);
    void compactar();
    void compactarSiConviene();

    QByteArray datos;
    std::vector<std::uint32_t> posiciones; ///< where each row starts, always on an even byte
    int nColumnas = 0;
    size_t basura = 0;
    static constexpr size_t SinFila = size_t(-1);
    /// The row whose texts end the buffer, or SinFila.
    size_t filaFinal = SinFila;
    std::vector<char> borrador;     ///< a row being composed
    std::vector<VistaTexto> celdas; ///< the cells of the row being composed
};

} // namespace Pantalla
