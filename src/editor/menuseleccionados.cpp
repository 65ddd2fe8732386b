// The context menu of the list's prices (grid_Pseleccionados): the one place that builds it.
// Each item shows its shortcut, which acts on the current row while the grid has the focus.
#include "frmtarifas.h"

#include "columnas.h"

#include "dialogos/dlgcambiarprecios.h"
#include "dialogos/dlghistorial.h"
#include "dialogos/menugrid.h"
#include "dialogos/sesionmotor.h"
#include "platform/ui/mensajes.h"
#include "session/sesionsuite.h"

#include <QKeySequence>
#include <algorithm>

using namespace Pantalla;

namespace {

/// A row that holds a price of the list: a data row with a product code (the empty design row
/// of a list without prices has none).
bool FilaConPrecio(const Grid &grid, int fila) {
    return fila > 0 && fila < grid.Rows() && !grid.TextMatrix(fila, ColLlano::Codigo).isEmpty();
}

} // namespace

void FrmTarifas::crearMenuSeleccionados() {
    static_assert(int(ColLlano::Codigo) == int(ColTallaColor::Codigo));
    menuSeleccionados = new MenuGrid(*grid_Pseleccionados);
    const auto conPrecio = [this](int fila) { return FilaConPrecio(*grid_Pseleccionados, fila); };
    // The list in hand is the editor's own lblCodigo, as for every write of the editor.
    const auto conLista = [this](int) {
        bool esLista = false;
        lblCodigo->Caption().toInt(&esLista);
        return esLista;
    };
    const auto conHistorial = [conLista](int fila) { return conLista(fila) && HayHistorial(); };
    menuSeleccionados->Agregar(
        QStringLiteral("Cambiar precios…"), QKeySequence(Qt::CTRL | Qt::Key_M),
        [this] { mnuCambiarPrecios_Click(); }, conLista);
    menuSeleccionados->Agregar(
        QStringLiteral("Quitar de la tarifa"), QKeySequence(Qt::Key_Delete),
        [this] { mnuQuitar_Click(); }, conPrecio);
    menuSeleccionados->Agregar(
        QStringLiteral("Historial de precios…"), QKeySequence(Qt::CTRL | Qt::Key_H),
        [this] { mnuHistorial_Click(); }, conHistorial);
    menuSeleccionados->Agregar(
        QStringLiteral("Exportar…"), QKeySequence(Qt::CTRL | Qt::Key_E),
        [this] { mnuExportar_Click(); }, conLista);
    menuSeleccionados->Agregar(
        QStringLiteral("Importar…"), QKeySequence(Qt::CTRL | Qt::Key_I),
        [this] { mnuImportar_Click(); }, conLista);
    menuSeleccionados->Agregar(
        QStringLiteral("Imprimir…"), QKeySequence(Qt::CTRL | Qt::Key_P),
        [this] { mnuImprimir_Click(); }, conLista);
}

void FrmTarifas::RelistarSeleccionados() {
    Grid &grid = *grid_Pseleccionados;
    const int fila = grid.Row();
    // Back to the design rows first: a listing with no price leaves the grid as it finds it.
    grid.setRows(1);
    grid.setRows(2);
    if (ModoTallaColor())
        ListarProductosLista_textil();
    else
        ListarProductosLista();
    grid.setRow(std::clamp(fila, 1, grid.Rows() - 1));
}

void FrmTarifas::mnuCambiarPrecios_Click() {
    bool esLista = false;
    const qint32 lista = lblCodigo->Caption().toInt(&esLista);
    if (!esLista)
        return;
    DlgCambiarPrecios dialogo(ContextoSesion(), lista, Label5->Caption(), ventana());
    if (dialogo.exec() != QDialog::Accepted || !dialogo.Resultado())
        return;
    // The engine's unit is over: the operator may be told now.
    AvisarSinHistorial();
    MsgBoxInformacion(dialogo.Resultado()->mensaje);
    if (!dialogo.Resultado()->listaExiste) {
        Unload(); // deleted by another terminal: the register lists what remains
        return;
    }
    RelistarSeleccionados();
}

void FrmTarifas::mnuHistorial_Click() {
    bool esLista = false;
    const qint32 lista = lblCodigo->Caption().toInt(&esLista);
    if (!esLista)
        return;
    DlgHistorial dialogo(ContextoSesion(), lista, Label5->Caption(), ventana());
    dialogo.exec();
    if (!dialogo.HuboCambios())
        return;
    AvisarSinHistorial();
    RelistarSeleccionados();
}
