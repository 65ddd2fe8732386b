// The products that have a price in the open list, in either mode, and the size and colour
// of a stored variant.
#include "frmtarifas.h"

#include "codigo.h"
#include "columnas.h"
#include "listado.h"

#include "intercambio/preciosdelista.h"

#include <cmath>

using namespace Pantalla;

namespace {

/// A stored parent code as the database compares it with a whole number: a whole value
/// matches, anything else (a fraction, a text that isn't a number) matches no code.
bool CodigoGuardado(const QVariant &valor, qint64 &codigo) {
    switch (valor.typeId()) {
    case QMetaType::LongLong:
    case QMetaType::Int:
        codigo = valor.toLongLong();
        return true;
    case QMetaType::Double: {
        const double d = valor.toDouble();
        if (!std::isfinite(d) || std::trunc(d) != d || std::fabs(d) > 9e18)
            return false;
        codigo = qint64(d);
        return true;
    }
    case QMetaType::QString: {
        const std::optional<qint64> leido = CodigoDeTexto(valor.toString().trimmed());
        codigo = leido.value_or(0);
        return leido.has_value();
    }
    default:
        return false;
    }
}

/// The variants with their size and colour: a variant whose size or colour has no row is
/// left out, so it counts as not found.
const QString consultaVariantes = QStringLiteral(
    "Select productostextil.*,tallas.descripcioncorta as descTalla,colorestextil.nombre "
    "as desccolor  from tallas,colorestextil,productostextil where tallas.codigo = "
    "productostextil.talla and colorestextil.codigo = productostextil.color and ");
/// The same variants, for a whole list at once: only the columns the answers need.
const QString consultaVariantesDeLista =
    QStringLiteral("Select productostextil.codigopadre,productostextil.codigohijo,"
                   "productostextil.codcliente,tallas.descripcioncorta as descTalla,"
                   "colorestextil.nombre as desccolor from tallas,colorestextil,productostextil "
                   "where tallas.codigo = productostextil.talla and colorestextil.codigo = "
                   "productostextil.color and productostextil.codigopadre in (select producto "
                   "from detalle_precio where identificador = ");

} // namespace

void FrmTarifas::ListarProductosLista() {
    const QString lista = CodigoListaAbierta();
    if (lista.isEmpty())
        return; // no list bears such a code: the grid keeps its design rows
    // With no price the grid keeps its design rows: the titles and one empty row, which the
    // first price saved takes.
    Grid &grid = *grid_Pseleccionados;
    // The same statement an export reads: the grid's order and the file's are one.
    ListarEnGrid(grid, SentenciaPreciosLista(lista), [&grid](ADODB::Recordset &rs) {
        return [&grid, codigocliente = rs.Fields(QStringLiteral("codigocliente")),
                nombre = rs.Fields(QStringLiteral("nombre")),
                codigo = rs.Fields(QStringLiteral("codigo")),
                precio = rs.Fields(QStringLiteral("precio"))](int fila) {
            grid.setTextMatrix(fila, ColLlano::CodigoTienda, codigocliente.Texto());
            grid.setTextMatrix(fila, ColLlano::Nombre, nombre.Texto());
            grid.setTextMatrix(fila, ColLlano::Codigo, codigo.Texto());
            // The price of this list, never the product's standard one.
            grid.setTextMatrix(fila, ColLlano::Precio, precio.Texto());
        };
    });
}

void FrmTarifas::ListarProductosLista_textil() {
    const QString lista = CodigoListaAbierta();
    if (lista.isEmpty())
        return; // no list bears such a code: the grid keeps its design rows
    // For the length of this listing obtenerTallaYColor answers from one read of the list's
    // variants; it goes however the listing ends. The read comes first: while the listing's
    // rows stream in, its connection serves no other statement.
    variantesDeLista.emplace();
    variantesDeLista->lista = lista;
    struct AlTerminar {
        std::optional<VariantesDeLista> &variantes;
        ~AlTerminar() { variantes.reset(); }
    } alTerminar{variantesDeLista};
    leerVariantesDeLista(*variantesDeLista);
    Grid &grid = *grid_Pseleccionados;
    ListarEnGrid(grid, SentenciaPreciosLista_textil(lista), [this, &grid](ADODB::Recordset &rs) {
        return [this, &grid, producto = rs.Fields(QStringLiteral("producto")),
                codproductotextil = rs.Fields(QStringLiteral("codproductotextil")),
                nombre = rs.Fields(QStringLiteral("nombre")),
                codigocliente = rs.Fields(QStringLiteral("codigocliente")),
                precio = rs.Fields(QStringLiteral("precio"))](int fila) {
            // Null where the row was saved in the plain mode: it is looked for as "", and
            // like "-1" (a product without variants) it finds no ordinary variant, so no
            // size or colour shows.
            const QString codHijo =
                codproductotextil.EsNulo() ? QString() : codproductotextil.Texto();
            QString codProd = producto.Texto();
            QString color, codCliente;
            QString talla = obtenerTallaYColor(codProd, codHijo, color, codCliente);
            grid.setTextMatrix(fila, ColTallaColor::CodigoTienda,
                               codCliente.isEmpty() ? codigocliente.Texto()
                                                    : std::move(codCliente));
            grid.setTextMatrix(fila, ColTallaColor::Nombre, nombre.Texto());
            grid.setTextMatrix(fila, ColTallaColor::Codigo, std::move(codProd));
            grid.setTextMatrix(fila, ColTallaColor::CodigoHijo, codHijo);
            grid.setTextMatrix(fila, ColTallaColor::Talla, std::move(talla));
            grid.setTextMatrix(fila, ColTallaColor::Color, std::move(color));
            grid.setTextMatrix(fila, ColTallaColor::Precio, precio.Texto());
        };
    });
}

QString FrmTarifas::obtenerTallaYColor(const QString &codProd, const QString &codHijo,
                                       QString &color, QString &codCliente) {
    QString talla;
    color.clear();
    codCliente.clear();
    // A product's code is a number: no variant belongs to any other text.
    const std::optional<qint64> codigoPadre = CodigoDeTexto(codProd);
    if (!codigoPadre)
        return talla;
    const qint64 padre = *codigoPadre;

    if (variantesDeLista) {
        const auto v = variantesDeLista->porCodigo.constFind({padre, codHijo});
        if (v != variantesDeLista->porCodigo.cend()) {
            talla = v->talla;
            color = v->color;
            codCliente = v->codCliente;
        }
        return talla;
    }

    // Both codes are bound: a variant's code holding an apostrophe stays one character.
    // An empty code is compared as the empty text, not as Null.
    const QString hijo = codHijo.isNull() ? QStringLiteral("") : codHijo;
    ADODB::Recordset rs;
    rs.Open(consultaVariantes +
                QStringLiteral("productostextil.codigopadre= ? and productostextil.codigohijo= ?"),
            {padre, hijo}, *SesionSuite.Conexion, ADODB::adOpenStatic, ADODB::adLockOptimistic,
            ADODB::adCmdUnspecified);
    if (rs.RecordCount() > 0) {
        // The first record answers; any further one is ignored.
        talla = rs.Fields(QStringLiteral("desctalla")).Texto();
        color = rs.Fields(QStringLiteral("desccolor")).Texto();
        codCliente = rs.Fields(QStringLiteral("codCliente")).Texto();
    }
    rs.Close();
    return talla;
}

void FrmTarifas::leerVariantesDeLista(VariantesDeLista &variantes) {
    // The same variants obtenerTallaYColor looks for one at a time, for every product that
    // has a price in the list, in one query.
    ADODB::Recordset rs;
    rs.Open(consultaVariantesDeLista + variantes.lista + QStringLiteral(")"), *SesionSuite.Conexion,
            ADODB::adOpenStatic, ADODB::adLockOptimistic, ADODB::adCmdUnspecified);
    if (rs.RecordCount() > 0) {
        const ADODB::Field codigopadre = rs.Fields(QStringLiteral("codigopadre"));
        const ADODB::Field codigohijo = rs.Fields(QStringLiteral("codigohijo"));
        const ADODB::Field desctalla = rs.Fields(QStringLiteral("desctalla"));
        const ADODB::Field desccolor = rs.Fields(QStringLiteral("desccolor"));
        const ADODB::Field codcliente = rs.Fields(QStringLiteral("codCliente"));
        variantes.porCodigo.reserve(rs.RecordCount());
        while (!rs.Eof()) {
            qint64 padre = 0;
            // A Null variant code equals nothing; the first record of a code answers for it,
            // as the one-variant query takes its first record.
            if (!codigohijo.EsNulo() && CodigoGuardado(codigopadre.Value(), padre)) {
                const auto clave = std::make_pair(padre, codigohijo.Texto());
                if (variantes.porCodigo.find(clave) == variantes.porCodigo.end())
                    variantes.porCodigo.insert(
                        clave, {desctalla.Texto(), desccolor.Texto(), codcliente.Texto()});
            }
            rs.MoveNext();
        }
    }
    rs.Close();
}
