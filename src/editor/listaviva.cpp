// Several terminals share the suite's database: a write of the editor first makes sure that
// the list it writes to is still there, and holds it until its unit of work ends. When it is
// gone, the unit ends first and the operator is told afterwards: nothing waits on the
// operator while the unit holds the list (on SQLite, the whole file) against the others.
#include "frmtarifas.h"

#include "codigo.h"

#include "platform/datos/recordset.h"
#include "platform/ui/mensajes.h"
#include "session/sesionsuite.h"

using namespace Pantalla;

bool FrmTarifas::ListaSigueViva() {
    ADODB::Connection &conexion = *SesionSuite.Conexion;
    // The editor's own label: after the load the list in hand is the one handed over to it.
    const std::optional<qint64> codigo = CodigoDeTexto(lblCodigo->Caption());
    if (!codigo)
        return false; // no list bears such a code, and it never reaches a statement
    // Held until the unit ends: another terminal's save, period change or delete of this list
    // waits for it (where the unit doesn't already hold the whole database).
    ADODB::Recordset rs;
    rs.Open(conexion.dialecto().BloquearFilas(QStringLiteral(
                "Select identificador from cabecera_precio where identificador = ?")),
            {*codigo}, conexion);
    return rs.RecordCount() > 0;
}

void FrmTarifas::ListaYaNoExiste(const QString &queSeHizo) {
    MsgBoxInformacion(QStringLiteral("La tarifa \"%1\" ya no existe: se ha eliminado desde otro "
                                     "puesto. %2")
                          .arg(Label5->Caption(), queSeHizo));
    Unload();
}
