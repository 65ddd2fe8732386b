// Opening the editor on a price list: the double click on the register's grid, and the
// hand-over of the list's code, name and dates.
#include "frmlistas.h"

#include "columnaslistas.h"

#include "editor/frmtarifas.h"
#include "platform/datos/regional.h"
#include "platform/datos/sistema.h"

using namespace Pantalla;
using namespace Sistema;

void FrmListas::grid_precios_DblClick() {
    // A double click that arrives while the editor is open (one queued behind the click that
    // opened it) opens nothing: the open editor is never handed over again from inside itself.
    if (frmTarifas().Loaded())
        return;
    const int fila = grid_precios->Row();
    if (fila <= 0)
        return;
    lblCodigo->setCaption(grid_precios->TextMatrix(fila, ColListas::Codigo));
    const QString nombre = grid_precios->TextMatrix(fila, ColListas::Nombre);
    const QDate fdesde = TextoAFecha(grid_precios->TextMatrix(fila, ColListas::Desde));
    const QDate fhasta = TextoAFecha(grid_precios->TextMatrix(fila, ColListas::Hasta));
    VerDetalles(nombre, fdesde, fhasta);
}

void FrmListas::VerDetalles(const QString &Nom, const QDate &fdesde, const QDate &fhasta) {
    FrmTarifas &editor = frmTarifas();
    // The first touch of the editor loads it; its listings read this screen's lblCodigo,
    // which already holds the list's code.
    editor.Load();
    editor.lblCodigo->setCaption(lblCodigo->Caption());
    // A date the control can't show (stored before 1601, or a typo such as year 0026) goes
    // over as the nearer day it can, and the editor takes that day for the stored one: it
    // writes nothing unless the operator accepts a period. A list stored without a date
    // (Null, or a text that is no date) gets an empty label and today in the control.
    const QDate desdeMostrada = DTPicker::Acotar(fdesde);
    const QDate hastaMostrada = DTPicker::Acotar(fhasta);
    // The labels go before the date controls: the editor's date handlers compare each
    // control with its label, so the hand-over itself is no change of period.
    editor.lblDesde->setCaption(FechaATexto(desdeMostrada));
    editor.lblHasta->setCaption(FechaATexto(hastaMostrada));
    editor.Label5->setCaption(Nom);
    editor.desde->setValue(desdeMostrada.isValid() ? desdeMostrada : Hoy());
    editor.hasta->setValue(hastaMostrada.isValid() ? hastaMostrada : Hoy());
    // Straight to the modal show: what the operator did meanwhile runs once the editor shows.
    const QString codigo = lblCodigo->Caption();
    const qint64 version = VersionDatos();
    editor.ShowModal();
    ReleerLista(codigo, version);
}
