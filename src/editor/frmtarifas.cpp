// The editor screen itself: its one instance and the binding of its controls.
#include "frmtarifas.h"

#include "screens/disenotarifas.h"
#include "session/vida.h"

using namespace Pantalla;

FrmTarifas::FrmTarifas() : Form(DisenoTarifas()) {}

FrmTarifas &frmTarifas() {
    return Principal::Vida::Pantalla<FrmTarifas>();
}

void FrmTarifas::enlazarControles() {
    frPadre = control<Frame>(QStringLiteral("frPadre"));
    frHijo = control<Frame>(QStringLiteral("frHijo"));
    frResultado = control<Frame>(QStringLiteral("frResultado"));
    frCambio = control<Frame>(QStringLiteral("frCambio"));
    Frame2 = control<Frame>(QStringLiteral("Frame2"));
    grid_productos = control<Grid>(QStringLiteral("grid_productos"));
    grid_productos_textil = control<Grid>(QStringLiteral("grid_productos_textil"));
    grid_Pseleccionados = control<Grid>(QStringLiteral("grid_Pseleccionados"));
    ct_buscar_c = control<TextBox>(QStringLiteral("ct_buscar_c"));
    ct_buscar_n = control<TextBox>(QStringLiteral("ct_buscar_n"));
    txt_NuevoPrecio = control<TextBox>(QStringLiteral("txt_NuevoPrecio"));
    lblCodigo = control<Label>(QStringLiteral("lblCodigo"));
    lblDesde = control<Label>(QStringLiteral("lblDesde"));
    lblHasta = control<Label>(QStringLiteral("lblHasta"));
    lblCodProducto = control<Label>(QStringLiteral("lblCodProducto"));
    lblCodCliente = control<Label>(QStringLiteral("lblCodCliente"));
    lblCodProdTextil = control<Label>(QStringLiteral("lblCodProdTextil"));
    lblTalla = control<Label>(QStringLiteral("lblTalla"));
    lblColor = control<Label>(QStringLiteral("lblColor"));
    lblNomProd = control<Label>(QStringLiteral("lblNomProd"));
    Label5 = control<Label>(QStringLiteral("Label5"));
    desde = control<DTPicker>(QStringLiteral("desde"));
    hasta = control<DTPicker>(QStringLiteral("hasta"));
    tmrRegresaLista = control<Timer>(QStringLiteral("tmrRegresaLista"));
    cmdSalir = control<CommandButton>(QStringLiteral("cmdSalir"));
    Command1 = control<CommandButton>(QStringLiteral("Command1"));

    Enlazar(tmrRegresaLista, &Timer::Tick, &FrmTarifas::tmrRegresaLista_Timer);
    Enlazar(cmdSalir, &CommandButton::Click, &FrmTarifas::cmdSalir_Click);
    Enlazar(Command1, &CommandButton::Click, &FrmTarifas::Command1_Click);
    Enlazar(ct_buscar_c, &TextBox::GotFocus, &FrmTarifas::ct_buscar_c_GotFocus);
    Enlazar(ct_buscar_c, &TextBox::LostFocus, &FrmTarifas::ct_buscar_c_LostFocus);
    Enlazar(ct_buscar_n, &TextBox::GotFocus, &FrmTarifas::ct_buscar_n_GotFocus);
    Enlazar(ct_buscar_n, &TextBox::LostFocus, &FrmTarifas::ct_buscar_n_LostFocus);
    Enlazar(txt_NuevoPrecio, &TextBox::GotFocus, &FrmTarifas::txt_NuevoPrecio_GotFocus);
    Enlazar(txt_NuevoPrecio, &TextBox::LostFocus, &FrmTarifas::txt_NuevoPrecio_LostFocus);

    // Validity period and deletion
    cmdAceptarFecha = control<CommandButton>(QStringLiteral("cmdAceptarFecha"));
    cmdCancelarFecha = control<CommandButton>(QStringLiteral("cmdCancelarFecha"));
    cmdEliminar = control<CommandButton>(QStringLiteral("cmdEliminar"));
    Enlazar(desde, &DTPicker::Change, &FrmTarifas::desde_Change);
    Enlazar(hasta, &DTPicker::Change, &FrmTarifas::hasta_Change);
    Enlazar(cmdAceptarFecha, &CommandButton::Click, &FrmTarifas::cmdAceptarFecha_Click);
    Enlazar(cmdCancelarFecha, &CommandButton::Click, &FrmTarifas::cmdCancelarFecha_Click);
    Enlazar(cmdEliminar, &CommandButton::Click, &FrmTarifas::cmdEliminar_Click);

    // Price entry, saving and search
    Frame1 = control<Frame>(QStringLiteral("Frame1"));
    Label3 = control<Label>(QStringLiteral("Label3"));
    txt_precio = control<TextBox>(QStringLiteral("txt_precio"));
    cmdAceptar = control<CommandButton>(QStringLiteral("cmdAceptar"));
    cmdCancelar = control<CommandButton>(QStringLiteral("cmdCancelar"));
    Enlazar(grid_productos, &Grid::Click, &FrmTarifas::grid_productos_Click);
    Enlazar(grid_productos_textil, &Grid::Click, &FrmTarifas::grid_productos_textil_Click);
    Enlazar(txt_NuevoPrecio, &TextBox::KeyPress, &FrmTarifas::txt_NuevoPrecio_KeyPress);
    Enlazar(cmdAceptar, &CommandButton::Click, &FrmTarifas::cmdAceptar_Click);
    Enlazar(cmdCancelar, &CommandButton::Click, &FrmTarifas::cmdCancelar_Click);
    Enlazar(ct_buscar_c, &TextBox::KeyPress, &FrmTarifas::ct_buscar_c_KeyPress);
    Enlazar(ct_buscar_c, &TextBox::Change, &FrmTarifas::ct_buscar_c_Change);
    Enlazar(ct_buscar_n, &TextBox::Change, &FrmTarifas::ct_buscar_n_Change);

    crearMenuSeleccionados();
}
