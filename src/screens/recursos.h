#pragma once

/// Makes the screens' pictures available (":/imagenes/..."); safe to call any number of times.
void IniciarRecursosPantallas();
