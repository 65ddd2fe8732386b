// The price panel: a product picked in the catalogue (or found by its code) is shown with its
// standard price, the operator types the new one, and Accept saves it or Cancel drops it.
#include "frmtarifas.h"

#include "codigo.h"
#include "columnas.h"

#include "platform/datos/recordset.h"
#include "platform/ui/controles.h"
#include "session/principal.h"
#include "session/sesionsuite.h"
#include "suite/ui/svcteclado.h"

using namespace Pantalla;

namespace {

/// The list view (the selected products with their title and the period below) or the entry
/// view (the price panel over them).
void Vista(FrmTarifas &f, bool entrada) {
    f.Label3->setVisible(!entrada);
    f.frCambio->setVisible(entrada);
    f.Frame1->setVisible(!entrada);
}

} // namespace

void FrmTarifas::grid_productos_Click() {
    // The grid raises Click for the title row and below the rows as well: only a data row,
    // and one that holds a product, opens the panel (a save needs the product's code).
    const int fila = grid_productos->MouseRow();
    const Grid &g = *grid_productos;
    if (fila < 1 || g.TextMatrix(fila, ColLlano::Codigo).isEmpty())
        return;
    CargarDatosProd(g.TextMatrix(fila, ColLlano::Codigo),
                    g.TextMatrix(fila, ColLlano::CodigoTienda),
                    g.TextMatrix(fila, ColLlano::Nombre), g.TextMatrix(fila, ColLlano::Precio),
                    QString(), QString(), QString());
}

void FrmTarifas::grid_productos_textil_Click() {
    const int fila = grid_productos_textil->MouseRow();
    const Grid &g = *grid_productos_textil;
    if (fila < 1 || g.TextMatrix(fila, ColTallaColor::Codigo).isEmpty())
        return;
    CargarDatosProd(
        g.TextMatrix(fila, ColTallaColor::Codigo), g.TextMatrix(fila, ColTallaColor::CodigoTienda),
        g.TextMatrix(fila, ColTallaColor::Nombre), g.TextMatrix(fila, ColTallaColor::Precio),
        g.TextMatrix(fila, ColTallaColor::CodigoHijo), g.TextMatrix(fila, ColTallaColor::Talla),
        g.TextMatrix(fila, ColTallaColor::Color));
}

void FrmTarifas::CargarDatosProd(const QString &codProd, const QString &codCli,
                                 const QString &nombre, const QString &precio,
                                 const QString &cod_prodTextil, const QString &talla,
                                 const QString &color) {
    lblCodProducto->setCaption(codProd);
    lblCodCliente->setCaption(codCli);
    lblNomProd->setCaption(nombre);
    txt_precio->setText(precio);
    lblCodProdTextil->setCaption(cod_prodTextil);
    lblTalla->setCaption(talla);
    lblColor->setCaption(color);
    // The price it may already have in this list is not shown: the operator types it anew.
    txt_NuevoPrecio->setText(QString());
    RecordarPrecioMostrado();
    Vista(*this, true);
    txt_NuevoPrecio->SetFocus();
}

void FrmTarifas::CargarProductoXcodigo(const QString &cod) {
    const std::optional<qint64> codigo = CodigoDeTexto(cod);
    if (!codigo)
        return; // no product bears such a code
    ADODB::Recordset rs;
    rs.Open(QStringLiteral("Select * from productos where codigo = ?"), {*codigo},
            *SesionSuite.Conexion, ADODB::adOpenStatic, ADODB::adLockOptimistic,
            ADODB::adCmdUnspecified);
    if (rs.RecordCount() > 0) {
        lblCodProducto->setCaption(cod);
        lblCodCliente->setCaption(rs.Fields(QStringLiteral("codigocliente")).Texto());
        lblNomProd->setCaption(rs.Fields(QStringLiteral("nombre")).Texto());
        txt_precio->setText(rs.Fields(QStringLiteral("precio")).Texto());
        txt_NuevoPrecio->setText(QString());
        RecordarPrecioMostrado();
        Vista(*this, true);
        txt_NuevoPrecio->SetFocus();
    }
    rs.Close();
}

void FrmTarifas::txt_NuevoPrecio_KeyPress(int &KeyAscii) {
    if (KeyAscii == 13) {
        cmdAceptar_Click();
        return;
    }
    KeyAscii = Principal::svcTeclado().FiltrarTeclaPrecio(qint16(KeyAscii), *txt_NuevoPrecio,
                                                          SesionSuite.NumDecimales);
}

void FrmTarifas::cmdAceptar_Click() {
    const bool cerrar = ModoTallaColor() ? GuardarProducto_textil() : GuardarProducto();
    // A refused price keeps the panel open to be mended; a list deleted meanwhile has
    // closed the editor.
    if (!cerrar || !Loaded())
        return;
    Vista(*this, false);
    // Emptying the name box shows every row of the catalogue again.
    ct_buscar_n->setText(QString());
    ct_buscar_c->setText(QString());
}

void FrmTarifas::cmdCancelar_Click() {
    Vista(*this, false);
}
