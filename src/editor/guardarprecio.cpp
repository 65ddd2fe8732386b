// Saving the panel's price: the old price of the product (or of the variant) in the open list
// gives way to the new one, in the database and in grid_Pseleccionados.
#include "frmtarifas.h"

#include "codigo.h"
#include "columnas.h"
#include "dialogos/sesionmotor.h"

#include "motor/historial.h"
#include "platform/datos/transaccion.h"
#include "platform/ui/controles.h"
#include "platform/ui/mensajes.h"
#include "session/sesionsuite.h"
#include "suite/datos/svcregistros.h"

#include <limits>

using namespace Pantalla;

namespace {

const QString Tabla = QStringLiteral("detalle_precio");

/// The delete of the old row and the insert of the new one, as one unit. A field list the
/// record writer can't read (a typing slip in the price) is told to the operator before the
/// unit starts, so nothing is written: the answer is false, as when the list is gone.
bool Grabar(FrmTarifas &f, const Criterio &criterio, const QString &campos) {
    SvcRegistros registros;
    const QString motivo = registros.ComprobarCampos(Tabla, campos);
    if (!motivo.isEmpty()) {
        MsgBoxInformacion(QStringLiteral("El precio \"%1\" no se puede guardar: escriba un número, "
                                         "con una coma o un punto decimal si hace falta.\n\n%2")
                              .arg(f.txt_NuevoPrecio->Text(), motivo));
        return false;
    }
    ADODB::Connection &conexion = *SesionSuite.Conexion;
    for (;;) {
        bool viva = false;
        bool escrito = false;
        std::optional<QString> guardado;
        {
            ADODB::Transaccion unidad(conexion);
            viva = f.ListaSigueViva();
            // Another terminal may have changed this price since the panel opened: that is
            // decided here, and asked once the unit has ended.
            if (viva) {
                guardado = f.PrecioGuardado(criterio);
                if (MismoPrecio(guardado, f.estado.precioMostrado)) {
                    // The price's history, in the same unit and before the old row goes.
                    RegistrarPrecio(ContextoSesion(), f.lblCodigo->Caption().toInt(),
                                    f.lblCodProducto->Caption().toInt(),
                                    ModoTallaColor() ? f.lblCodProdTextil->Caption() : QString(),
                                    f.txt_NuevoPrecio->Text());
                    registros.BorrarRegistro(conexion, Tabla, SesionSuite.nombretienda,
                                             SesionSuite.multitienda, criterio);
                    registros.InsertarRegistro(conexion, Tabla, campos, SesionSuite.nombretienda,
                                               SesionSuite.multitienda, QString());
                    unidad.Commit();
                    f.estado.precioMostrado = f.txt_NuevoPrecio->Text();
                    escrito = true;
                }
            }
        }
        if (escrito) {
            // Said once, at the first save on a database that can't keep the history.
            if (const QString aviso = TomarAvisoHistorial(conexion); !aviso.isEmpty())
                MsgBoxInformacion(aviso);
            return true;
        }
        // Told once the unit has ended, never while it holds the list.
        if (!viva) {
            f.ListaYaNoExiste(QStringLiteral("No se ha guardado nada."));
            return false;
        }
        // Yes: a new unit, which checks again against the price the question named.
        if (!f.ConfirmarPrecioAjeno(guardado))
            return false;
    }
}

/// The product in the panel has a code (a click on an empty row opens nothing, yet the
/// labels start from their design texts).
bool HayProducto(FrmTarifas &f) {
    const std::optional<qint64> codigo = CodigoDeTexto(f.lblCodProducto->Caption());
    if (!codigo || !CodigoDeTexto(f.lblCodigo->Caption())) {
        MsgBoxInformacion(QStringLiteral("Elija primero un producto de la lista."));
        return false;
    }
    // A list keeps a product's code in a 32-bit column: a catalogue that numbers beyond it
    // (possible in a file the suite's other programs filled) can't be priced in a list, and
    // that is the code's fault, not the typed price's.
    if (*codigo < std::numeric_limits<qint32>::min() ||
        *codigo > std::numeric_limits<qint32>::max()) {
        MsgBoxInformacion(
            QStringLiteral("\"%1\" no se puede poner en una tarifa: su código interno, %2, está "
                           "fuera del margen de códigos que guarda una tarifa (de %3 a %4). "
                           "No se ha guardado nada.")
                .arg(f.lblNomProd->Caption(), f.lblCodProducto->Caption())
                .arg(std::numeric_limits<qint32>::min())
                .arg(std::numeric_limits<qint32>::max()));
        return false;
    }
    return true;
}

} // namespace

bool FrmTarifas::GuardarProducto() {
    if (txt_NuevoPrecio->Text().isEmpty())
        return true;
    if (!GuardarBDProd())
        return false;
    AñadirGridProd();
    return true;
}

bool FrmTarifas::GuardarProducto_textil() {
    if (txt_NuevoPrecio->Text().isEmpty())
        return true;
    if (!GuardarBDProd_textil())
        return false;
    AñadirGridProd_textil();
    return true;
}

bool FrmTarifas::GuardarBDProd() {
    if (!HayProducto(*this))
        return false;
    const QString lista = lblCodigo->Caption();
    const QString producto = lblCodProducto->Caption();
    return Grabar(*this,
                  {QStringLiteral("identificador = ? and producto = ?"),
                   {*CodigoDeTexto(lista), *CodigoDeTexto(producto)}},
                  QStringLiteral("identificador=") + lista + QStringLiteral("|producto=") +
                      producto + QStringLiteral("|precio=") + txt_NuevoPrecio->Text() +
                      QStringLiteral("|"));
}

bool FrmTarifas::GuardarBDProd_textil() {
    if (!HayProducto(*this))
        return false;
    const QString lista = lblCodigo->Caption();
    const QString producto = lblCodProducto->Caption();
    const QString variante = lblCodProdTextil->Caption();
    // The record writer separates its fields with "|": a variant code that holds one (a
    // catalogue typed by hand elsewhere) can't be stored, whatever the price.
    if (variante.contains(QLatin1Char('|'))) {
        MsgBoxInformacion(QStringLiteral("La talla y color de código \"%1\" no se puede guardar en "
                                         "una tarifa: su código lleva el carácter \"|\". "
                                         "Corrija el código en el catálogo.")
                              .arg(variante));
        return false;
    }
    return Grabar(*this,
                  {QStringLiteral("identificador = ? and producto = ? and CodProductoTextil = ?"),
                   {*CodigoDeTexto(lista), *CodigoDeTexto(producto), variante}},
                  QStringLiteral("identificador=") + lista + QStringLiteral("|producto=") +
                      producto + QStringLiteral("|precio=") + txt_NuevoPrecio->Text() +
                      QStringLiteral("|CodProductoTextil=") + variante + QStringLiteral("|"));
}

int FrmTarifas::ObtenerFila(const QString &codProd) {
    const Grid &g = *grid_Pseleccionados;
    // The first empty row (the one a new list shows) or the product's own row.
    for (int fila = 1; fila < g.Rows(); ++fila)
        if (g.TextoIgual(fila, ColLlano::Codigo, {}) ||
            g.TextoIgual(fila, ColLlano::Codigo, codProd))
            return fila;
    return g.Rows() + 1;
}

int FrmTarifas::ObtenerFila_textil(const QString &codProd, const QString &codHijo) {
    const Grid &g = *grid_Pseleccionados;
    // The variant must match as well: an empty row whose variant isn't this one (the design
    // row of a new list) is passed over, and the price goes to a new row.
    for (int fila = 1; fila < g.Rows(); ++fila)
        if ((g.TextoIgual(fila, ColTallaColor::Codigo, {}) ||
             g.TextoIgual(fila, ColTallaColor::Codigo, codProd)) &&
            g.TextoIgual(fila, ColTallaColor::CodigoHijo, codHijo))
            return fila;
    return g.Rows() + 1;
}

void FrmTarifas::AñadirGridProd() {
    Grid &g = *grid_Pseleccionados;
    int fila = ObtenerFila(lblCodProducto->Caption());
    if (fila > g.Rows()) {
        g.setRows(g.Rows() + 1);
        fila = g.Rows() - 1;
    }
    g.setTextMatrix(fila, ColLlano::CodigoTienda, lblCodCliente->Caption());
    g.setTextMatrix(fila, ColLlano::Nombre, lblNomProd->Caption());
    g.setTextMatrix(fila, ColLlano::Codigo, lblCodProducto->Caption());
    // As typed: the grid shows the operator's text, not the stored value's form.
    g.setTextMatrix(fila, ColLlano::Precio, txt_NuevoPrecio->Text());
}

void FrmTarifas::AñadirGridProd_textil() {
    Grid &g = *grid_Pseleccionados;
    int fila = ObtenerFila_textil(lblCodProducto->Caption(), lblCodProdTextil->Caption());
    if (fila > g.Rows()) {
        g.setRows(g.Rows() + 1);
        fila = g.Rows() - 1;
    }
    g.setTextMatrix(fila, ColTallaColor::CodigoTienda, lblCodCliente->Caption());
    g.setTextMatrix(fila, ColTallaColor::Nombre, lblNomProd->Caption());
    g.setTextMatrix(fila, ColTallaColor::Codigo, lblCodProducto->Caption());
    g.setTextMatrix(fila, ColTallaColor::CodigoHijo, lblCodProdTextil->Caption());
    g.setTextMatrix(fila, ColTallaColor::Talla, lblTalla->Caption());
    g.setTextMatrix(fila, ColTallaColor::Color, lblColor->Caption());
    g.setTextMatrix(fila, ColTallaColor::Precio, txt_NuevoPrecio->Text());
}
