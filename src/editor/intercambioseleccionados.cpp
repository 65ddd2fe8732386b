// The editor's items of prices in and out of the open list: Exportar, Importar (the list's
// prices listed again after it), Imprimir.
#include "frmtarifas.h"

#include "dialogos/sesionmotor.h"
#include "intercambioui/intercambioui.h"

using namespace Pantalla;

namespace {

/// The open list: the editor's own lblCodigo, as for every write of the editor; 0 when none.
qint32 ListaAbierta(const Label &codigo) {
    bool esLista = false;
    const qint32 lista = codigo.Caption().toInt(&esLista);
    return esLista ? lista : 0;
}

} // namespace

void FrmTarifas::mnuExportar_Click() {
    if (const qint32 lista = ListaAbierta(*lblCodigo))
        DialogoExportar(ContextoSesion(), lista, Label5->Caption(), ventana());
}

void FrmTarifas::mnuImportar_Click() {
    const qint32 lista = ListaAbierta(*lblCodigo);
    if (lista == 0 || !DialogoImportar(ContextoSesion(), lista, Label5->Caption(), ventana()))
        return;
    AvisarSinHistorial();
    RelistarSeleccionados();
}

void FrmTarifas::mnuImprimir_Click() {
    if (const qint32 lista = ListaAbierta(*lblCodigo))
        DialogoImprimir(ContextoSesion(), lista, QString(), ventana());
}
