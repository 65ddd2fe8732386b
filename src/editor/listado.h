#pragma once

#include "platform/datos/recordset.h"
#include "platform/ui/grid.h"
#include "session/sesionsuite.h"

/// One listing of the editor into a grid, as all of them go: the statement is read, the grid
/// gets one row per record under its titles (with no record it keeps its design rows), each
/// row is filled, and the recordset is closed. `preparar` is called once with the open
/// recordset, looks its fields up, and gives what fills row `fila` from the current record.
template <class Preparar>
void ListarEnGrid(Grid &grid, const QString &sentencia, Preparar &&preparar) {
    ADODB::Recordset rs;
    rs.Open(sentencia, *SesionSuite.Conexion, ADODB::adOpenStatic, ADODB::adLockOptimistic,
            ADODB::adCmdUnspecified);
    if (rs.RecordCount() > 0) {
        grid.setRows(1);
        grid.setRows(rs.RecordCount() + 1);
        auto llenar = preparar(rs);
        for (int fila = 1; !rs.Eof(); ++fila, rs.MoveNext())
            llenar(fila);
    }
    rs.Close();
}
