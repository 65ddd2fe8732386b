#pragma once

#include <QString>
#include <QStringList>

#include <memory>

/// A workbook of one sheet written with libxlsxwriter: a header row, frozen so that it stays
/// in sight while the operator scrolls, then one row per line. Cells given as prices are
/// numbers shown with the shop's decimals; the others are text. The file appears whole when
/// Cerrar succeeds and not at all otherwise: it is written beside its place and moved there.
class EscritorXlsx {
  public:
    /// `columnasPrecio`: the positions of the price columns in every row.
    EscritorXlsx(const QString &ruta, int decimales, QList<int> columnasPrecio);
    ~EscritorXlsx();
    EscritorXlsx(const EscritorXlsx &) = delete;
    EscritorXlsx &operator=(const EscritorXlsx &) = delete;

    /// False when the workbook could not even be started (the folder can't be written).
    bool Abierto() const;
    void Cabecera(const QStringList &nombres);
    /// A price is given as a decimal text with a point ("12.50"); an empty one leaves the cell
    /// empty.
    void Linea(const QStringList &campos);
    /// Writes the file; an empty text when it is in its place, else why not.
    QString Cerrar();

  private:
    struct Libro;
    std::unique_ptr<Libro> libro;
};
