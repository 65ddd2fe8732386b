// The validity period in the editor's bottom bar: the two date controls, and the buttons that
// store the period shown or put the stored one back.
#include "frmtarifas.h"

#include "codigo.h"

#include "platform/datos/regional.h"
#include "platform/datos/transaccion.h"
#include "session/sesionsuite.h"
#include "suite/datos/svcregistros.h"

using namespace Pantalla;
using namespace Sistema;

namespace {

/// The stored date that `etiqueta` holds, as the control can show it; invalid when the label
/// holds no date (a list stored without one).
QDate FechaGuardada(const Label &etiqueta) {
    return DTPicker::Acotar(TextoAFecha(etiqueta.Caption()));
}

} // namespace

void FrmTarifas::botonesFecha(bool visibles) {
    cmdCancelarFecha->setVisible(visibles);
    cmdAceptarFecha->setVisible(visibles);
}

// A date that differs from the stored one brings both buttons back. One changed back to
// the stored date hides nothing: they stay until Accept or Cancel.
void FrmTarifas::desde_Change() {
    if (lblDesde->Caption() != FechaATexto(desde->Value()))
        botonesFecha(true);
}

void FrmTarifas::hasta_Change() {
    if (lblHasta->Caption() != FechaATexto(hasta->Value()))
        botonesFecha(true);
}

void FrmTarifas::cmdAceptarFecha_Click() {
    cambiarFecha();
    if (!Loaded())
        return; // the list was gone: the editor has closed
    botonesFecha(false);
}

void FrmTarifas::cmdCancelarFecha_Click() {
    // Hidden first: putting the dates back raises their Change, which then finds each
    // control equal to its label.
    botonesFecha(false);
    regresarFechas();
}

void FrmTarifas::cambiarFecha() {
    // Both dates go every time, as regional text, which the record writer reads back as the
    // same day.
    const QString textoDesde = FechaATexto(desde->Value());
    const QString textoHasta = FechaATexto(hasta->Value());
    const QString campos = QStringLiteral("preciovalidodesde=") + textoDesde + QStringLiteral("|") +
                           QStringLiteral("preciovalidohasta=") + textoHasta + QStringLiteral("|");

    ADODB::Connection &conexion = *SesionSuite.Conexion;
    bool viva = false;
    {
        ADODB::Transaccion unidad(conexion);
        // The list's code goes into the criterion only once it is known to be a live list's.
        viva = ListaSigueViva();
        if (viva) {
            SvcRegistros registros;
            registros.ModificarRegistro(
                conexion, QStringLiteral("cabecera_precio"), campos, SesionSuite.nombretienda,
                SesionSuite.multitienda,
                {QStringLiteral("identificador = ?"), {*CodigoDeTexto(lblCodigo->Caption())}});
            unidad.Commit();
        }
    }
    // Told once the unit has ended, never while it holds the list.
    if (!viva)
        return ListaYaNoExiste(QStringLiteral("No se ha guardado nada."));
    lblDesde->setCaption(textoDesde);
    lblHasta->setCaption(textoHasta);
}

void FrmTarifas::regresarFechas() {
    // A label with no date leaves its control as it is: the control always shows a date, and
    // nothing is stored until the operator accepts one.
    const QDate guardadaDesde = FechaGuardada(*lblDesde);
    if (guardadaDesde.isValid())
        desde->setValue(guardadaDesde);
    const QDate guardadaHasta = FechaGuardada(*lblHasta);
    if (guardadaHasta.isValid())
        hasta->setValue(guardadaHasta);
}
