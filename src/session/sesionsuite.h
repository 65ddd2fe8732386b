#pragma once

#include "platform/datos/conexion.h"

#include <QString>
#include <memory>

/// The session record: filled once at start-up, read by every screen, never changed after.
/// Before start-up every number is 0, every flag false and every text empty, and a field
/// that no query reaches keeps that value.
struct RegistroSesion {
    QString list2; ///< identifies this terminal in opciones_terminal
    QString list1;
    QString RutaFotos;
    qint16 EstiloAspecto = 0;
    double AnchoPantalla = 0;
    double AltoPantalla = 0;
    double AnchoDiseno = 0;
    double AltoDiseno = 0;
    qint16 IndicadorOpciones = 0;
    QString RutaBandera;
    QString NombreRegional;
    QString AjusteTeclado;
    QString TipoNegocio; ///< "TALLACOLOR", exactly, is the size-and-colour business
    qint16 NumDecimales = 0;
    qint32 empleado = 0;
    bool SegundoImpuesto = false;
    QString nombreimpuesto1;
    QString EmpleadoNombre;
    std::unique_ptr<ADODB::Connection> Conexion; ///< the suite's database, open for the whole run
    QString nombretienda;
    bool multitienda = false;
};

/// The one session record of the process.
extern RegistroSesion SesionSuite;

/// True when the editor works in the size-and-colour mode. Read afresh at every test, as
/// nothing stores the mode.
inline bool ModoTallaColor() {
    return SesionSuite.TipoNegocio == QLatin1String("TALLACOLOR");
}
