#include "esquema.h"

#include "platform/datos/errorbd.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QStringList>
#include <algorithm>

namespace {

using T = TipoColumna;

// The price lists: this program's own tables.
constexpr ColumnaEsquema cabeceraPrecio[] = {
    {"identificador", T::Entero, true}, {"descripcion", T::Texto},       {"fechaalta", T::Fecha},
    {"preciovalidodesde", T::Fecha},    {"preciovalidohasta", T::Fecha},
};
constexpr ColumnaEsquema detallePrecio[] = {
    {"identificador", T::Entero},
    {"producto", T::Entero},
    {"precio", T::Decimal},
    {"codproductotextil", T::Texto},
};
constexpr ColumnaEsquema relacionesFijas[] = {
    {"indice", T::Texto}, {"daton", T::Entero}, {"dato1", T::Texto}};

// The catalogue, read only.
constexpr ColumnaEsquema productos[] = {
    {"codigo", T::Entero, true}, {"codigocliente", T::Texto}, {"nombre", T::Texto},
    {"precio", T::Decimal},      {"seccion", T::Texto},       {"borrar", T::EnteroCorto},
};
constexpr ColumnaEsquema productosTextil[] = {
    {"codigopadre", T::Entero}, {"codigohijo", T::Texto}, {"talla", T::Entero},
    {"color", T::Entero},       {"codcliente", T::Texto}, {"precio", T::Decimal},
};
constexpr ColumnaEsquema tallas[] = {{"codigo", T::Entero, true}, {"descripcioncorta", T::Texto}};
constexpr ColumnaEsquema coloresTextil[] = {{"codigo", T::Entero, true}, {"nombre", T::Texto}};
constexpr ColumnaEsquema codigosExtra[] = {{"codigo", T::Entero}, {"codigo_extra", T::Texto}};

// The suite's settings, the terminal, the employees and the screens' texts.
constexpr ColumnaEsquema opciones[] = {
    {"numdecimales", T::EnteroCorto},
    {"multitienda", T::Texto},
    {"nombretienda", T::Texto},
    {"tiponegocio", T::Texto},
    {"estiloaspecto", T::EnteroCorto},
    {"indicadoropciones", T::EnteroCorto},
    {"anchopantalla", T::Real},
    {"altopantalla", T::Real},
    {"idioma", T::Texto},
};
constexpr ColumnaEsquema opcionesTerminal[] = {{"identificador", T::Texto},
                                               {"empleado", T::Entero}};
constexpr ColumnaEsquema configuracionRegional[] = {
    {"segundoimpuesto", T::Booleano},
    {"nombreimpuesto1", T::Texto},
    {"bandera", T::Texto},
    {"nombre", T::Texto},
};
constexpr ColumnaEsquema empleados[] = {
    {"codigo", T::Entero, true}, {"nombre", T::Texto}, {"apellidos", T::Texto}};
constexpr ColumnaEsquema traducciones[] = {
    {"idioma", T::Texto},
    {"formulario", T::Texto},
    {"control", T::Texto},
    {"texto", T::Texto},
};

constexpr ColumnaEsquema listadosTemporal[] = {{"list1", T::Texto}, {"list2", T::Texto}};

constexpr TablaEsquema tablasSuite[] = {
    {"cabecera_precio", cabeceraPrecio},
    {"detalle_precio", detallePrecio},
    {"relaciones_fijas", relacionesFijas},
    {"productos", productos},
    {"productostextil", productosTextil},
    {"tallas", tallas},
    {"colorestextil", coloresTextil},
    {"productos_codigosextra", codigosExtra},
    {"opciones", opciones},
    {"opciones_terminal", opcionesTerminal},
    {"configuracionregional", configuracionRegional},
    {"empleados", empleados},
    {"traducciones", traducciones},
};
constexpr TablaEsquema tablasTerminal[] = {{"listadostemporal", listadosTemporal}};

/// Indexes made with their table. The editor reads a list's prices by list and product,
/// the variants by their product, and the catalogue sorted by name.
struct IndiceEsquema {
    const char *tabla;
    const char *nombre;
    const char *columnas;
};
constexpr IndiceEsquema indices[] = {
    {"detalle_precio", "ix_detalle_precio_lista_producto", "identificador, producto"},
    {"productostextil", "ix_productostextil_codigopadre", "codigopadre"},
    {"productos", "ix_productos_nombre", "nombre"},
};

bool MismoNombre(const char *a, const QString &b) {
    return b.compare(QLatin1String(a), Qt::CaseInsensitive) == 0;
}

void Ejecutar(QSqlDatabase &base, const QString &sentencia) {
    QSqlQuery q(base);
    if (!q.exec(sentencia))
        throw ErrorBD(q.lastError().text().trimmed() + QStringLiteral("\nSentencia: ") + sentencia);
}

QString CreateTable(const TablaEsquema &tabla, const Dialecto &dialecto) {
    QStringList columnas;
    for (const ColumnaEsquema &c : tabla.columnas)
        columnas << QLatin1String(c.nombre) + QLatin1Char(' ') + dialecto.TipoSQL(c.tipo) +
                        (c.clave ? QStringLiteral(" primary key") : QString());
    return QStringLiteral("create table %1 (%2)")
        .arg(QLatin1String(tabla.nombre), columnas.join(QStringLiteral(", ")));
}

} // namespace

std::span<const TablaEsquema> TablasSuite() {
    return tablasSuite;
}
std::span<const TablaEsquema> TablasTerminal() {
    return tablasTerminal;
}

const TablaEsquema *BuscarTabla(const QString &nombre) {
    const QString limpio = nombre.trimmed();
    for (const auto grupo : {TablasSuite(), TablasTerminal()})
        for (const TablaEsquema &t : grupo)
            if (MismoNombre(t.nombre, limpio))
                return &t;
    return nullptr;
}

const ColumnaEsquema *BuscarColumna(const TablaEsquema &tabla, const QString &nombre) {
    const QString limpio = nombre.trimmed();
    for (const ColumnaEsquema &c : tabla.columnas)
        if (MismoNombre(c.nombre, limpio))
            return &c;
    return nullptr;
}

bool CrearTablasQueFaltan(ADODB::Connection &conexion, std::span<const TablaEsquema> tablas) {
    QSqlDatabase base = conexion.Base();
    const Dialecto &dialecto = conexion.dialecto();
    const QStringList existentes = base.tables(QSql::Tables);
    std::vector<const TablaEsquema *> faltan;
    for (const TablaEsquema &t : tablas) {
        const bool existe = std::any_of(existentes.begin(), existentes.end(),
                                        [&](const QString &e) { return MismoNombre(t.nombre, e); });
        if (!existe)
            faltan.push_back(&t);
    }
    if (faltan.empty())
        return tablas.empty();

    // All the missing tables or none: a database left with half a schema would be worse
    // than one that still lacks it. (Databases without transactional DDL do what they can.)
    const bool transaccion = base.transaction();
    try {
        for (const TablaEsquema *t : faltan) {
            Ejecutar(base, dialecto.Adaptar(CreateTable(*t, dialecto)));
            for (const IndiceEsquema &i : indices)
                if (MismoNombre(i.tabla, QLatin1String(t->nombre)))
                    Ejecutar(base, dialecto.Adaptar(QStringLiteral("create index %1 on %2 (%3)")
                                                        .arg(QLatin1String(i.nombre),
                                                             QLatin1String(i.tabla),
                                                             QLatin1String(i.columnas))));
        }
    } catch (...) {
        if (transaccion)
            base.rollback();
        throw;
    }
    if (transaccion && !base.commit())
        throw ErrorBD(base.lastError().text());
    return faltan.size() == tablas.size();
}
