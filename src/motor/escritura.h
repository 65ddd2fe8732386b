#pragma once

// The one writer of a list's price rows for the engine's operations: the rows change, go and
// come in a few set-wise statements over temporary tables, with their history beside them,
// inside the caller's unit of work (which holds the list).

#include "historial.h"
#include "importe.h"
#include "sqlmotor.h"

#include <QString>
#include <QVariant>
#include <optional>
#include <vector>

struct CambiosFilas {
    struct Cambio {
        QVariant clave;               ///< the row's name (SQLMotor::ClaveFila)
        std::optional<Importe> nuevo; ///< none: the row keeps no price (Null)
    };
    struct Alta {
        qint32 producto;
        QString variante;              ///< empty for a plain product
        std::optional<Importe> precio; ///< none: a row without a price (Null)
    };
    std::vector<Cambio> modificar;
    std::vector<QVariant> borrar; ///< rows' names
    std::vector<Alta> altas;
    int Total() const { return int(modificar.size() + borrar.size() + altas.size()); }
};

/// Writes `cambios` to list `lista` and, when `registro` is given, their history rows (old
/// price as stored -> new). Raises ErrorBD.
void EscribirCambios(ADODB::Connection &conexion, qint32 lista, const CambiosFilas &cambios,
                     RegistroOperacion *registro);
