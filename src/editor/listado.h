#pragma once

#include "platform/datos/recordset.h"
#include "platform/ui/grid.h"
#include "session/sesionsuite.h"

#include <algorithm>
#include <optional>

/// Writes a field's text into a cell: a text the database gave in plain ASCII (codes, most
/// names) goes straight from the recordset's bytes, anything else (accents, numbers, dates)
/// through its text form. Either way the cell reads as Field::Texto would give it.
inline void PonerCampo(Pantalla::Grid &grid, int fila, int columna, const ADODB::Field &campo) {
    QByteArrayView bytes;
    if (campo.TextoUtf8(bytes)) {
        uchar o = 0;
        for (char c : bytes)
            o |= uchar(c);
        if (o < 0x80) {
            grid.setTextMatrix(fila, columna, QLatin1StringView(bytes.data(), bytes.size()));
            return;
        }
    }
    grid.setTextMatrix(fila, columna, campo.Texto());
}

/// One listing of the editor into a grid, as all of them go: the statement is read, the grid
/// gets one row per record under its titles (with no record it keeps its design rows), and
/// each row is filled. `preparar` is called once with the recordset on its first record, looks
/// its fields up, and gives what fills row `fila` from the current record.
///
/// The records go into the grid as they are read, never held whole beside it: a catalogue of
/// a million products is in memory once, in the grid's compact form. The grid grows by half
/// again as it fills and is cut to the records read at the end.
template <class Preparar>
void ListarEnGrid(Pantalla::Grid &grid, const QString &sentencia, Preparar &&preparar) {
    ADODB::Recordset rs;
    std::optional<decltype(preparar(rs))> llenar;
    int fila = 0;
    rs.Recorrer(sentencia, *SesionSuite.Conexion, [&] {
        if (!llenar) {
            grid.setRows(1);
            llenar.emplace(preparar(rs));
        }
        if (++fila >= grid.Rows())
            grid.setRows(std::max(fila + 1, grid.Rows() + grid.Rows() / 2));
        (*llenar)(fila);
    });
    if (fila > 0)
        grid.setRows(fila + 1);
}
