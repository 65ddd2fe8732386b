// The plain catalogue: every live product, by name, with its standard price.
#include "frmtarifas.h"

#include "columnas.h"
#include "listado.h"

using namespace Pantalla;

void FrmTarifas::ListarProductos() {
    Grid &grid = *grid_productos;
    ListarEnGrid(grid,
                 QStringLiteral("Select * from productos where borrar =0 order by nombre asc"),
                 [&grid](ADODB::Recordset &rs) {
                     // Each field is looked up once; the handle reads whatever row the
                     // recordset is on.
                     return [&grid, codigocliente = rs.Fields(QStringLiteral("codigocliente")),
                             nombre = rs.Fields(QStringLiteral("nombre")),
                             codigo = rs.Fields(QStringLiteral("codigo")),
                             precio = rs.Fields(QStringLiteral("precio")),
                             seccion = rs.Fields(QStringLiteral("seccion"))](int fila) {
                         PonerCampo(grid, fila, ColLlano::CodigoTienda, codigocliente);
                         PonerCampo(grid, fila, ColLlano::Nombre, nombre);
                         PonerCampo(grid, fila, ColLlano::Codigo, codigo);
                         PonerCampo(grid, fila, ColLlano::Precio, precio);
                         PonerCampo(grid, fila, ColLlano::Seccion, seccion);
                     };
                 });
    // The name filter's order is made while the operator looks at the screen.
    if (grid.Cols() > ColLlano::Nombre)
        grid.PrepararFiltro(ColLlano::Nombre);
}
