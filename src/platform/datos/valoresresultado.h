#pragma once

#include <QByteArrayView>
#include <QDate>
#include <QString>
#include <QVariant>
#include <cstdint>
#include <vector>

namespace ADODB {

/// The values of one query result, read once and kept compactly in reading order (row-major).
/// A whole number, a double, a day or a Boolean lives in its cell; a text lives as UTF-8 bytes
/// in one buffer shared by all cells; anything else is kept as a QVariant on the side. A text
/// or a QVariant is made only when a value is asked for, so a catalogue of 100,000 rows costs
/// little more to keep than SQLite's own bytes, and the columns nobody reads cost nothing more.
///
/// Values go in already normalised by the dialect (a date as a day, a price as a double);
/// Valor() gives them back as the same QVariant, and Texto() as their default text form.
/// Indexes are 0-based and not checked: the recordset checks them.
class ValoresResultado {
  public:
    void AnadirNulo() { celdas.push_back(Celda{Tipo::Nulo, 0, {0}}); }
    void AnadirEntero(qint64 n);
    void AnadirReal(double d);
    /// A text given as UTF-8 bytes (not necessarily terminated).
    void AnadirUtf8(const char *bytes, size_t largo);
    void AnadirFecha(const QDate &fecha);
    void AnadirBooleano(bool b);
    /// Any value: kept in a cell of its own kind when it has one, else as it is. Null stays Null.
    void Anadir(const QVariant &valor);

    size_t size() const { return celdas.size(); }
    void clear();
    /// Empties it and keeps its memory, for the next row of a result read one row at a time.
    void vaciar();

    bool EsNulo(size_t i) const { return celdas[i].tipo == Tipo::Nulo; }
    /// True when the value is a text kept as UTF-8: then `bytes` are its bytes, in place.
    bool Utf8(size_t i, QByteArrayView &bytes) const {
        const Celda &c = celdas[i];
        if (c.tipo != Tipo::Utf8)
            return false;
        bytes = QByteArrayView(utf8.data() + c.posicion, qsizetype(c.largo));
        return true;
    }
    QVariant Valor(size_t i) const;
    /// The default text form (regional dates and decimals); Null gives "".
    QString Texto(size_t i) const;

  private:
    enum class Tipo : std::uint8_t { Nulo, Entero, Real, Utf8, Fecha, Booleano, Variante };
    struct Celda {
        Tipo tipo;
        std::uint32_t largo; ///< bytes of a Utf8 cell
        union {
            qint64 entero; ///< Entero, Booleano (0/1), Fecha (Julian day)
            double real;
            std::uint64_t posicion; ///< Utf8: offset in `utf8`; Variante: index in `otros`
        };
    };
    static_assert(sizeof(Celda) == 16);
    QString TextoUtf8(const Celda &c) const;

    std::vector<Celda> celdas;
    std::vector<char> utf8;
    std::vector<QVariant> otros;
};

} // namespace ADODB
