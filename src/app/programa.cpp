#include "programa.h"

#include "platform/datos/sistema.h"
#include "platform/ui/informeerror.h"
#include "platform/ui/mensajes.h"
#include "register/frmlistas.h"
#include "session/principal.h"
#include "session/sesionsuite.h"
#include "session/vida.h"
#include "suite/datos/svcconexion.h"

#include <exception>

using namespace Pantalla;
using namespace Sistema;

namespace Principal {

int Main() {
    // A second copy ends at once, silently, before it touches the database.
    if (HayInstanciaPrevia())
        return 0;
    // Everything the program makes from here on ends with `vida`, before the caller's
    // application object does.
    Vida vida;
    try {
        SesionSuite.Conexion = std::make_unique<ADODB::Connection>();
        svcConexion().AbrirConexion(QString(), *SesionSuite.Conexion);
        CargarSesion();
        // A database that can be read but not written is said now, once, rather than at the
        // first save (which then fails saying the same).
        if (const QString aviso = SesionSuite.Conexion->SoloLectura(); !aviso.isEmpty())
            MsgBoxInformacion(aviso);
        frmListas().ShowModal();
    } catch (const FinPrograma &) {
        // A handler ended the program after the error report; its status stands.
    } catch (const std::exception &error) {
        // Start-up has no recovery: the error's own text, and the end.
        MostrarError(QString::fromUtf8(error.what()));
        return 1;
    }
    return Form::EstadoSalida();
}

} // namespace Principal
