#pragma once

#include "motor/contexto.h"

/// The engine's view of this session: its connection, this terminal (list2) and its employee,
/// the shop's decimals and business. The connection stays the session's.
ContextoMotor ContextoSesion();

/// Whether the session's database keeps the price history (its tables made on first use):
/// the history items of the menus are enabled only then.
bool HayHistorial();

/// After a write, outside its unit of work: tells the operator, once per session, that the
/// database keeps no price history.
void AvisarSinHistorial();
