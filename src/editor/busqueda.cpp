// Finding a product: by a code (the shop's own or an extra one) with Enter in ct_buscar_c, and
// by the start of its name in ct_buscar_n, which filters the catalogue as the operator types.
#include "frmtarifas.h"

#include "columnas.h"

#include "busquedacodigo.h"

#include "platform/datos/recordset.h"
#include "platform/ui/controles.h"
#include "session/sesionsuite.h"

using namespace ADODB;
using namespace Pantalla;

BusquedaCodigo SentenciaBusquedaCodigo(const Dialecto &dialecto, const QString &cod) {
    // A Null would match nothing, while an empty text finds an empty shop code.
    const QString codigo = cod.isNull() ? QStringLiteral("") : cod;
    BusquedaCodigo b;
    b.sentencia = dialecto.Limitar(
        QStringLiteral("select productos.codigo as codigoInt from productos where "
                       "productos.codigocliente = ? and productos.borrar = 0 union all "
                       "select productos.codigo from productos_codigosextra join productos on "
                       "productos.codigo = productos_codigosextra.codigo where ") +
            dialecto.ParecidoSinMayusculas(QStringLiteral("productos_codigosextra.codigo_extra")),
        1);
    b.valores = {codigo, dialecto.PatronParecido(codigo)};
    return b;
}

Grid &FrmTarifas::GridCatalogo() {
    return ModoTallaColor() ? *grid_productos_textil : *grid_productos;
}

qint64 FrmTarifas::iBuscarCodInternoItem(const QString &cod) {
    qint64 resultado = -1;
    const BusquedaCodigo b = SentenciaBusquedaCodigo(SesionSuite.Conexion->dialecto(), cod);
    ADODB::Recordset rs;
    rs.Open(b.sentencia, b.valores, *SesionSuite.Conexion, ADODB::adOpenStatic,
            ADODB::adLockOptimistic, ADODB::adCmdUnspecified);
    if (rs.RecordCount() >= 1)
        resultado = rs.Fields(QStringLiteral("codigoInt")).Value().toLongLong();
    rs.Close();
    return resultado;
}

void FrmTarifas::ct_buscar_c_KeyPress(int &KeyAscii) {
    if (KeyAscii != 13)
        return;
    const QString texto = ct_buscar_c->Text();
    bool encontrado = false;
    if (ModoTallaColor()) {
        encontrado = BuscarCodigo_textil(texto);
    } else {
        const qint64 codigo = iBuscarCodInternoItem(texto);
        encontrado = codigo != -1;
        if (encontrado) {
            CargarProductoXcodigo(QString::number(codigo));
            ct_buscar_c->setText(QString());
        }
    }
    if (!encontrado) {
        // Not found: the text stays, wholly selected, to be typed over. No message.
        ct_buscar_c->setSelStart(0);
        ct_buscar_c->setSelLength(int(ct_buscar_c->Text().size()));
    }
}

void FrmTarifas::ct_buscar_c_Change() {
    // Only the size-and-colour search leaves rows out of the catalogue; emptying the box
    // brings them back, under the name filter if one is in force.
    if (!ModoTallaColor() || !ct_buscar_c->Text().isEmpty())
        return;
    if (ct_buscar_n->Text().isEmpty())
        AnularBusqueda();
    else
        Buscar(ct_buscar_n->Text());
}

void FrmTarifas::ct_buscar_n_Change() {
    const QString texto = ct_buscar_n->Text();
    if (!texto.isEmpty())
        Buscar(texto);
    else
        AnularBusqueda();
}

void FrmTarifas::Buscar(const QString &texto) {
    if (texto.size() > 0)
        BusquedaItemsxNombre_Grid(texto, GridCatalogo());
}

void FrmTarifas::AnularBusqueda() {
    DeshacerBusquedaItemsxNombre_Grid(GridCatalogo());
}

void FrmTarifas::BusquedaItemsxNombre_Grid(const QString &valor, Grid &grid) {
    // Every row is decided anew at each keystroke: a longer text hides more, a shorter one
    // brings rows back, at the title row's height. The grid keeps the names sorted without
    // case, so the rows that match are found without a look at every row; the view is told
    // by one update when control goes back to the event loop.
    if (grid.Cols() <= ColLlano::Nombre)
        return; // a grid not yet formatted has no names
    grid.MostrarFilasQueEmpiezan(ColLlano::Nombre, valor, grid.RowHeight(0));
}

void FrmTarifas::DeshacerBusquedaItemsxNombre_Grid(Grid &grid) {
    const double altoFila = grid.RowHeight(0);
    if (grid.Cols() > ColLlano::Nombre)
        return grid.MostrarFilasQueEmpiezan(ColLlano::Nombre, QString(), altoFila);
    const int filas = grid.Rows();
    for (int fila = 1; fila < filas; ++fila)
        if (grid.RowHeight(fila) == 0)
            grid.setRowHeight(fila, altoFila);
}

bool FrmTarifas::BuscarCodigo_textil(const QString &cod) {
    ADODB::Connection &conexion = *SesionSuite.Conexion;
    const QString codigo = cod.isNull() ? QStringLiteral("") : cod;
    // A variant's own shop code opens exactly that variant, as its catalogue row shows it.
    {
        ADODB::Recordset rs;
        rs.Open(QStringLiteral(
                    "select productos.codigo, productos.nombre, productos.precio, "
                    "productostextil.codigohijo, productostextil.codcliente as codcli, "
                    "productostextil.precio as precioTextil, tallas.DescripcionCorta as descTall, "
                    "colorestextil.Nombre as nomCol from productostextil join productos on "
                    "productos.codigo = productostextil.codigopadre left join tallas on "
                    "productostextil.talla = tallas.codigo left join colorestextil on "
                    "productostextil.color = colorestextil.codigo where "
                    "productostextil.codcliente = ? and productos.borrar = 0"),
                {codigo}, conexion);
        if (rs.RecordCount() > 0) {
            const ADODB::Field precioTextil = rs.Fields(QStringLiteral("precioTextil"));
            const QString precio = precioTextil.Texto().isEmpty()
                                       ? rs.Fields(QStringLiteral("precio")).Texto()
                                       : precioTextil.Texto();
            CargarDatosProd(rs.Fields(QStringLiteral("codigo")).Texto(),
                            rs.Fields(QStringLiteral("codcli")).Texto(),
                            rs.Fields(QStringLiteral("nombre")).Texto(), precio,
                            rs.Fields(QStringLiteral("codigohijo")).Texto(),
                            rs.Fields(QStringLiteral("descTall")).Texto(),
                            rs.Fields(QStringLiteral("nomCol")).Texto());
            rs.Close();
            ct_buscar_c->setText(QString());
            return true;
        }
        rs.Close();
    }

    const qint64 producto = iBuscarCodInternoItem(codigo);
    if (producto == -1)
        return false;
    ADODB::Recordset rs;
    rs.Open(QStringLiteral("select count(*) as variantes from productostextil where "
                           "codigopadre = ?"),
            {producto}, conexion);
    const bool conVariantes = rs.Fields(QStringLiteral("variantes")).Value().toLongLong() > 0;
    rs.Close();
    if (!conVariantes) {
        // A product without variants is priced as its catalogue row: variant "-1".
        lblCodProdTextil->setCaption(QStringLiteral("-1"));
        lblTalla->setCaption(QString());
        lblColor->setCaption(QString());
        CargarProductoXcodigo(QString::number(producto));
        ct_buscar_c->setText(QString());
        return true;
    }
    // The code names a product, not one of its variants: its rows alone stay in the
    // catalogue for the operator to pick one. The code stays in the box; emptying it shows
    // every row again.
    Grid &grid = *grid_productos_textil;
    const QString padre = QString::number(producto);
    const double altoFila = grid.RowHeight(0);
    for (int fila = 1; fila < grid.Rows(); ++fila) {
        if (grid.TextMatrix(fila, ColTallaColor::Codigo) == padre) {
            if (grid.RowHeight(fila) == 0)
                grid.setRowHeight(fila, altoFila);
        } else {
            grid.setRowHeight(fila, 0);
        }
    }
    return true;
}
