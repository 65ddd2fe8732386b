#pragma once

#include "contexto.h"
#include "importe.h"
#include "redondeo.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <optional>

/// A bulk change of a list's prices: which rows, from which base, by which rule.
struct PeticionCambio {
    enum class Base {
        Tarifa,   ///< the list's own price of each row
        Catalogo, ///< productos.precio (a variant's productostextil.precio, else its product's)
    };
    enum class Alcance {
        Todos,         ///< every price row of the list
        Seccion,       ///< rows whose product is of section `seccion`
        NombreEmpieza, ///< rows whose product's name starts with `prefijo` (any case)
        Catalogo,      ///< every live product (variant) of the catalogue: Base::Catalogo only;
                       ///< rows the list lacks are added
    };
    qint32 lista = 0;
    Base base = Base::Tarifa;
    Alcance alcance = Alcance::Todos;
    QString seccion;
    QString prefijo;
    ReglaCambio regla; ///< from LeerRegla: already checked
};

/// What PeticionCambio says of itself when it can't be done (Catalogo scope with the list's
/// own price as base): empty when it can.
QString ComprobarPeticion(const PeticionCambio &peticion);

/// One row of a change.
struct FilaCambio {
    qint32 producto = 0;
    QString variante; ///< empty for a plain product
    QString nombre;
    QString talla;
    QString color;
    std::optional<Importe> anterior; ///< none: a row the list lacks (catalogue scope)
    std::optional<Importe> nuevo;    ///< none: refused, see `motivo`
    QString motivo;
};

/// The preview: nothing is written.
struct VistaPreviaCambio {
    int cambian = 0;
    int iguales = 0;
    QList<FilaCambio> primeras;   ///< the first rows that change, by name, old -> new
    QList<FilaCambio> rechazadas; ///< every refused row with its reason
    bool listaExiste = true;
};

/// The sections the catalogue has, sorted, for the scope "one section".
QStringList SeccionesCatalogo(const ContextoMotor &contexto);

/// What the change would do, reading as the apply reads; `primeras` holds up to `maximo` rows.
/// Raises ErrorBD on a failure of the database.
VistaPreviaCambio PrevisualizarCambio(const ContextoMotor &contexto, const PeticionCambio &peticion,
                                      int maximo = 50);

/// What an apply came to.
struct ResultadoCambio {
    bool listaExiste = true; ///< false: another terminal deleted it; nothing was written
    int cambiadas = 0;       ///< rows written (added ones included)
    int rechazadas = 0;      ///< refused rows, left as they were
    qint64 operacion = 0;    ///< its operation in the history (0 without history)
    QString mensaje;         ///< the sentence for the operator
};

/// Writes every changing row, and its history, in one unit of work, reading the rows inside
/// it with the list's header held (so two terminals' changes of one list apply one after the
/// other, whole). Refused rows stay as they are. Raises ErrorBD, and writes nothing, on a
/// failure; a request ComprobarPeticion refuses raises it too.
ResultadoCambio AplicarCambio(const ContextoMotor &contexto, const PeticionCambio &peticion);
