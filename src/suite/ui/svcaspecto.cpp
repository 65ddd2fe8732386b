#include "svcaspecto.h"

#include "platform/ui/form.h"

using namespace Pantalla;

namespace {

struct Aspecto {
    ColorOLE panelClaro;  ///< frames designed in the light grey (224) and the header
    ColorOLE panelOscuro; ///< frames designed in the darker grey (192)
    ColorOLE caja;        ///< text boxes
    ColorOLE foco;        ///< a text box with the focus
};

constexpr Aspecto aspectos[] = {
    {RGB(224, 224, 224), RGB(192, 192, 192), RGB(255, 255, 255), RGB(255, 255, 192)},
    {RGB(214, 226, 238), RGB(186, 203, 222), RGB(255, 255, 255), RGB(204, 228, 255)},
};

const Aspecto &AspectoDe(qint16 estilo) {
    return estilo == 1 ? aspectos[1] : aspectos[0];
}

} // namespace

void SvcAspecto::AplicarAspecto(Form &pantalla, qint16 estiloAspecto, ADODB::Connection &) {
    const Aspecto &a = AspectoDe(estiloAspecto);
    for (const DisenoControl &d : pantalla.Diseno().controles) {
        Control *c = pantalla.control(QString::fromLatin1(d.nombre));
        if (!c)
            continue;
        switch (d.clase) {
        case ClaseControl::Frame:
            // The screen's outer frame and the grey panels take the look's colours; white
            // frames and the dark separator lines keep their design colour.
            if (!d.contenedor && d.back == SinColor)
                c->setBackColor(a.panelClaro);
            else if (d.back == RGB(224, 224, 224))
                c->setBackColor(a.panelClaro);
            else if (d.back == RGB(192, 192, 192))
                c->setBackColor(a.panelOscuro);
            break;
        case ClaseControl::TextBox:
            c->setBackColor(a.caja);
            break;
        default:
            break;
        }
    }
    pantalla.setBackColor(a.panelClaro);
}

QString SvcAspecto::ColorFoco(ADODB::Connection &, qint16 estiloAspecto) {
    return QString::number(AspectoDe(estiloAspecto).foco);
}
