#include "svcescala.h"

#include "platform/ui/form.h"

#include <algorithm>

void SvcEscala::AjustarFormulario(ADODB::Connection &, Form &pantalla, double anchoPantalla,
                                  double altoPantalla, double anchoDiseno, double altoDiseno) {
    // A size of 0 (nothing stored, nothing known) leaves the screen at its design size.
    const double fx = anchoPantalla > 0 && anchoDiseno > 0 ? anchoPantalla / anchoDiseno : 1.0;
    const double fy = altoPantalla > 0 && altoDiseno > 0 ? altoPantalla / altoDiseno : 1.0;
    const double fuente = std::min(fx, fy);
    factorX = fx;

    pantalla.setWidth(pantalla.Width() * fx);
    pantalla.setHeight(pantalla.Height() * fy);
    for (Control *c : pantalla.Controls()) {
        c->Move(c->Left() * fx, c->Top() * fy, c->Width() * fx, c->Height() * fy);
        if (c->widget()) {
            QFont f = c->Font();
            if (f.pointSizeF() > 0) {
                f.setPointSizeF(f.pointSizeF() * fuente);
                c->setFont(f);
            }
        }
    }
}
