// The new-list panel: Nueva Tarifa opens it below the grid, Aceptar stores the list and opens
// the editor on it, Cancelar closes it and stores nothing.
#include "frmlistas.h"

#include "motor/datoslista.h"
#include "platform/datos/errorbd.h"
#include "platform/datos/recordset.h"
#include "platform/datos/regional.h"
#include "platform/datos/sistema.h"
#include "platform/ui/mensajes.h"
#include "session/sesionsuite.h"
#include "suite/datos/svcregistros.h"

#include <exception>
#include <limits>

using namespace ADODB;
using namespace Pantalla;
using namespace Sistema;

namespace {

/// How many times Aceptar takes a fresh code when other terminals keep taking the one it
/// tried. Each time means another list was stored in between, so the limit is never met in a
/// shop; it only keeps a database that refuses every code for some other reason from looping.
constexpr int IntentosCodigo = 20;

/// True when a list with this code is stored. A failure to ask counts as false: the caller
/// then reports the insert's own error, which says more.
bool CodigoOcupado(ADODB::Connection &conexion, const QString &codigo) {
    try {
        ADODB::Recordset rs;
        rs.Open(QStringLiteral("select count(*) as n from cabecera_precio where identificador = ?"),
                {codigo.toInt()}, conexion);
        const bool ocupado = rs.RecordCount() > 0 && rs.Fields(QStringLiteral("n")).Entero() > 0;
        rs.Close();
        return ocupado;
    } catch (const ErrorBD &) {
        return false;
    }
}

} // namespace

void FrmListas::cmdNuevo_Click() {
    lblCodigo->setCaption(QString::number(DarNuevoCod()));
    estado.codigoAlta = lblCodigo->Caption();
    LimpiarAlta();
    ModoAlta();
}

void FrmListas::cmdAceptar_Click() {
    if (!GuardarLista())
        return; // refused: the panel stays open, the focus where the check put it
    ModoNavegacion();
    VerDetalles(txtNomLista->Text(), desde->Value(), hasta->Value());
}

void FrmListas::cmdCancelar_Click() {
    ModoNavegacion();
}

qint32 FrmListas::DarNuevoCod() {
    qint64 resultado = 1;
    ADODB::Recordset rs;
    rs.Open(QStringLiteral("select max(identificador) as num from cabecera_precio"),
            *SesionSuite.Conexion, ADODB::adOpenStatic, ADODB::adLockOptimistic, ADODB::adCmdText);
    if (rs.RecordCount() >= 1) {
        const ADODB::Field num = rs.Fields(QStringLiteral("num"));
        resultado = num.EsNulo() ? 0 + 1 : qint64(num.Entero()) + 1;
    }
    rs.Close();
    if (resultado > std::numeric_limits<qint32>::max())
        throw ErrorBD(QStringLiteral("No quedan códigos para una tarifa nueva: la tarifa %1 tiene "
                                     "el código más alto posible. No se ha grabado nada.")
                          .arg(resultado - 1));
    return qint32(resultado);
}

void FrmListas::LimpiarAlta() {
    txtNomLista->setText(QString());
}

void FrmListas::ModoAlta() {
    cmd_Ayuda->setVisible(false);
    cmdSalir->setVisible(false);
    cmdNuevo->setVisible(false);
    frAltaLista->setVisible(true);
    desde->setValue(Hoy());
    hasta->setValue(Hoy().addDays(30));
    txtNomLista->SetFocus();
}

void FrmListas::ModoNavegacion() {
    cmd_Ayuda->setVisible(true);
    cmdSalir->setVisible(true);
    cmdNuevo->setVisible(true);
    frAltaLista->setVisible(false);
}

bool FrmListas::GuardarLista() {
    if (!CompruebaDatos())
        return false;
    GuardarBD();
    cargarGridPrecios();
    return true;
}

bool FrmListas::CompruebaDatos() {
    // The same checks and words as a copy of a list.
    const auto fallo = ComprobarDatosLista(txtNomLista->Text(), desde->Value(), hasta->Value());
    if (!fallo)
        return true;
    MsgBoxInformacion(fallo->mensaje);
    if (fallo->campo == FalloDatosLista::Nombre)
        txtNomLista->SetFocus();
    else
        desde->SetFocus();
    return false;
}

void FrmListas::GuardarBD() {
    // A double click on a row while the panel was open left that list's code in lblCodigo:
    // the new list goes under its own code, never over the one clicked.
    if (!estado.codigoAlta.isEmpty())
        lblCodigo->setCaption(estado.codigoAlta);
    // The code was worked out at cmdNuevo; another terminal may have stored a list under it
    // since. Then the next free code is taken, and the editor opens on that one.
    for (int intento = 1; !InsertarCabecera(lblCodigo->Caption()); ++intento) {
        if (intento == IntentosCodigo)
            throw ErrorBD(
                QStringLiteral("Otros terminales están creando tarifas a la vez y no se ha "
                               "podido dar un código a la nueva. No se ha grabado nada: "
                               "pulse Aceptar otra vez."));
        lblCodigo->setCaption(QString::number(DarNuevoCod()));
        estado.codigoAlta = lblCodigo->Caption();
    }
}

bool FrmListas::InsertarCabecera(const QString &codigo) {
    ADODB::Connection &conexion = *SesionSuite.Conexion;
    // The values go as they stand: the name neither trimmed nor escaped (the writer binds it),
    // the dates in their regional text, fechaalta the day of storing.
    const QString campos = QStringLiteral("identificador=") + codigo + QLatin1Char('|') +
                           QStringLiteral("Descripcion=") + txtNomLista->Text() + QLatin1Char('|') +
                           QStringLiteral("fechaalta=") + FechaATexto(Hoy()) + QLatin1Char('|') +
                           QStringLiteral("preciovalidodesde=") + FechaATexto(desde->Value()) +
                           QLatin1Char('|') + QStringLiteral("preciovalidohasta=") +
                           FechaATexto(hasta->Value()) + QLatin1Char('|');
    try {
        // One row in one statement: it is stored whole or not at all.
        SvcRegistros svcRegistros;
        svcRegistros.InsertarRegistro(conexion, QStringLiteral("cabecera_precio"), campos,
                                      SesionSuite.nombretienda, SesionSuite.multitienda, QString());
        return true;
    } catch (const ErrorBD &) {
        // The database's words for a taken key differ from one product to the next; whether
        // the code is now stored says it plainly. Anything else goes to the error report.
        const std::exception_ptr fallo = std::current_exception();
        if (!CodigoOcupado(conexion, codigo))
            std::rethrow_exception(fallo);
        return false;
    }
}
