// Which price list the editor is on, while it loads.
#include "frmtarifas.h"

#include "codigo.h"

using namespace Pantalla;

QString FrmTarifas::CodigoListaAbierta() {
    // The register writes the code into its own label before it touches the editor, and the
    // editor's label gets it only after the load: the listings read the register's.
    const Form *registro = Form::Buscar(QStringLiteral("frmListas"));
    if (!registro)
        return {};
    const QString codigo = registro->control<Label>(QStringLiteral("lblCodigo"))->Caption();
    // The code goes into the statements as it stands: only a whole number may, and no list
    // has any other code.
    return CodigoDeTexto(codigo) ? codigo : QString();
}
