// The editor's load, its sliding entry, its way out, and the focus colours of its boxes.
#include "frmtarifas.h"

#include "platform/ui/controles.h"
#include "session/cargapantalla.h"
#include "session/principal.h"
#include "session/sesionsuite.h"
#include "suite/ui/svctraduccion.h"

using namespace Pantalla;

namespace {

/// The catalogue slides in by this many twips a tick, whatever the scale.
constexpr double PasoRegreso = 3000;

} // namespace

void FrmTarifas::Form_Load() {
    enlazarControles();
    estado = EstadoEditor();
    variantesDeLista.reset();
    // The load runs to its end without a pass over pending events: a click or a key that
    // comes meanwhile waits until the editor is whole, and no handler runs inside this one.
    // A load that fails is cleaned up by Form::Load, which unloads the half-built screen.
    Principal::TraducirPantalla(*this);
    const Principal::ColoresFoco colores =
        Principal::AplicarAspectoPantalla(*this, *ct_buscar_c, *frPadre, *frHijo, {desde, hasta});
    estado.colorConFoco = colores.conFoco;
    estado.colorSinFoco = colores.sinFoco;
    // The price panel lies over the selected products; placed before the scaling, which
    // then moves both alike.
    frCambio->setTop(grid_Pseleccionados->Top());
    frCambio->setLeft(grid_Pseleccionados->Left());
    Principal::EscalarPantalla(*this);
    if (ModoTallaColor()) {
        inicializarGrid_Productos_Textil();
        ListarProductos_Textil();
        ListarProductosLista_textil();
        // The variants' grid takes the scaled place of the plain catalogue, which stays
        // empty behind it and still leads the sliding entry.
        frResultado->setTop(grid_productos->Top());
        frResultado->setLeft(grid_productos->Left());
        frResultado->setVisible(true);
    } else {
        inicializarGrid_Productos();
        ListarProductos();
        ListarProductosLista();
    }
    // Off the screen on the left, twice its own (scaled) width away, in single precision
    // as the screen's positions are kept; the timer brings it in.
    const float salida = -2.0f * float(grid_productos->Width());
    grid_productos->setLeft(salida);
    frResultado->setLeft(grid_productos->Left());
    tmrRegresaLista->setEnabled(true);
    // What other terminals change in the list shows here without a click.
    SeguirOtrosPuestos();
}

void FrmTarifas::tmrRegresaLista_Timer() {
    // The test comes before the step: the last step passes Frame2's edge, and the next tick
    // snaps the list back onto it.
    if (grid_productos->Left() < Frame2->Left()) {
        grid_productos->setLeft(grid_productos->Left() + PasoRegreso);
        frResultado->setLeft(grid_productos->Left());
    } else {
        grid_productos->setLeft(Frame2->Left());
        frResultado->setLeft(Frame2->Left());
        tmrRegresaLista->setEnabled(false);
    }
}

// Prices are stored as they are entered, and a period not accepted is dropped: leaving asks
// nothing and stores nothing. The close box does the same through the screen's unloading.
void FrmTarifas::cmdSalir_Click() {
    Unload();
}

void FrmTarifas::Command1_Click() {
    Principal::svcTraduccion().GenerarCaptions(*SesionSuite.Conexion, *this);
}

namespace {

/// A box that takes the focus shows it in the focus colour and has its whole text selected,
/// so that what the operator types replaces it.
void AlEntrar(TextBox &caja, const QString &color) {
    caja.setBackColor(color.toInt());
    caja.setSelStart(0);
    caja.setSelLength(int(caja.Text().size()));
}

} // namespace

void FrmTarifas::ct_buscar_c_GotFocus() {
    AlEntrar(*ct_buscar_c, estado.colorConFoco);
}
void FrmTarifas::ct_buscar_c_LostFocus() {
    ct_buscar_c->setBackColor(estado.colorSinFoco.toInt());
}
void FrmTarifas::ct_buscar_n_GotFocus() {
    AlEntrar(*ct_buscar_n, estado.colorConFoco);
}
void FrmTarifas::ct_buscar_n_LostFocus() {
    ct_buscar_n->setBackColor(estado.colorSinFoco.toInt());
}
void FrmTarifas::txt_NuevoPrecio_GotFocus() {
    AlEntrar(*txt_NuevoPrecio, estado.colorConFoco);
}
void FrmTarifas::txt_NuevoPrecio_LostFocus() {
    txt_NuevoPrecio->setBackColor(estado.colorSinFoco.toInt());
}
