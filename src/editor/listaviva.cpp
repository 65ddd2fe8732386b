// Several terminals share the suite's database: a write of the editor first makes sure that
// the list it writes to is still there, and holds it until its unit of work ends.
#include "frmtarifas.h"

#include "codigo.h"

#include "platform/datos/recordset.h"
#include "platform/ui/mensajes.h"
#include "session/sesionsuite.h"

#include <QSqlDriver>

bool FrmTarifas::ListaSigueViva() {
    ADODB::Connection &conexion = *SesionSuite.Conexion;
    // The editor's own label: after the load the list in hand is the one handed over to it.
    const QString lista = lblCodigo->Caption();
    bool viva = false;
    const std::optional<qint64> codigo = CodigoDeTexto(lista);
    if (codigo) {
        // On a server another terminal's save, period change or delete of this list waits on
        // the header's row until this unit ends. SQLite has no row locks: the unit already
        // holds the whole database's write lock (begin immediate).
        const bool servidor = conexion.dialecto().Producto() == QSqlDriver::PostgreSQL;
        ADODB::Recordset rs;
        rs.Open(
            QStringLiteral("Select identificador from cabecera_precio where identificador = ?") +
                (servidor ? QStringLiteral(" for update") : QString()),
            {*codigo}, conexion);
        viva = rs.RecordCount() > 0;
        rs.Close();
    }
    if (!viva) {
        MsgBoxInformacion(QStringLiteral("La tarifa \"%1\" ya no existe: se ha eliminado desde "
                                         "otro puesto. No se ha guardado nada.")
                              .arg(Label5->Caption()));
        Unload();
    }
    return viva;
}
