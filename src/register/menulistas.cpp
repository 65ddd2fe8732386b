// The context menu of the register's grid (grid_precios): the one place that builds it, and
// the handlers of its items, each a dialog over the engine of the work on whole lists.
#include "frmlistas.h"

#include "columnaslistas.h"

#include "dialogos/dlgcambiarprecios.h"
#include "dialogos/dlgcopiartarifa.h"
#include "dialogos/dlghistorial.h"
#include "dialogos/menugrid.h"
#include "dialogos/sesionmotor.h"
#include "platform/ui/mensajes.h"

#include <QKeySequence>

using namespace Pantalla;

void FrmListas::crearMenuPrecios() {
    menuPrecios = new MenuGrid(*grid_precios);
    const auto conLista = [this](int fila) { return ListaDeFila(fila) != 0; };
    const auto conHistorial = [this](int fila) { return ListaDeFila(fila) != 0 && HayHistorial(); };
    menuPrecios->Agregar(
        QStringLiteral("Copiar tarifa…"), QKeySequence(Qt::CTRL | Qt::Key_D),
        [this] { mnuCopiarTarifa_Click(); }, conLista);
    menuPrecios->Agregar(
        QStringLiteral("Cambiar precios…"), QKeySequence(Qt::CTRL | Qt::Key_M),
        [this] { mnuCambiarPrecios_Click(); }, conLista);
    menuPrecios->Agregar(
        QStringLiteral("Historial de precios…"), QKeySequence(Qt::CTRL | Qt::Key_H),
        [this] { mnuHistorial_Click(); }, conHistorial);
    menuPrecios->Agregar(
        QStringLiteral("Exportar…"), QKeySequence(Qt::CTRL | Qt::Key_E),
        [this] { mnuExportar_Click(); }, conLista);
    menuPrecios->Agregar(
        QStringLiteral("Importar…"), QKeySequence(Qt::CTRL | Qt::Key_I),
        [this] { mnuImportar_Click(); }, conLista);
    menuPrecios->Agregar(
        QStringLiteral("Imprimir…"), QKeySequence(Qt::CTRL | Qt::Key_P),
        [this] { mnuImprimir_Click(); }, conLista);
}

qint32 FrmListas::ListaDeFila(int fila) const {
    if (fila <= 0 || fila >= grid_precios->Rows())
        return 0;
    bool esCodigo = false;
    const qint32 codigo = grid_precios->TextMatrix(fila, ColListas::Codigo).toInt(&esCodigo);
    return esCodigo ? codigo : 0;
}

void FrmListas::mnuCopiarTarifa_Click() {
    const int fila = grid_precios->Row();
    const qint32 origen = ListaDeFila(fila);
    if (origen == 0)
        return;
    DlgCopiarTarifa dialogo(ContextoSesion(), origen,
                            grid_precios->TextMatrix(fila, ColListas::Nombre), ventana());
    if (dialogo.exec() != QDialog::Accepted || !dialogo.Resultado())
        return;
    // The engine's unit is over: the operator may be told now.
    AvisarSinHistorial();
    const ResultadoCopia &copia = *dialogo.Resultado();
    cargarGridPrecios();
    if (!copia.origenExiste) {
        MsgBoxInformacion(copia.mensaje);
        return;
    }
    // The copy is listed, and opens in the editor as a new list does.
    const QString codigo = QString::number(copia.nueva);
    for (int f = 1; f < grid_precios->Rows(); ++f)
        if (grid_precios->TextMatrix(f, ColListas::Codigo) == codigo)
            grid_precios->setRow(f);
    lblCodigo->setCaption(codigo);
    VerDetalles(dialogo.Nombre(), dialogo.Desde(), dialogo.Hasta());
}

void FrmListas::mnuCambiarPrecios_Click() {
    const int fila = grid_precios->Row();
    const qint32 lista = ListaDeFila(fila);
    if (lista == 0)
        return;
    DlgCambiarPrecios dialogo(ContextoSesion(), lista,
                              grid_precios->TextMatrix(fila, ColListas::Nombre), ventana());
    if (dialogo.exec() != QDialog::Accepted || !dialogo.Resultado())
        return;
    AvisarSinHistorial();
    MsgBoxInformacion(dialogo.Resultado()->mensaje);
    cargarGridPrecios(); // a list another terminal deleted meanwhile goes from the grid
}

void FrmListas::mnuHistorial_Click() {
    const int fila = grid_precios->Row();
    const qint32 lista = ListaDeFila(fila);
    if (lista == 0)
        return;
    DlgHistorial dialogo(ContextoSesion(), lista, grid_precios->TextMatrix(fila, ColListas::Nombre),
                         ventana());
    dialogo.exec();
    if (dialogo.HuboCambios())
        AvisarSinHistorial();
    cargarGridPrecios();
}
