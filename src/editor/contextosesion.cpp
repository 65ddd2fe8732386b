#include "contextosesion.h"

#include "session/sesionsuite.h"

ContextoMotor ContextoSesion() {
    ContextoMotor contexto;
    contexto.conexion = SesionSuite.Conexion.get();
    contexto.terminal = SesionSuite.list2;
    contexto.empleado = SesionSuite.empleado;
    contexto.numDecimales = SesionSuite.NumDecimales;
    contexto.tallaColor = ModoTallaColor();
    return contexto;
}
