// The size-and-colour catalogue: one row per variant of a live product, and one per live
// product without variants, which carries "-1" as its variant code.
#include "frmtarifas.h"

#include "columnas.h"
#include "listado.h"

using namespace Pantalla;

namespace {

/// Whether the variant has no value of its own: Null or an empty text, and then the parent's
/// stands instead. A price of 0 is a value of its own ("0").
bool SinValorPropio(const ADODB::Field &campo) {
    if (campo.EsNulo())
        return true;
    QByteArrayView bytes;
    return campo.TextoUtf8(bytes) ? bytes.isEmpty() : campo.Texto().isEmpty();
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
            PonerCampo(grid, fila, ColTallaColor::CodigoTienda,
                       SinValorPropio(codcli) ? codcliP : codcli);
            PonerCampo(grid, fila, ColTallaColor::Nombre, nombre);
            PonerCampo(grid, fila, ColTallaColor::Codigo, codigo);
            // A product without variants is its own sellable unit, marked "-1".
            if (codigohijo.EsNulo())
                grid.setTextMatrix(fila, ColTallaColor::CodigoHijo, QLatin1StringView("-1"));
            else
                PonerCampo(grid, fila, ColTallaColor::CodigoHijo, codigohijo);
            // A size or colour that is missing (or gone from its table) shows empty.
            PonerCampo(grid, fila, ColTallaColor::Talla, descTall);
            PonerCampo(grid, fila, ColTallaColor::Color, nomCol);
            // The variant's own price, even 0, or else its parent's.
            PonerCampo(grid, fila, ColTallaColor::Precio,
                       SinValorPropio(precioTextil) ? precio : precioTextil);
            PonerCampo(grid, fila, ColTallaColor::Seccion, seccion);
        };
    });
    // The name filter's order is made while the operator looks at the screen.
    if (grid.Cols() > ColTallaColor::Nombre)
        grid.PrepararFiltro(ColTallaColor::Nombre);
}
