// The size-and-colour catalogue: one row per variant of a live product, and one per live
// product without variants, which carries "-1" as its variant code.
#include "frmtarifas.h"

#include "columnas.h"
#include "listado.h"

namespace {

/// The variant's own value as text, "" when it is Null or an empty text: then the parent's
/// stands instead. A price of 0 is a value of its own ("0").
QString ValorPropio(const ADODB::Field &campo) {
    return campo.EsNulo() ? QString() : campo.Texto();
}

} // namespace

void FrmTarifas::ListarProductos_Textil() {
    // The parents with their variants, each variant with its size and colour when they
    // exist. No order: the variants of one parent need not come together.
    const QString sql =
        QStringLiteral(
            "SELECT productos.*,productostextil.codigohijo ,productostextil.codcliente as "
            "codcli,productostextil.precio as precioTextil,productos.codigocliente as "
            "codcliP,tallas.DescripcionCorta as descTall, colorestextil.Nombre AS nomCol ") +
        QStringLiteral("  FROM ((productos LEFT JOIN productostextil ON productos.Codigo = "
                       "productostextil.CodigoPadre) ") +
        QStringLiteral(
            "       LEFT JOIN tallas ON productostextil.Talla = tallas.codigo) LEFT JOIN "
            "colorestextil ON productostextil.Color = colorestextil.codigo ") +
        QStringLiteral(" WHERE PRODUCTOS.codigo <> null and PRODUCTOS.borrar = 0 ");
    Grid &grid = *grid_productos_textil;
    ListarEnGrid(grid, sql, [&grid](ADODB::Recordset &rs) {
        return [&grid, codcliP = rs.Fields(QStringLiteral("codclip")),
                codcli = rs.Fields(QStringLiteral("codCli")),
                nombre = rs.Fields(QStringLiteral("nombre")),
                codigo = rs.Fields(QStringLiteral("codigo")),
                codigohijo = rs.Fields(QStringLiteral("codigohijo")),
                descTall = rs.Fields(QStringLiteral("DESCTALL")),
                nomCol = rs.Fields(QStringLiteral("NOMCOL")),
                precio = rs.Fields(QStringLiteral("precio")),
                precioTextil = rs.Fields(QStringLiteral("precioTextil")),
                seccion = rs.Fields(QStringLiteral("seccion"))](int fila) {
            // The variant's own shop code, or else its parent's.
            QString codigoTienda = ValorPropio(codcli);
            grid.setTextMatrix(fila, ColTallaColor::CodigoTienda,
                               codigoTienda.isEmpty() ? codcliP.Texto() : std::move(codigoTienda));
            PonerCampo(grid, fila, ColTallaColor::Nombre, nombre);
            PonerCampo(grid, fila, ColTallaColor::Codigo, codigo);
            // A product without variants is its own sellable unit, marked "-1".
            grid.setTextMatrix(fila, ColTallaColor::CodigoHijo,
                               codigohijo.EsNulo() ? QStringLiteral("-1") : codigohijo.Texto());
            // A size or colour that is missing (or gone from its table) shows empty.
            PonerCampo(grid, fila, ColTallaColor::Talla, descTall);
            PonerCampo(grid, fila, ColTallaColor::Color, nomCol);
            // The variant's own price, even 0, or else its parent's.
            QString precioPropio = ValorPropio(precioTextil);
            grid.setTextMatrix(fila, ColTallaColor::Precio,
                               precioPropio.isEmpty() ? precio.Texto() : std::move(precioPropio));
            PonerCampo(grid, fila, ColTallaColor::Seccion, seccion);
        };
    });
    // The name filter's order is made while the operator looks at the screen.
    if (grid.Cols() > ColTallaColor::Nombre)
        grid.PrepararFiltro(ColTallaColor::Nombre);
}
