// The plain catalogue: every live product, by name, with its standard price.
#include "frmtarifas.h"

#include "platform/datos/recordset.h"
#include "session/sesionsuite.h"

void FrmTarifas::ListarProductos() {
    ADODB::Recordset rs;
    rs.Open(QStringLiteral("Select * from productos where borrar =0 order by nombre asc"),
            *SesionSuite.Conexion, ADODB::adOpenStatic, ADODB::adLockOptimistic,
            ADODB::adCmdUnspecified);
    if (rs.RecordCount() > 0) {
        grid_productos->setRows(1);
        grid_productos->setRows(rs.RecordCount() + 1);
        // Each field is looked up once; the handle reads whatever row the recordset is on.
        const ADODB::Field codigocliente = rs.Fields(QStringLiteral("codigocliente"));
        const ADODB::Field nombre = rs.Fields(QStringLiteral("nombre"));
        const ADODB::Field codigo = rs.Fields(QStringLiteral("codigo"));
        const ADODB::Field precio = rs.Fields(QStringLiteral("precio"));
        const ADODB::Field seccion = rs.Fields(QStringLiteral("seccion"));
        int fila = 1;
        while (!rs.Eof()) {
            grid_productos->setTextMatrix(fila, 0, codigocliente.Texto());
            grid_productos->setTextMatrix(fila, 1, nombre.Texto());
            grid_productos->setTextMatrix(fila, 2, codigo.Texto());
            grid_productos->setTextMatrix(fila, 3, precio.Texto());
            grid_productos->setTextMatrix(fila, 4, seccion.Texto());
            ++fila;
            rs.MoveNext();
        }
    }
    rs.Close();
}
