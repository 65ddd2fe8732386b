// Taking one product (or one size and colour) out of the open list: its price row goes from
// detalle_precio and from grid_Pseleccionados; the catalogue is untouched.
#include "frmtarifas.h"

#include "columnas.h"

#include "platform/datos/recordset.h"
#include "platform/datos/transaccion.h"
#include "platform/ui/mensajes.h"
#include "session/sesionsuite.h"
#include "suite/datos/svcregistros.h"

#include <QSqlDriver>

namespace {

/// The product of a row as the question names it: its name, and its size and colour when the
/// row has them.
QString NombreDeFila(const Grid &g, int fila, bool textil) {
    const QString nombre =
        QStringLiteral("«") + g.TextMatrix(fila, ColLlano::Nombre) + QStringLiteral("»");
    if (!textil)
        return nombre;
    const QString talla = g.TextMatrix(fila, ColTallaColor::Talla);
    const QString color = g.TextMatrix(fila, ColTallaColor::Color);
    if (talla.isEmpty() && color.isEmpty())
        return nombre;
    return nombre + QStringLiteral(" (talla ") + talla + QStringLiteral(", color ") + color +
           QLatin1Char(')');
}

/// A text between apostrophes for the record writer's criterion, an apostrophe doubled.
QString Literal(QString texto) {
    return QLatin1Char('\'') + texto.replace(QLatin1Char('\''), QStringLiteral("''")) +
           QLatin1Char('\'');
}

/// Inside the unit: true when list `lista` still exists, and then it stays locked against the
/// other terminals' writes until the unit ends (on SQLite the unit holds the write lock).
bool Existe(ADODB::Connection &conexion, qint64 lista) {
    const bool servidor = conexion.dialecto().Producto() == QSqlDriver::PostgreSQL;
    ADODB::Recordset rs;
    rs.Open(QStringLiteral("select identificador from cabecera_precio where identificador = ?") +
                (servidor ? QStringLiteral(" for update") : QString()),
            {lista}, conexion);
    const bool existe = rs.RecordCount() > 0;
    rs.Close();
    return existe;
}

} // namespace

void FrmTarifas::mnuQuitar_Click() {
    Grid &grid = *grid_Pseleccionados;
    const int fila = grid.Row();
    if (fila <= 0 || fila >= grid.Rows())
        return;
    const bool textil = ModoTallaColor();
    bool numeros = false;
    const qint64 lista = lblCodigo->Caption().toLongLong(&numeros);
    bool esCodigo = false;
    const qint64 producto = grid.TextMatrix(fila, ColLlano::Codigo).toLongLong(&esCodigo);
    if (!numeros || !esCodigo)
        return; // the empty row of a list without prices: nothing to take out
    // Null where the row was saved in the plain mode; the grid shows it as "".
    const QString variante = textil ? grid.TextMatrix(fila, ColTallaColor::CodigoHijo) : QString();

    if (!MsgBoxPregunta(QStringLiteral("¿Quitar ") + NombreDeFila(grid, fila, textil) +
                            QStringLiteral(" de la tarifa «") + Label5->Caption() +
                            QStringLiteral("»?"),
                        QStringLiteral("Quitar de la tarifa")))
        return;

    // The plain mode takes out every row of the product, as its save replaces them all; the
    // size-and-colour mode only the row of that variant.
    QString criterio = QStringLiteral("identificador=") + QString::number(lista) +
                       QStringLiteral(" and producto=") + QString::number(producto);
    if (textil)
        criterio += variante.isEmpty()
                        ? QStringLiteral(" and (CodProductoTextil is null or CodProductoTextil='')")
                        : QStringLiteral(" and CodProductoTextil=") + Literal(variante);
    ADODB::Connection &conexion = *SesionSuite.Conexion;
    bool existe = false;
    {
        ADODB::Transaccion unidad(conexion);
        existe = Existe(conexion, lista);
        if (existe) {
            SvcRegistros().BorrarRegistro(conexion, QStringLiteral("detalle_precio"),
                                          SesionSuite.nombretienda, SesionSuite.multitienda,
                                          criterio);
            unidad.Commit();
        }
    }
    // The unit has ended: only now is the operator told anything.
    if (!existe) {
        MsgBoxInformacion(QStringLiteral("La tarifa \"%1\" ya no existe: se ha eliminado desde "
                                         "otro puesto. No se ha guardado nada.")
                              .arg(Label5->Caption()));
        Unload();
        return;
    }
    RelistarSeleccionados();
}
