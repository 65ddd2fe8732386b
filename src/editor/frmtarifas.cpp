// The editor screen itself: its one instance and the binding of its controls.
#include "frmtarifas.h"

#include "screens/disenotarifas.h"

FrmTarifas::FrmTarifas() : Form(DisenoTarifas()) {}

FrmTarifas &frmTarifas() {
    static FrmTarifas pantalla;
    return pantalla;
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

    connect(tmrRegresaLista, &Timer::Tick, this, &FrmTarifas::tmrRegresaLista_Timer);
    connect(cmdSalir, &CommandButton::Click, this, &FrmTarifas::cmdSalir_Click);
    connect(Command1, &CommandButton::Click, this, &FrmTarifas::Command1_Click);
    connect(ct_buscar_c, &TextBox::GotFocus, this, &FrmTarifas::ct_buscar_c_GotFocus);
    connect(ct_buscar_c, &TextBox::LostFocus, this, &FrmTarifas::ct_buscar_c_LostFocus);
    connect(ct_buscar_n, &TextBox::GotFocus, this, &FrmTarifas::ct_buscar_n_GotFocus);
    connect(ct_buscar_n, &TextBox::LostFocus, this, &FrmTarifas::ct_buscar_n_LostFocus);
    connect(txt_NuevoPrecio, &TextBox::GotFocus, this, &FrmTarifas::txt_NuevoPrecio_GotFocus);
    connect(txt_NuevoPrecio, &TextBox::LostFocus, this, &FrmTarifas::txt_NuevoPrecio_LostFocus);
}
