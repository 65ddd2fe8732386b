#include "recursos.h"

#include <QtGlobal>

// The pictures are compiled into this static library; a static library's resources must be
// registered by hand before the first screen asks for them.
static void Registrar() {
    Q_INIT_RESOURCE(recursos);
}

void IniciarRecursosPantallas() {
    static const bool hecho = (Registrar(), true);
    Q_UNUSED(hecho);
}
