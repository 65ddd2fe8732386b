// The register's items of prices in and out of a list: Exportar, Importar, Imprimir, each on
// the list of the grid's current row.
#include "frmlistas.h"

#include "columnaslistas.h"

#include "dialogos/sesionmotor.h"
#include "intercambioui/intercambioui.h"

void FrmListas::mnuExportar_Click() {
    const int fila = grid_precios->Row();
    if (const qint32 lista = ListaDeFila(fila))
        DialogoExportar(ContextoSesion(), lista, grid_precios->TextMatrix(fila, ColListas::Nombre),
                        ventana());
}

void FrmListas::mnuImportar_Click() {
    const int fila = grid_precios->Row();
    const qint32 lista = ListaDeFila(fila);
    if (lista == 0)
        return;
    if (DialogoImportar(ContextoSesion(), lista, grid_precios->TextMatrix(fila, ColListas::Nombre),
                        ventana()))
        AvisarSinHistorial();
    cargarGridPrecios(); // a list another terminal deleted meanwhile goes from the grid
}

void FrmListas::mnuImprimir_Click() {
    if (const qint32 lista = ListaDeFila(grid_precios->Row()))
        DialogoImprimir(ContextoSesion(), lista, QString(), ventana());
}
