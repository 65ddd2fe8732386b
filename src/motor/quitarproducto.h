#pragma once

#include "contexto.h"

#include <QString>

/// Taking one product (or one size and colour of it) out of a list: its price row goes, with
/// its history, in one unit of work. The catalogue is untouched.
struct ResultadoQuitar {
    enum Estado {
        Quitado,      ///< the row is gone
        NoEstaba,     ///< the list has no such row (another terminal took it out): nothing done
        ListaBorrada, ///< the list no longer exists: nothing done
    };
    Estado estado = NoEstaba;
    qint64 operacion = 0; ///< 0 without history
    QString mensaje;      ///< the sentence for the operator
};

/// Takes `producto` out of `lista`; `variante` empty for a plain product's row, else the
/// variant's code (codproductotextil). Raises ErrorBD, writing nothing, on a failure.
ResultadoQuitar QuitarProducto(const ContextoMotor &contexto, qint32 lista, qint32 producto,
                               const QString &variante);
