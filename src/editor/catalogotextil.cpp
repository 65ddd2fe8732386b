// The size-and-colour catalogue: one row per variant of a live product, and one per live
// product without variants, which carries "-1" as its variant code.
#include "frmtarifas.h"

#include "platform/datos/recordset.h"
#include "session/sesionsuite.h"

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
    ADODB::Recordset rs;
    rs.Open(sql, *SesionSuite.Conexion, ADODB::adOpenStatic, ADODB::adLockOptimistic,
            ADODB::adCmdUnspecified);
    if (rs.RecordCount() > 0) {
        grid_productos_textil->setRows(1);
        grid_productos_textil->setRows(rs.RecordCount() + 1);
        const ADODB::Field codcliP = rs.Fields(QStringLiteral("codclip"));
        const ADODB::Field codcli = rs.Fields(QStringLiteral("codCli"));
        const ADODB::Field nombre = rs.Fields(QStringLiteral("nombre"));
        const ADODB::Field codigo = rs.Fields(QStringLiteral("codigo"));
        const ADODB::Field codigohijo = rs.Fields(QStringLiteral("codigohijo"));
        const ADODB::Field descTall = rs.Fields(QStringLiteral("DESCTALL"));
        const ADODB::Field nomCol = rs.Fields(QStringLiteral("NOMCOL"));
        const ADODB::Field precio = rs.Fields(QStringLiteral("precio"));
        const ADODB::Field precioTextil = rs.Fields(QStringLiteral("precioTextil"));
        const ADODB::Field seccion = rs.Fields(QStringLiteral("seccion"));
        int fila = 1;
        while (!rs.Eof()) {
            // The variant's own shop code, or else its parent's.
            QString codigoTienda = ValorPropio(codcli);
            grid_productos_textil->setTextMatrix(
                fila, 0, codigoTienda.isEmpty() ? codcliP.Texto() : std::move(codigoTienda));
            grid_productos_textil->setTextMatrix(fila, 1, nombre.Texto());
            grid_productos_textil->setTextMatrix(fila, 2, codigo.Texto());
            // A product without variants is its own sellable unit, marked "-1".
            grid_productos_textil->setTextMatrix(
                fila, 3, codigohijo.EsNulo() ? QStringLiteral("-1") : codigohijo.Texto());
            // A size or colour that is missing (or gone from its table) shows empty.
            grid_productos_textil->setTextMatrix(fila, 4, descTall.Texto());
            grid_productos_textil->setTextMatrix(fila, 5, nomCol.Texto());
            // The variant's own price, even 0, or else its parent's.
            QString precioPropio = ValorPropio(precioTextil);
            grid_productos_textil->setTextMatrix(
                fila, 6, precioPropio.isEmpty() ? precio.Texto() : std::move(precioPropio));
            grid_productos_textil->setTextMatrix(fila, 7, seccion.Texto());
            ++fila;
            rs.MoveNext();
        }
    }
    rs.Close();
}
