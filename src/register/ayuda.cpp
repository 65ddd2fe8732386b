// The help panel: the viewer Open1 waits out of sight below the screen's bottom edge.
#include "frmlistas.h"

void FrmListas::ColocarAyuda() {
    Open1->setTop(Height());
    Open1->setLeft(Width() - Open1->Width() - 100);
}
