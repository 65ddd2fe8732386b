// What other terminals do to the list in hand. The editor follows the database: a price, the
// period, the name or the list itself changed elsewhere shows here within a second or so, with
// no click. And a price that another terminal changed while the operator typed a new one is
// not overwritten unseen: the save asks first, naming both prices.
#include "frmtarifas.h"

#include "columnas.h"

#include "platform/datos/avisocambios.h"
#include "platform/datos/recordset.h"
#include "platform/datos/regional.h"
#include "platform/ui/controles.h"
#include "platform/ui/mensajes.h"
#include "session/sesionsuite.h"
#include "suite/datos/svcregistros.h"

#include <QRegularExpression>
#include <QScopedValueRollback>

using namespace Pantalla;
using namespace Sistema;

namespace {

/// A price as text with a point and without the zeros that say nothing ("12,50" and "12.5"
/// are "12.5", "-0" is "0"), so that the grid's text and the stored value compare exactly;
/// the text itself when it is no number.
QString PrecioCanonico(const QString &texto) {
    static const QRegularExpression forma(
        QStringLiteral("^\\s*([+-]?)0*([0-9]*)(?:[.,]([0-9]*?)0*)?\\s*$"));
    const QRegularExpressionMatch m = forma.match(texto);
    if (!m.hasMatch())
        return texto;
    const QString entera = m.captured(2).isEmpty() ? QStringLiteral("0") : m.captured(2);
    const QString fraccion = m.captured(3);
    const QString numero = fraccion.isEmpty() ? entera : entera + QLatin1Char('.') + fraccion;
    const bool cero = entera == QLatin1String("0") && fraccion.isEmpty();
    return m.captured(1) == QLatin1String("-") && !cero ? QLatin1Char('-') + numero : numero;
}

/// What the question says the screen showed, and what the list holds now.
QString Mostraba(const std::optional<QString> &precio) {
    return precio ? QStringLiteral("esta pantalla mostraba %1").arg(*precio)
                  : QStringLiteral("esta pantalla no le mostraba ninguno");
}
QString Guarda(const std::optional<QString> &precio) {
    return precio ? QStringLiteral("ahora es %1").arg(*precio)
                  : QStringLiteral("ahora no tiene ninguno");
}

} // namespace

bool MismoPrecio(const std::optional<QString> &a, const std::optional<QString> &b) {
    if (!a || !b)
        return !a && !b;
    return PrecioCanonico(*a) == PrecioCanonico(*b);
}

void FrmTarifas::RecordarPrecioMostrado() {
    const Grid &g = *grid_Pseleccionados;
    const bool textil = ModoTallaColor();
    const QString producto = lblCodProducto->Caption();
    const int fila =
        textil ? ObtenerFila_textil(producto, lblCodProdTextil->Caption()) : ObtenerFila(producto);
    // The row found may be the empty one a list without prices shows: no price, then.
    const int colCodigo = textil ? int(ColTallaColor::Codigo) : int(ColLlano::Codigo);
    if (fila < g.Rows() && !producto.isEmpty() && g.TextMatrix(fila, colCodigo) == producto)
        estado.precioMostrado =
            g.TextMatrix(fila, textil ? int(ColTallaColor::Precio) : int(ColLlano::Precio));
    else
        estado.precioMostrado.reset();
}

std::optional<QString> FrmTarifas::PrecioGuardado(const Criterio &criterio) {
    ADODB::Recordset rs;
    rs.Open(QStringLiteral("Select precio from detalle_precio where ") + criterio.texto,
            criterio.valores, *SesionSuite.Conexion);
    std::optional<QString> precio;
    if (rs.RecordCount() > 0)
        precio = rs.Fields(QStringLiteral("precio")).Texto();
    rs.Close();
    return precio;
}

bool FrmTarifas::ConfirmarPrecioAjeno(const std::optional<QString> &guardado) {
    const QString nombre =
        lblNomProd->Caption() +
        (lblTalla->Caption().isEmpty() && lblColor->Caption().isEmpty()
             ? QString()
             : QStringLiteral(" (%1 %2)").arg(lblTalla->Caption(), lblColor->Caption()));
    const QString nuevo = txt_NuevoPrecio->Text();
    const bool si = MsgBoxPregunta(
        QStringLiteral("Otro puesto ha cambiado el precio de \"%1\" en esta tarifa mientras usted "
                       "escribía el suyo: %2, y %3.\n\n¿Guardar su precio, %4%5?")
            .arg(nombre, Mostraba(estado.precioMostrado), Guarda(guardado), nuevo,
                 guardado ? QStringLiteral(", en lugar de ") + *guardado : QString()));
    // Either way the operator has now seen the stored price: the next save compares with it.
    estado.precioMostrado = guardado;
    if (!si && Loaded())
        ListarPreciosDeNuevo();
    return si;
}

void FrmTarifas::ListarPreciosDeNuevo() {
    Grid &g = *grid_Pseleccionados;
    const int arriba = g.TopRow();
    // Back to the design rows first (the titles and one empty row): a list that has lost its
    // last price lists no row, and must not keep the old ones.
    g.setRows(1);
    g.setRows(2);
    if (ModoTallaColor())
        ListarProductosLista_textil();
    else
        ListarProductosLista();
    if (arriba >= 1 && arriba < g.Rows())
        g.setTopRow(arriba);
}

void FrmTarifas::SeguirOtrosPuestos() {
    auto *vigia = new ADODB::VigiaCambios(*SesionSuite.Conexion, ventana());
    // Where the database can't tell of other terminals' commits (behind ODBC), the list's
    // prices are fingerprinted too.
    bool esNumero = false;
    const qlonglong codigo = lblCodigo->Caption().toLongLong(&esNumero);
    if (esNumero)
        vigia->VigilarLista(codigo);
    connect(vigia, &ADODB::VigiaCambios::Cambio, this,
            [this] { Atender([this] { SeguirCambios(); }); });
}

void FrmTarifas::SeguirCambios() {
    if (!Loaded() || siguiendoCambios)
        return;
    const QScopedValueRollback<bool> enCurso(siguiendoCambios, true);
    bool esNumero = false;
    const qlonglong codigo = lblCodigo->Caption().toLongLong(&esNumero);
    if (!esNumero)
        return;
    ADODB::Recordset rs;
    rs.Open(QStringLiteral("Select descripcion,preciovalidodesde,preciovalidohasta from "
                           "cabecera_precio where identificador = ?"),
            {codigo}, *SesionSuite.Conexion);
    if (rs.RecordCount() == 0) {
        rs.Close();
        // Nothing is open on the connection: the editor goes, then the operator is told.
        const QString nombre = Label5->Caption();
        Unload();
        MsgBoxInformacion(QStringLiteral("La tarifa \"%1\" se ha eliminado desde otro puesto: "
                                         "se cierra su ventana.")
                              .arg(nombre));
        return;
    }
    const QString nombre = rs.Fields(QStringLiteral("descripcion")).Texto();
    const QDate guardadaDesde =
        DTPicker::Acotar(rs.Fields(QStringLiteral("preciovalidodesde")).Value().toDate());
    const QDate guardadaHasta =
        DTPicker::Acotar(rs.Fields(QStringLiteral("preciovalidohasta")).Value().toDate());
    rs.Close();

    Label5->setCaption(nombre);
    // The stored period becomes the one Cancel puts back. The date controls show it unless
    // the operator is changing them (they show other dates than the stored ones), whose
    // dates then stay as typed. The labels go first, so the controls' Change finds them equal.
    const bool cambiandoPeriodo = FechaATexto(desde->Value()) != lblDesde->Caption() ||
                                  FechaATexto(hasta->Value()) != lblHasta->Caption();
    lblDesde->setCaption(FechaATexto(guardadaDesde));
    lblHasta->setCaption(FechaATexto(guardadaHasta));
    if (!cambiandoPeriodo) {
        if (guardadaDesde.isValid())
            desde->setValue(guardadaDesde);
        if (guardadaHasta.isValid())
            hasta->setValue(guardadaHasta);
    }
    ListarPreciosDeNuevo();
}
