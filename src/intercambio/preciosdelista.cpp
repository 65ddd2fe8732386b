// A list's prices as the editor shows them, for whatever takes them out of the program.
#include "preciosdelista.h"

#include "insertarnueva.h"

#include "platform/datos/recordset.h"

#include <QDate>
#include <QHash>

QString SentenciaPreciosLista(const QString &lista) {
    return QStringLiteral("Select productos.codigocliente,productos.nombre,productos.codigo,"
                          "detalle_precio.precio,productos.precio as precioventa from "
                          "productos,detalle_precio where productos.borrar =0 and "
                          "productos.codigo=detalle_precio.producto and "
                          "detalle_precio.identificador = ") +
           lista + QStringLiteral(" order by nombre asc");
}

QString SentenciaPreciosLista_textil(const QString &lista) {
    return QStringLiteral("select producto,codproductotextil,productos.nombre,"
                          "productos.codigocliente,detalle_precio.precio,productos.precio as "
                          "precioventa from detalle_precio,productos where productos.codigo = "
                          "detalle_precio.producto and detalle_precio.identificador = ") +
           lista;
}

std::optional<Importe> ImporteDeValor(const QVariant &valor) {
    switch (valor.typeId()) {
    case QMetaType::Double:
        // Fifteen significant digits give back the decimal text the price was stored from.
        return Importe::Leer(QString::number(valor.toDouble(), 'g', 15));
    case QMetaType::LongLong:
    case QMetaType::Int:
        return Importe::Leer(QString::number(valor.toLongLong()));
    case QMetaType::QString:
    case QMetaType::QByteArray:
        return Importe::Leer(valor.toString());
    default:
        return std::nullopt;
    }
}

namespace {

struct Variante {
    QString codCliente;
    QString talla;
    QString color;
    std::optional<Importe> precio;
};

/// The variants of the products priced in `lista`, by (product, variant code). A size or a
/// colour without its row leaves its word empty; the variant's code and price still count.
QHash<std::pair<qint64, QString>, Variante> VariantesDeLista(ADODB::Connection &conexion,
                                                             const QString &lista) {
    QHash<std::pair<qint64, QString>, Variante> variantes;
    ADODB::Recordset rs;
    rs.Open(QStringLiteral("select productostextil.codigopadre,productostextil.codigohijo,"
                           "productostextil.codcliente,productostextil.precio,"
                           "tallas.descripcioncorta as desctalla,colorestextil.nombre as "
                           "desccolor from productostextil left join tallas on tallas.codigo = "
                           "productostextil.talla left join colorestextil on colorestextil.codigo "
                           "= productostextil.color where productostextil.codigopadre in (select "
                           "producto from detalle_precio where identificador = ") +
                lista + QStringLiteral(")"),
            conexion);
    const ADODB::Field padre = rs.Fields(QStringLiteral("codigopadre"));
    const ADODB::Field hijo = rs.Fields(QStringLiteral("codigohijo"));
    const ADODB::Field codCliente = rs.Fields(QStringLiteral("codcliente"));
    const ADODB::Field precio = rs.Fields(QStringLiteral("precio"));
    const ADODB::Field talla = rs.Fields(QStringLiteral("desctalla"));
    const ADODB::Field color = rs.Fields(QStringLiteral("desccolor"));
    variantes.reserve(rs.RecordCount());
    for (; !rs.Eof(); rs.MoveNext()) {
        if (hijo.EsNulo())
            continue;
        // The first row of a code answers for it, as the editor takes its first.
        InsertarNueva(variantes, std::make_pair(padre.Value().toLongLong(), hijo.Texto()),
                      Variante{codCliente.Texto(), talla.Texto(), color.Texto(),
                               ImporteDeValor(precio.Value())});
    }
    return variantes;
}

} // namespace

int LeerPreciosLista(const ContextoMotor &contexto, qint32 lista,
                     const std::function<void(const FilaPrecio &)> &alFila) {
    ADODB::Connection &conexion = *contexto.conexion;
    const QString codigo = QString::number(lista);
    ADODB::Recordset rs;
    FilaPrecio fila;
    if (!contexto.tallaColor) {
        rs.Open(SentenciaPreciosLista(codigo), conexion);
        const ADODB::Field codigocliente = rs.Fields(QStringLiteral("codigocliente"));
        const ADODB::Field nombre = rs.Fields(QStringLiteral("nombre"));
        const ADODB::Field precio = rs.Fields(QStringLiteral("precio"));
        const ADODB::Field precioventa = rs.Fields(QStringLiteral("precioventa"));
        for (; !rs.Eof(); rs.MoveNext()) {
            fila.codigo = codigocliente.Texto();
            fila.nombre = nombre.Texto();
            fila.precioVenta = ImporteDeValor(precioventa.Value());
            fila.precio = ImporteDeValor(precio.Value());
            alFila(fila);
        }
        return rs.RecordCount();
    }
    const auto variantes = VariantesDeLista(conexion, codigo);
    rs.Open(SentenciaPreciosLista_textil(codigo), conexion);
    const ADODB::Field producto = rs.Fields(QStringLiteral("producto"));
    const ADODB::Field codproductotextil = rs.Fields(QStringLiteral("codproductotextil"));
    const ADODB::Field codigocliente = rs.Fields(QStringLiteral("codigocliente"));
    const ADODB::Field nombre = rs.Fields(QStringLiteral("nombre"));
    const ADODB::Field precio = rs.Fields(QStringLiteral("precio"));
    const ADODB::Field precioventa = rs.Fields(QStringLiteral("precioventa"));
    for (; !rs.Eof(); rs.MoveNext()) {
        fila.codigo = codigocliente.Texto();
        fila.nombre = nombre.Texto();
        fila.precio = ImporteDeValor(precio.Value());
        fila.precioVenta = ImporteDeValor(precioventa.Value());
        fila.variante.clear();
        fila.talla.clear();
        fila.color.clear();
        // A row saved without a variant, or as "-1" (a product that has none), is the
        // product's own.
        if (!codproductotextil.EsNulo()) {
            const auto v =
                variantes.constFind({producto.Value().toLongLong(), codproductotextil.Texto()});
            if (v != variantes.cend()) {
                fila.variante = v->codCliente;
                fila.talla = v->talla;
                fila.color = v->color;
                if (v->precio)
                    fila.precioVenta = v->precio;
            }
        }
        alFila(fila);
    }
    return rs.RecordCount();
}

std::optional<qint32> BuscarLista(ADODB::Connection &conexion, const QString &texto) {
    bool esNumero = false;
    const qint64 codigo = texto.trimmed().toLongLong(&esNumero);
    ADODB::Recordset rs;
    if (esNumero && codigo >= std::numeric_limits<qint32>::min() &&
        codigo <= std::numeric_limits<qint32>::max()) {
        rs.Open(QStringLiteral("select identificador from cabecera_precio where identificador "
                               "= ?"),
                {codigo}, conexion);
        if (rs.RecordCount() > 0)
            return rs.Fields(0).Entero();
        rs.Close();
    }
    rs.Open(QStringLiteral("select identificador from cabecera_precio where descripcion = ? "
                           "order by identificador"),
            {texto}, conexion);
    if (rs.RecordCount() > 0)
        return rs.Fields(0).Entero();
    return std::nullopt;
}

std::optional<CabeceraLista> LeerCabeceraLista(ADODB::Connection &conexion, qint32 lista) {
    ADODB::Recordset rs;
    rs.Open(QStringLiteral("select identificador,descripcion,preciovalidodesde,preciovalidohasta "
                           "from cabecera_precio where identificador = ?"),
            {lista}, conexion);
    if (rs.RecordCount() == 0)
        return std::nullopt;
    CabeceraLista cabecera;
    cabecera.codigo = lista;
    cabecera.nombre = rs.Fields(QStringLiteral("descripcion")).Texto();
    cabecera.desde = rs.Fields(QStringLiteral("preciovalidodesde")).Value().toDate();
    cabecera.hasta = rs.Fields(QStringLiteral("preciovalidohasta")).Value().toDate();
    return cabecera;
}
