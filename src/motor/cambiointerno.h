#pragma once

// The bulk change's work inside a unit the caller holds, for the copy that changes its rows on
// the way.

#include "cambioprecios.h"
#include "escritura.h"

struct CuentaCambio {
    int cambiadas = 0;
    int rechazadas = 0;
};

/// Reads the rows of `peticion` and works out the changed ones, for EscribirCambios. Inside
/// the caller's unit, which already holds the list.
CambiosFilas CalcularCambios(const ContextoMotor &contexto, const PeticionCambio &peticion,
                             CuentaCambio &cuenta);
