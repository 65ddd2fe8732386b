#pragma once

#include "motor/contexto.h"

/// What the whole-list engine needs of this session: its connection, terminal, employee,
/// decimals and business type, read from the session record at each call.
ContextoMotor ContextoSesion();
