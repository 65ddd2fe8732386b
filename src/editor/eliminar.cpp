// Deleting the open price list: its header, its prices and the relations that apply it.
#include "frmtarifas.h"

#include "codigo.h"

#include "dialogos/sesionmotor.h"
#include "motor/historial.h"
#include "platform/datos/transaccion.h"
#include "platform/ui/mensajes.h"
#include "session/sesionsuite.h"
#include "suite/datos/svcregistros.h"

using namespace Pantalla;

void FrmTarifas::cmdEliminar_Click() {
    // The plain Yes/No box, Yes the default, with no icon.
    if (!MsgBoxPregunta(QStringLiteral("¿Desea eliminar la tarifa ") + Label5->Caption() +
                            QStringLiteral("?"),
                        QStringLiteral("Eliminar Tarifa"), IconoPregunta::Ninguno))
        return;

    ADODB::Connection &conexion = *SesionSuite.Conexion;
    const QString lista = lblCodigo->Caption();
    const std::optional<qint64> codigoLista = CodigoDeTexto(lista);
    const bool esNumero = codigoLista.has_value();
    bool viva = false;
    if (esNumero) {
        // The three deletes are one unit: a refusal of any leaves the list whole, and the
        // error report shows the database's text. A list that another terminal deleted
        // meanwhile may have left prices or relations behind (a program of the suite that
        // deletes only the header): they go too, in the same unit.
        ADODB::Transaccion unidad(conexion);
        viva = ListaSigueViva();
        // The prices that go are the list's history, in the same unit.
        RegistrarBorradoLista(ContextoSesion(), static_cast<qint32>(*codigoLista),
                              Label5->Caption());
        SvcRegistros registros;
        const QVariantList codigo{*codigoLista};
        registros.BorrarRegistro(conexion, QStringLiteral("cabecera_precio"),
                                 SesionSuite.nombretienda, SesionSuite.multitienda,
                                 {QStringLiteral("identificador = ?"), codigo});
        registros.BorrarRegistro(conexion, QStringLiteral("detalle_precio"),
                                 SesionSuite.nombretienda, SesionSuite.multitienda,
                                 {QStringLiteral("identificador = ?"), codigo});
        // Only the relations that apply this list; other kinds of relation may carry the same
        // number in datoN.
        registros.BorrarRegistro(
            conexion, QStringLiteral("relaciones_fijas"), SesionSuite.nombretienda,
            SesionSuite.multitienda,
            {QStringLiteral("indice = 'TarifaAplicada' and datoN = ?"), codigo});
        unidad.Commit();
    }
    // Told once the unit has ended, never while it holds the list.
    if (!viva)
        return ListaYaNoExiste(esNumero ? QStringLiteral("No queda nada de ella: se ha borrado "
                                                         "también lo que quedaba (sus precios y "
                                                         "las relaciones que la aplicaban).")
                                        : QStringLiteral("No se ha borrado nada."));
    // The register lists what remains once this modal show returns.
    Unload();
}
