#pragma once

#include "motor/contexto.h"
#include "motor/importe.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QVariant>
#include <optional>

/// What the prices of a file do to a list: "añadir y actualizar" (the file's lines add or
/// change prices, the list's others stay), or "sustituir" (the list's prices of live products
/// that the file does not name are removed as well; a deleted product's row, which no screen
/// nor export shows, stays).
enum class ModoImportacion { AnadirYActualizar, Sustituir };

/// A line of the file that will not be imported, and why, in the operator's words.
struct LineaRechazada {
    int linea = 0;
    QString motivo;
};

/// One price row the import writes: `variante` is the row's codproductotextil (empty in the
/// plain shop; "-1" for a product without sizes in the size-and-colour shop). No `anterior`
/// for a row added, no `nuevo` for one removed.
struct PrecioImportado {
    qint32 producto = 0;
    QString variante;
    std::optional<Importe> anterior;
    std::optional<Importe> nuevo;
    QVariant fila; ///< the stored row's name when the list has it (its price may be no number)
};

/// The dry run: what the file would do to the list, nothing written. Counts are of price rows
/// (in the size-and-colour shop a product's line prices each of its sizes and colours).
struct PlanImportacion {
    QString error; ///< the file can't be imported at all (empty, not text, no columns…)
    int anadidos = 0;
    int cambiados = 0;
    int quitados = 0;
    int iguales = 0;
    QList<LineaRechazada> rechazadas;
    /// Every row added, changed or removed (shared: a plan is copied, its rows are not).
    QList<PrecioImportado> cambios;
    /// What the dry run was made from, for Importar to know whether it still holds: the
    /// list, the mode, the file's bytes, and the catalogue and the list's rows as read.
    struct Origen {
        qint32 lista = 0;
        ModoImportacion modo = ModoImportacion::AnadirYActualizar;
        size_t datos = 0;
        quint64 catalogo = 0;
        quint64 precios = 0;
        /// On SQLite, the connection that read them and the database's state as it saw it
        /// before reading (other connections' commits, its own changed rows): while neither
        /// moved, nothing the dry run read can have changed. Empty elsewhere.
        QString conexion;
        qint64 versionAjena = -1;
        qint64 cambiosPropios = -1;
        /// On PostgreSQL, the server's own fingerprint of the catalogue's rows and the list's,
        /// taken before reading: the same again later means nothing the dry run read changed,
        /// and no row need cross the network to know it. Empty elsewhere.
        QString servidor;
    } origen;
};

/// Reads the file's bytes and the list's prices and tells what an import would do. The
/// columns are found by their header names (codigo, variante, precio; any order, any case;
/// others left aside). A code finds its product as the editor's search does: the shop's code
/// of a live product, then an extra code (case ignored, taken literally); a deleted product
/// is refused. Raises ErrorBD on a failure of the database.
PlanImportacion PlanearImportacion(const ContextoMotor &contexto, qint32 lista,
                                   const QByteArray &datos, ModoImportacion modo);

struct ResultadoImportacion {
    enum Estado {
        Importada,    ///< written (or nothing to write), as one operation of the history
        Rechazada,    ///< lines refused and only valid lines not asked for: nothing written
        FicheroMalo,  ///< the file can't be imported: `plan.error`, nothing written
        ListaBorrada, ///< another terminal deleted the list: nothing written
    };
    Estado estado = FicheroMalo;
    PlanImportacion plan; ///< what was (or would have been) written, with the refused lines
    qint64 operacion = 0; ///< the history's operation (0 without history or without change)
    QString mensaje;      ///< the one sentence for the operator
};

/// Imports the file into `lista` in one unit of work, all or nothing, with its history as
/// one operation described by `descripcion`. Inside the unit, with the list held, the dry
/// run `previa` (the operator's, made before) is taken when it was made from these bytes and
/// mode and the catalogue and the list's rows are still as it read them; otherwise (or
/// without one) the dry run is made again there. Either way it writes exactly what the
/// database holds now calls for. With refused lines it writes nothing unless `soloValidas`.
/// Raises ErrorBD, and writes nothing, on a failure of the database.
ResultadoImportacion Importar(const ContextoMotor &contexto, qint32 lista, const QByteArray &datos,
                              ModoImportacion modo, bool soloValidas, const QString &descripcion,
                              const PlanImportacion *previa = nullptr);

/// Whether dry run `plan` still holds for `lista`, `datos` and `modo`: it was made from them,
/// and the catalogue and the list's rows read now are as it read them. Reads both (not the
/// file). Raises ErrorBD.
bool PlanVigente(const ContextoMotor &contexto, qint32 lista, const QByteArray &datos,
                 ModoImportacion modo, const PlanImportacion &plan);

/// "120 añadidos, 35 cambiados, 0 quitados, 845 iguales".
QString ResumenImportacion(const PlanImportacion &plan);
