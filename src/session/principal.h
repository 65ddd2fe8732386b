#pragma once

#include <QString>

class SvcConexion;
class SvcOpciones;
class SvcAspecto;
class SvcEscala;
class SvcTeclado;
class SvcTraduccion;

/// Start-up: the session record's loading, and the program's one object of each
/// long-lived service, each made at its first use and kept until the process ends.
/// Main itself, which also needs the screens, lives with the executable.
namespace Principal {

/// Fills SesionSuite; needs SesionSuite.Conexion open.
void CargarSesion();
void LeerMultitienda();
/// The terminal's data, each read over a connection of its own to "dsn=Corvanta".
QString LeerList1();
QString LeerList2();
QString LeerBandera();
QString LeerNombreRegional();
QString NombreEmpleado();

SvcConexion &svcConexion();
SvcOpciones &svcOpciones();
SvcAspecto &svcAspecto();
SvcEscala &svcEscala();
SvcTeclado &svcTeclado();
SvcTraduccion &svcTraduccion();

/// For tests: puts SesionSuite back to its state before start-up (closing its connection).
void ReiniciarSesion();

} // namespace Principal
