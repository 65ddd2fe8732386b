#include "principal.h"

#include "platform/datos/sistema.h"
#include "register/frmlistas.h"
#include "session/principal.h"
#include "session/sesionsuite.h"
#include "suite/datos/svcconexion.h"

namespace Principal {

int Main() {
    // A second copy ends at once, silently, before it touches the database.
    if (HayInstanciaPrevia())
        return 0;
    SesionSuite.Conexion = std::make_unique<ADODB::Connection>();
    svcConexion().AbrirConexion(QString(), *SesionSuite.Conexion);
    CargarSesion();
    frmListas().ShowModal();
    return 0;
}

} // namespace Principal
