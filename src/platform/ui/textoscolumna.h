#pragma once

#include <QByteArray>
#include <QString>
#include <QStringView>

#include <cstdint>
#include <vector>

/// A text as a grid column keeps it, read in place: Latin-1 bytes, or UTF-16 units lying on
/// an even address. Valid until the column's next write or resize.
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

/// The texts of one grid column, kept compactly: all of them in one buffer, each row holding
/// only where its text starts. A text lies as its length (a variable-length number: twice the
/// length, plus one when UTF-16 follows) and then its characters, one byte each when every one
/// of them fits in Latin-1 (the usual case: codes, names, prices), else as UTF-16 units. A
/// million cells of a few letters cost a few bytes each, not a QString and a heap block each.
///
/// Every row starts empty, pointing at the empty text at the start of the buffer. A text
/// written again goes to the end of the buffer and its old place is left behind; once what
/// is left behind outweighs what is in use, the buffer is written again with only the live
/// texts, in row order. A view given out is valid until the next write or resize.
///
/// Rows are 0-based and not checked: the grid checks them.
class TextosColumna {
  public:
    explicit TextosColumna(size_t filas = 0);

    size_t filas() const { return posiciones.size(); }
    /// New rows are empty; the texts of the rows that go are left behind.
    void redimensionar(size_t filas);

    /// The text of `fila`, in the form it is kept (Latin-1 or UTF-16).
    VistaTexto vista(size_t fila) const;
    QString texto(size_t fila) const { return vista(fila).texto(); }
    /// Raises std::length_error, changing nothing, when the column would outgrow 4 GiB.
    void poner(size_t fila, QStringView texto);

    /// The bytes the buffer holds, live and left behind.
    size_t bytes() const { return size_t(datos.size()); }
    /// The bytes left behind by texts written again or rows gone.
    size_t sobrantes() const { return basura; }

  private:
    /// The bytes the text at `posicion` takes, its length included.
    size_t tamano(std::uint32_t posicion) const;
    /// Appends `texto` in its form and gives where it starts.
    std::uint32_t anadir(QStringView texto);
    void compactar();
    void compactarSiConviene();

    QByteArray datos;
    std::vector<std::uint32_t> posiciones;
    size_t basura = 0;
};
