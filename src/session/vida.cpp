#include "vida.h"

#include "principal.h"

#include "platform/ui/form.h"

#include <stdexcept>

using namespace Pantalla;

namespace Principal {

namespace {
Vida *viva = nullptr;
} // namespace

Vida::Vida() {
    if (viva)
        throw std::logic_error("Ya hay un programa en marcha en este proceso.");
    viva = this;
    Form::Reanudar();
}

Vida::~Vida() {
    // A screen going may still run its unloading, which reads the session: the screens go
    // first, the last made first (the editor before the register that opened it).
    while (!pantallas.empty())
        pantallas.pop_back();
    ReiniciarSesion();
    viva = nullptr;
}

Vida *Vida::Actual() {
    return viva;
}

Vida &Vida::Requerida() {
    if (!viva)
        throw std::logic_error("Las pantallas necesitan un programa en marcha (Principal::Vida).");
    return *viva;
}

} // namespace Principal
