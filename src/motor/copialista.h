#pragma once

#include "cambioprecios.h"
#include "contexto.h"

#include <QDate>
#include <QString>
#include <optional>

/// A copy of a list: its header under a new code with the new name and period, and every
/// price row of it, variants included.
struct PeticionCopia {
    qint32 origen = 0;
    QString nombre;
    QDate desde;
    QDate hasta;
    /// A change applied to the copy on the way (its `lista` is ignored; its base and scope as
    /// for a change of the copy).
    std::optional<PeticionCambio> cambio;
};

struct ResultadoCopia {
    bool origenExiste = true; ///< false: another terminal deleted it; nothing was written
    qint32 nueva = 0;         ///< the copy's code
    int filas = 0;            ///< price rows copied
    qint64 operacion = 0;     ///< 0 without history
    QString mensaje;          ///< the sentence for the operator
};

/// Makes the copy in one unit of work: the new code taken as a new list takes it (the next
/// after the highest, safe against another terminal making a list at the same moment), the
/// header, the rows, the change, the history. The name and period are checked first with
/// ComprobarDatosLista; a refusal raises ErrorBD with its sentence and writes nothing, as does
/// any failure of the database.
ResultadoCopia CopiarLista(const ContextoMotor &contexto, const PeticionCopia &peticion);
