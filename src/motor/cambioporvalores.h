#pragma once

// The common bulk change, "every price of the list (or of a section) + 3 %", goes by the
// list's distinct prices instead of by its rows: a list of 100,000 rows holds a few thousand
// prices, so the engine works out each new price once and the database applies them all with
// one update and one insert into the history, each over the list's index.

#include "cambiointerno.h"

/// Whether `peticion` can go by prices: the list's own price as base, and a scope the
/// database tells by itself (every row, or a section).
bool CambioPorValores(const PeticionCambio &peticion);

/// Inside the caller's unit, which holds the list: reads the list's distinct prices, works out
/// each one's new price, and, when any changes, records an operation described by
/// `descripcion` and writes the rows. Gives the operation's number (0 with none).
qint64 CambiarPorValores(const ContextoMotor &contexto, const PeticionCambio &peticion,
                         const QString &descripcion, CuentaCambio &cuenta);
