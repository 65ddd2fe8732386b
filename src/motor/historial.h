#pragma once

#include "contexto.h"
#include "importe.h"

#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVariantList>
#include <optional>
#include <vector>

/// The price history: every write of a price, by every path, is recorded in the same unit of
/// work as one operation (one operator action) with its rows. It lives in this program's own
/// tables of the suite's database (historial_operacion, historial_precio), made on first use.
/// A database where they can't be made (an account that may not create tables) works without
/// history: recording does nothing, the reads give nothing, and the caller is told once.

/// The kinds of operation, stored by their code.
enum class TipoOperacion {
    Precio,      ///< the editor's save of one price
    Cambio,      ///< a bulk change
    Copia,       ///< a list copied into a new one
    Quitar,      ///< a product (or variant) taken out of a list
    BorrarLista, ///< a whole list deleted
    Deshacer,    ///< an operation undone
    Importacion, ///< prices read from a file
};
QString CodigoTipo(TipoOperacion tipo);    ///< what is stored: "precio", "cambio", …
QString NombreTipo(const QString &codigo); ///< what the operator reads: "Cambio de precios", …

/// Whether the history tables exist on this connection's database, making them the first time
/// (in a unit of their own, or inside the caller's behind a savepoint, so that a refusal never
/// spoils the caller's unit). Asked once per connection; the answer is kept. Raises ErrorBD
/// only when the database can't even be read.
bool HistorialDisponible(ADODB::Connection &conexion);
/// The sentence to show the operator once, the first time a write found no history on this
/// connection ("… sin historial …"); empty every other time. The face asks it after a write,
/// outside any unit.
QString TomarAvisoHistorial(ADODB::Connection &conexion);

/// One operation being recorded inside the caller's open unit of work. Made with its header;
/// rows are added and written in batches; Cerrar() writes the rest. Without history it does
/// nothing. Raises ErrorBD: the caller's unit then writes nothing at all.
class RegistroOperacion {
  public:
    /// `previstas`: the rows the operation is known to record, written with it at once, so
    /// that Cerrar has nothing to correct when that is what came (a save's one or two rows).
    RegistroOperacion(const ContextoMotor &contexto, qint32 lista, TipoOperacion tipo,
                      const QString &descripcion, std::optional<qint64> deshace = std::nullopt,
                      int previstas = 0);
    ~RegistroOperacion();
    RegistroOperacion(const RegistroOperacion &) = delete;
    RegistroOperacion &operator=(const RegistroOperacion &) = delete;

    /// One price row: `variante` empty for a plain product; no `anterior` for a new row, no
    /// `nuevo` for a removed one.
    void Fila(qint32 producto, const QString &variante, std::optional<Importe> anterior,
              std::optional<Importe> nuevo);
    /// Records every price row of `lista` now stored as removed (before a delete) or as new
    /// (after a copy), with one statement.
    void FilasDeLista(qint32 lista, bool comoNuevas);
    /// Records the rows a select gives, with one statement: its columns are producto,
    /// variante ('' for a plain product), anterior, nuevo (the prices, Null for none) and clase
    /// ('A' a row added, 'B' a row removed, 'M' a row's price changed). For the engine's
    /// set-wise writes; `valores` are bound to its "?" in order.
    void FilasDeSeleccion(const QString &seleccion, const QVariantList &valores = {});
    /// Writes the rows still held. Gives the operation's number (0 without history).
    qint64 Cerrar();
    qint64 Numero() const { return numero; }
    bool Activo() const { return activo; }

  private:
    void volcar();
    ADODB::Connection *conexion;
    qint32 listaOperacion;
    qint64 numero = 0;
    bool activo = false;
    int filas = 0;
    int filasAnotadas = 0; ///< the count the operation's row holds
    struct Pendiente {
        qint32 producto;
        QString variante;
        std::optional<Importe> anterior, nuevo;
    };
    std::vector<Pendiente> pendientes;
};

/// The editor's save of one price, recorded inside the save's unit and before its delete: the
/// price now stored for the product (or variant) of `lista`, if any, becomes the row's old
/// price, `nuevoTexto` its new one. A `nuevoTexto` that is not a price records nothing.
void RegistrarPrecio(const ContextoMotor &contexto, qint32 lista, qint32 producto,
                     const QString &variante, const QString &nuevoTexto);
/// A list deleted, recorded inside the delete's unit and before its deletes: every row of it,
/// old price -> none.
void RegistrarBorradoLista(const ContextoMotor &contexto, qint32 lista, const QString &nombre);

/// One operation of a list's history.
struct OperacionHistorial {
    qint64 numero = 0;
    qint32 lista = 0;
    QDateTime momento; ///< local time of the terminal that wrote it
    QString terminal;
    std::optional<qint32> empleado;
    QString tipo; ///< its code (CodigoTipo); NombreTipo gives the words
    QString descripcion;
    int filas = 0;
    std::optional<qint64> deshace; ///< the operation this one undid
};

/// One row of an operation, with the catalogue's words for it (empty where the catalogue no
/// longer has the product).
struct FilaHistorial {
    qint32 producto = 0;
    QString variante;
    QString nombre;
    QString talla;
    QString color;
    std::optional<Importe> anterior;
    std::optional<Importe> nuevo;
    bool habia = true; ///< a row stood before (false: the operation added it)
    bool queda = true; ///< a row stands after (false: the operation removed it)
};

/// The operations of `lista`, newest first. Empty without history.
QList<OperacionHistorial> OperacionesDeLista(const ContextoMotor &contexto, qint32 lista);
/// The rows of one operation, by product name; with `filtro`, only those whose name or code
/// holds it (any case). Empty without history.
QList<FilaHistorial> FilasDeOperacion(const ContextoMotor &contexto, qint64 operacion,
                                      const QString &filtro = {});

/// What undoing an operation came to. Nothing is written unless `estado` is Deshecha.
struct ResultadoDeshacer {
    enum Estado {
        Deshecha,        ///< every row back to its old price, recorded as an operation
        CambiadaDespues, ///< a row changed again since: `productos` names them
        ListaBorrada,    ///< the list no longer exists
        NoExiste,        ///< no such operation of that list
        SinHistorial,    ///< the database keeps no history
    };
    Estado estado = NoExiste;
    QStringList productos; ///< the products changed since ("Camisa (M, Azul)")
    qint64 operacion = 0;  ///< the undo's own operation, when Deshecha
    QString mensaje;       ///< the sentence for the operator, in every case
};

/// Undoes operation `operacion` of `lista` whole, in one unit of work, or nothing: refused
/// when any of its rows was changed since (a later operation touched it, or its stored price
/// is no longer the operation's new one). Raises ErrorBD (and writes nothing) on a failure.
ResultadoDeshacer DeshacerOperacion(const ContextoMotor &contexto, qint32 lista, qint64 operacion);
