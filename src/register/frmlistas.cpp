#include "frmlistas.h"

#include "platform/datos/avisocambios.h"
#include "screens/disenolistas.h"
#include "session/cargapantalla.h"
#include "session/principal.h"
#include "session/sesionsuite.h"
#include "session/vida.h"
#include "suite/ui/svctraduccion.h"

using namespace Pantalla;

FrmListas::FrmListas() : Form(DisenoListas()) {}

FrmListas &frmListas() {
    return Principal::Vida::Pantalla<FrmListas>();
}

void FrmListas::enlazarControles() {
    frCabecera = control<Frame>(QStringLiteral("frCabecera"));
    frHijo = control<Frame>(QStringLiteral("frHijo"));
    frAltaLista = control<Frame>(QStringLiteral("frAltaLista"));
    Frame1 = control<Frame>(QStringLiteral("Frame1"));
    fr_SeparacionH1 = control<Frame>(QStringLiteral("fr_SeparacionH1"));
    grid_precios = control<Grid>(QStringLiteral("grid_precios"));
    lblCodigo = control<Label>(QStringLiteral("lblCodigo"));
    txtNomLista = control<TextBox>(QStringLiteral("txtNomLista"));
    desde = control<DTPicker>(QStringLiteral("desde"));
    hasta = control<DTPicker>(QStringLiteral("hasta"));
    cmdSalir = control<CommandButton>(QStringLiteral("cmdSalir"));
    Command1 = control<CommandButton>(QStringLiteral("Command1"));
    cmdNuevo = control<CommandButton>(QStringLiteral("cmdNuevo"));
    cmd_Ayuda = control<CommandButton>(QStringLiteral("cmd_Ayuda"));
    cmdAceptar = control<CommandButton>(QStringLiteral("cmdAceptar"));
    cmdCancelar = control<CommandButton>(QStringLiteral("cmdCancelar"));
    tmrAyuda = control<Timer>(QStringLiteral("tmrAyuda"));
    Open1 = control<VisorAyuda>(QStringLiteral("Open1"));

    Enlazar(grid_precios, &Grid::DblClick, &FrmListas::grid_precios_DblClick);
    Enlazar(cmdSalir, &CommandButton::Click, &FrmListas::cmdSalir_Click);
    Enlazar(Command1, &CommandButton::Click, &FrmListas::Command1_Click);
    Enlazar(txtNomLista, &TextBox::GotFocus, &FrmListas::txtNomLista_GotFocus);
    Enlazar(txtNomLista, &TextBox::LostFocus, &FrmListas::txtNomLista_LostFocus);
    Enlazar(cmdNuevo, &CommandButton::Click, &FrmListas::cmdNuevo_Click);
    Enlazar(cmdAceptar, &CommandButton::Click, &FrmListas::cmdAceptar_Click);
    Enlazar(cmdCancelar, &CommandButton::Click, &FrmListas::cmdCancelar_Click);
    Enlazar(cmd_Ayuda, &CommandButton::Click, &FrmListas::cmd_Ayuda_Click);
    Enlazar(tmrAyuda, &Timer::Tick, &FrmListas::tmrAyuda_Timer);
    Enlazar(Open1, &VisorAyuda::Aviso, &FrmListas::Open1_Aviso);

    crearMenuPrecios();
}

void FrmListas::Form_Load() {
    enlazarControles();
    Principal::TraducirPantalla(*this);
    ColocarAyuda();
    const Principal::ColoresFoco colores = Principal::AplicarAspectoPantalla(
        *this, *txtNomLista, *frCabecera, *frHijo, {desde, hasta});
    estado.colorConFoco = colores.conFoco;
    estado.colorSinFoco = colores.sinFoco;
    Principal::EscalarPantalla(*this);
    inicializarGridPrecios();
    cargarGridPrecios();
    // Lists that other terminals create, rename or delete show here without a click.
    auto *vigia = new ADODB::VigiaCambios(*SesionSuite.Conexion, ventana());
    connect(vigia, &ADODB::VigiaCambios::Cambio, this,
            [this] { Atender([this] { SeguirCambios(); }); });
}

void FrmListas::cmdSalir_Click() {
    Unload();
}

void FrmListas::Command1_Click() {
    Principal::svcTraduccion().GenerarCaptions(*SesionSuite.Conexion, *this);
}

void FrmListas::txtNomLista_GotFocus() {
    txtNomLista->setBackColor(estado.colorConFoco.toInt());
    txtNomLista->setSelStart(0);
    txtNomLista->setSelLength(int(txtNomLista->Text().size()));
}

void FrmListas::txtNomLista_LostFocus() {
    txtNomLista->setBackColor(estado.colorSinFoco.toInt());
}
