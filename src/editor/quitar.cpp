// Taking one product (or one size and colour) out of the open list: its price row goes from
// detalle_precio, with its history, and from grid_Pseleccionados; the catalogue is untouched.
#include "frmtarifas.h"

#include "columnas.h"

#include "dialogos/sesionmotor.h"
#include "motor/quitarproducto.h"
#include "platform/ui/mensajes.h"
#include "session/sesionsuite.h"

using namespace Pantalla;

namespace {

/// The product of a row as the question names it: its name, and its size and colour when the
/// row has them.
QString NombreDeFila(const Grid &g, int fila, bool textil) {
    const QString nombre =
        QStringLiteral("«") + g.TextMatrix(fila, ColLlano::Nombre) + QStringLiteral("»");
    if (!textil)
        return nombre;
    const QString talla = g.TextMatrix(fila, ColTallaColor::Talla);
    const QString color = g.TextMatrix(fila, ColTallaColor::Color);
    if (talla.isEmpty() && color.isEmpty())
        return nombre;
    return nombre + QStringLiteral(" (talla ") + talla + QStringLiteral(", color ") + color +
           QLatin1Char(')');
}

} // namespace

void FrmTarifas::mnuQuitar_Click() {
    Grid &grid = *grid_Pseleccionados;
    const int fila = grid.Row();
    if (fila <= 0 || fila >= grid.Rows())
        return;
    const bool textil = ModoTallaColor();
    bool esLista = false, esProducto = false;
    const qint32 lista = lblCodigo->Caption().toInt(&esLista);
    const qint32 producto = grid.TextMatrix(fila, ColLlano::Codigo).toInt(&esProducto);
    if (!esLista || !esProducto)
        return; // the empty row of a list without prices: nothing to take out
    // The plain mode's rows keep no variant; a row saved in the plain mode shows "" in the
    // size-and-colour one.
    const QString variante = textil ? grid.TextMatrix(fila, ColTallaColor::CodigoHijo) : QString();

    if (!MsgBoxPregunta(QStringLiteral("¿Quitar ") + NombreDeFila(grid, fila, textil) +
                            QStringLiteral(" de la tarifa «") + Label5->Caption() +
                            QStringLiteral("»?"),
                        QStringLiteral("Quitar de la tarifa")))
        return;

    const ResultadoQuitar resultado = QuitarProducto(ContextoSesion(), lista, producto, variante);
    // The engine's unit has ended: only now is the operator told anything.
    AvisarSinHistorial();
    switch (resultado.estado) {
    case ResultadoQuitar::Quitado:
        break;
    case ResultadoQuitar::NoEstaba:
        MsgBoxInformacion(resultado.mensaje);
        break;
    case ResultadoQuitar::ListaBorrada:
        MsgBoxInformacion(QStringLiteral("La tarifa \"%1\" ya no existe: se ha eliminado desde "
                                         "otro puesto. No se ha guardado nada.")
                              .arg(Label5->Caption()));
        Unload(); // the register lists what remains
        return;
    }
    RelistarSeleccionados();
}
