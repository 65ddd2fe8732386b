#pragma once

#include "platform/datos/conexion.h"
#include "platform/ui/grid.h"

#include <QString>

/// Formats and fills the suite's grids.
///
/// A format is one entry per title, "width/alignment;width/alignment...", nothing after the
/// last; a width is a number of twips in the regional text form of a double (it may have a
/// fraction, with the regional decimal separator), an alignment one of the words
/// "centrado", "Izquierda", "derecha" exactly. Width 0 hides a column, which keeps its data.
class SvcGrid {
  public:
    /// Gives the grid one column per title (separated by ";"), the titles in row 0, and each
    /// column its width and alignment. The data rows are left as they are. A format whose
    /// entries don't match the titles, or that holds an unknown word or a bad width, raises
    /// std::invalid_argument naming the entry, and leaves the grid as it was.
    void FormatearGrid(Pantalla::Grid &grid, const QString &titulos, const QString &formato,
                       int reservado);

    /// Replaces the grid's data rows with the rows of `consulta`: one row per record from
    /// row 1, column n holding the record's column n in its default text form (dates in the
    /// regional form that reads back as the same date). With no record the grid keeps only its
    /// title row. Titles, widths and alignments stay. Raises ErrorBD.
    void CargarGrid(ADODB::Connection &conexion, const QString &consulta, Pantalla::Grid &grid,
                    int reservado1, int reservado2);
};
