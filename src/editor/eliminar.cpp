// Deleting the open price list: its header, its prices and the relations that apply it.
#include "frmtarifas.h"

#include "dialogos/sesionmotor.h"
#include "motor/historial.h"
#include "platform/datos/transaccion.h"
#include "platform/ui/mensajes.h"
#include "session/sesionsuite.h"
#include "suite/datos/svcregistros.h"

void FrmTarifas::cmdEliminar_Click() {
    // The plain Yes/No box, Yes the default, with no icon.
    if (!MsgBoxPregunta(QStringLiteral("¿Desea eliminar la tarifa ") + Label5->Caption() +
                            QStringLiteral("?"),
                        QStringLiteral("Eliminar Tarifa"), IconoPregunta::Ninguno))
        return;

    ADODB::Connection &conexion = *SesionSuite.Conexion;
    const QString lista = lblCodigo->Caption();
    {
        // The three deletes are one unit: a refusal of any leaves the list whole, and the
        // error report shows the database's text.
        ADODB::Transaccion unidad(conexion);
        if (!ListaSigueViva())
            return; // deleted by another terminal: the editor has closed
        RegistrarBorradoLista(ContextoSesion(), lista.toInt(), Label5->Caption());
        SvcRegistros registros;
        registros.BorrarRegistro(conexion, QStringLiteral("cabecera_precio"),
                                 SesionSuite.nombretienda, SesionSuite.multitienda,
                                 QStringLiteral("identificador=") + lista);
        registros.BorrarRegistro(conexion, QStringLiteral("detalle_precio"),
                                 SesionSuite.nombretienda, SesionSuite.multitienda,
                                 QStringLiteral("identificador=") + lista);
        // Only the relations that apply this list; other kinds of relation may carry the same
        // number in datoN.
        registros.BorrarRegistro(conexion, QStringLiteral("relaciones_fijas"),
                                 SesionSuite.nombretienda, SesionSuite.multitienda,
                                 QStringLiteral("indice='TarifaAplicada' and datoN = ") + lista);
        unidad.Commit();
    }
    // The register lists what remains once this modal show returns.
    Unload();
}
