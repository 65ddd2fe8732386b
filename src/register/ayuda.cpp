// The help panel: the viewer Open1 waits out of sight below the screen's bottom edge, slides
// up over the screen when the operator asks for help, and down again when the viewer asks to
// close.
#include "frmlistas.h"

#include "platform/datos/sistema.h"

using namespace Sistema;

namespace {

/// What the panel moves at each tick, in twips, in single precision as the old screens kept
/// their positions.
constexpr float PasoAyuda = 100.0f;

/// The timer's tick, in ms. The screen asks for 1 ms, "as fast as the system goes", and on the
/// system it was drawn for that meant the clock's tick of about 15.6 ms. Qt keeps 1 ms to the
/// letter: the whole slide would be over in a tenth of a second, with several moves between two
/// frames of a 60 Hz display, so the panel would seem to jump into place. One tick per frame,
/// 16 ms, moves it about 7 pixels a frame: a slide of some 1.5 s that the eye can follow.
constexpr int TickAyuda = 16;

} // namespace

void FrmListas::ColocarAyuda() {
    Open1->setTop(Height());
    Open1->setLeft(Width() - Open1->Width() - 100);
    tmrAyuda->setInterval(TickAyuda);
}

void FrmListas::cmd_Ayuda_Click() {
    estado.ayudaSubiendo = true;
    estado.rutaAyuda = DirectorioPrograma() + QStringLiteral("\\ayudas\\tartpv.html");
    Open1->setHeight(Height() - (fr_SeparacionH1->Height() + Frame1->Top()));
    Open1->RutaPagina = estado.rutaAyuda;
    Open1->MostrarPagina();
    // From below the edge, even when it was up or on its way.
    Open1->setTop(Height());
    tmrAyuda->setEnabled(true);
}

void FrmListas::tmrAyuda_Timer() {
    // The test comes before the move: the last move may pass the stop by less than a step, and
    // the next tick puts the panel exactly on it and stops the timer.
    if (estado.ayudaSubiendo) {
        const double arriba = fr_SeparacionH1->Height() + Frame1->Top();
        if (arriba < Open1->Top()) {
            Open1->setTop(float(Open1->Top()) - PasoAyuda);
        } else {
            Open1->setTop(arriba);
            tmrAyuda->setEnabled(false);
        }
    } else {
        if (Open1->Top() < Height()) {
            Open1->setTop(float(Open1->Top()) + PasoAyuda);
        } else {
            Open1->setTop(Height());
            tmrAyuda->setEnabled(false);
        }
    }
}

void FrmListas::Open1_Aviso() {
    if (!Open1->PedidoCierre())
        return;
    estado.ayudaSubiendo = false;
    tmrAyuda->setEnabled(true);
}
