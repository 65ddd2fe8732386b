// The session as the engine of the work on whole lists sees it.
#include "sesionmotor.h"

#include "motor/historial.h"
#include "platform/ui/mensajes.h"
#include "session/sesionsuite.h"

using namespace Pantalla;

ContextoMotor ContextoSesion() {
    ContextoMotor contexto;
    contexto.conexion = SesionSuite.Conexion.get();
    contexto.terminal = SesionSuite.list2;
    contexto.empleado = SesionSuite.empleado;
    contexto.numDecimales = SesionSuite.NumDecimales;
    contexto.tallaColor = ModoTallaColor();
    return contexto;
}

bool HayHistorial() {
    return SesionSuite.Conexion && HistorialDisponible(*SesionSuite.Conexion);
}

void AvisarSinHistorial() {
    if (!SesionSuite.Conexion)
        return;
    const QString aviso = TomarAvisoHistorial(*SesionSuite.Conexion);
    if (!aviso.isEmpty())
        MsgBoxInformacion(aviso);
}
