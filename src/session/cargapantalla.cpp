#include "cargapantalla.h"

#include "principal.h"
#include "sesionsuite.h"

#include "platform/ui/control.h"
#include "platform/ui/dtpicker.h"
#include "platform/ui/form.h"
#include "suite/ui/svcaspecto.h"
#include "suite/ui/svcescala.h"
#include "suite/ui/svctraduccion.h"

using namespace Pantalla;

namespace Principal {

void TraducirPantalla(Form &pantalla) {
    svcTraduccion().TraducirFormulario(*SesionSuite.Conexion, pantalla);
}

ColoresFoco AplicarAspectoPantalla(Form &pantalla, const Control &caja, const Control &fondo,
                                   const Control &titulo,
                                   std::initializer_list<DTPicker *> fechas) {
    ADODB::Connection &conexion = *SesionSuite.Conexion;
    svcAspecto().AplicarAspecto(pantalla, SesionSuite.EstiloAspecto, conexion);
    // The look has given the boxes and frames their colours: they are read back now.
    ColoresFoco colores;
    colores.conFoco = svcAspecto().ColorFoco(conexion, SesionSuite.EstiloAspecto);
    colores.sinFoco = QString::number(caja.BackColor());
    for (DTPicker *fecha : fechas) {
        fecha->setCalendarBackColor(fondo.BackColor());
        fecha->setCalendarTitleBackColor(titulo.BackColor());
        fecha->setCalendarForeColor(0);
        fecha->setCalendarTitleForeColor(0);
    }
    return colores;
}

void EscalarPantalla(Form &pantalla) {
    svcEscala().AjustarFormulario(*SesionSuite.Conexion, pantalla, SesionSuite.AnchoPantalla,
                                  SesionSuite.AltoPantalla, SesionSuite.AnchoDiseno,
                                  SesionSuite.AltoDiseno);
}

} // namespace Principal
