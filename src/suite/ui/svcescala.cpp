#include "svcescala.h"

#include "platform/ui/form.h"
#include "platform/ui/twips.h"

#include <algorithm>
#include <cstdio>

using namespace Pantalla;

namespace {

double areaAncho = 0;
double areaAlto = 0;

/// Said once for the run: the size asked for, in pixels, and what the screens get instead.
void AvisarReduccion(double anchoPedido, double altoPedido, double factor) {
    static bool dicho = false;
    if (dicho)
        return;
    dicho = true;
    std::fprintf(stderr, "%s\n",
                 qPrintable(QStringLiteral("El tamaño de pantalla de las opciones (%1 x %2 "
                                           "píxeles) no cabe en el espacio libre de esta "
                                           "pantalla (%3 x %4): las ventanas se reducen a lo "
                                           "que cabe (%5 %), con las proporciones del diseño.")
                                .arg(APixeles(anchoPedido))
                                .arg(APixeles(altoPedido))
                                .arg(APixeles(areaAncho))
                                .arg(APixeles(areaAlto))
                                .arg(qRound(factor * 100))));
    std::fflush(stderr);
}

} // namespace

void SvcEscala::FijarAreaDisponible(double anchoTwips, double altoTwips) {
    areaAncho = anchoTwips;
    areaAlto = altoTwips;
}

void SvcEscala::AjustarFormulario(ADODB::Connection &, Form &pantalla, double anchoPantalla,
                                  double altoPantalla, double anchoDiseno, double altoDiseno) {
    // A size of 0 (nothing stored, nothing known) leaves the screen at its design size.
    double fx = anchoPantalla > 0 && anchoDiseno > 0 ? anchoPantalla / anchoDiseno : 1.0;
    double fy = altoPantalla > 0 && altoDiseno > 0 ? altoPantalla / altoDiseno : 1.0;
    const double ancho = pantalla.Width(), alto = pantalla.Height();
    if (areaAncho > 0 && areaAlto > 0 && ancho > 0 && alto > 0 &&
        (ancho * fx > areaAncho || alto * fy > areaAlto)) {
        const double f = std::min(areaAncho / ancho, areaAlto / alto);
        // Options asking for this very display are kept quiet: only the design's proportions
        // differ from the display's, and the screens fit it as they should.
        if (anchoPantalla > areaAncho || altoPantalla > areaAlto)
            AvisarReduccion(anchoPantalla, altoPantalla, f);
        fx = fy = f;
    }
    const double fuente = std::min(fx, fy);
    factorX = fx;

    pantalla.setWidth(ancho * fx);
    pantalla.setHeight(alto * fy);
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
