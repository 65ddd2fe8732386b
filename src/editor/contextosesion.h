#pragma once

// The engine's view of this session (ContextoSesion) is one function, in the dialogs' layer
// that the editor links.
#include "dialogos/sesionmotor.h"
