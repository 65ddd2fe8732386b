#include "esquema.h"

#include "platform/datos/errorbd.h"
#include "platform/datos/recordset.h"
#include "platform/datos/transaccion.h"

#include <QRegularExpression>
#include <QSqlError>
#include <QSqlQuery>
#include <QStringList>
#include <algorithm>
#include <cstdio>

using namespace ADODB;

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
/// the variants by their product, and the catalogue sorted by name; its code search looks
/// for a shop code (of a product or of a variant) and for an extra code with a like that
/// ignores case, which each database indexes in its own spelling.
struct IndiceEsquema {
    const char *tabla;
    const char *nombre;
    const char *columnas;
    /// Made for the dialect's case-ignoring like (one column), not on the bare column.
    bool sinMayusculas = false;
};
constexpr IndiceEsquema indices[] = {
    {"detalle_precio", "ix_detalle_precio_lista_producto", "identificador, producto"},
    {"productostextil", "ix_productostextil_codigopadre", "codigopadre"},
    {"productostextil", "ix_productostextil_codcliente", "codcliente"},
    {"productos", "ix_productos_nombre", "nombre"},
    {"productos", "ix_productos_codigocliente", "codigocliente"},
    {"productos_codigosextra", "ix_codigosextra_codigo_extra", "codigo_extra", true},
};

QString Columnas(const IndiceEsquema &indice, const Dialecto &dialecto) {
    const QString columnas = QLatin1String(indice.columnas);
    return indice.sinMayusculas ? dialecto.IndiceSinMayusculas(columnas) : columnas;
}

bool MismoNombre(const char *a, const QString &b) {
    return b.compare(QLatin1String(a), Qt::CaseInsensitive) == 0;
}

void Ejecutar(ADODB::Connection &conexion, QSqlDatabase &base, const QString &sentencia) {
    QSqlQuery q(base);
    if (!q.exec(sentencia))
        throw conexion.Fallo(q.lastError(), sentencia);
}

QString CreateIndex(const IndiceEsquema &indice, const Dialecto &dialecto) {
    return dialecto.Adaptar(QStringLiteral("create index %1 on %2 (%3)")
                                .arg(QLatin1String(indice.nombre), QLatin1String(indice.tabla),
                                     Columnas(indice, dialecto)));
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

namespace {

/// The tables the database has. An empty list is checked with a read of the database's own
/// catalogue, so that a database that can't be read is never taken for an empty one (and
/// given a schema it may already have): that read raises ErrorBD with the database's text.
QStringList TablasExistentes(ADODB::Connection &conexion) {
    const QStringList existentes = conexion.Base().tables(QSql::Tables);
    if (existentes.isEmpty()) {
        const QString driver = conexion.Base().driverName();
        ADODB::Recordset rs;
        if (driver == QLatin1String("QSQLITE"))
            rs.Open(QStringLiteral("select count(*) from sqlite_master"), conexion);
        else if (driver == QLatin1String("QPSQL"))
            rs.Open(QStringLiteral("select count(*) from pg_catalog.pg_class"), conexion);
    }
    return existentes;
}

} // namespace

std::vector<const TablaEsquema *> TablasQueFaltan(ADODB::Connection &conexion,
                                                  std::span<const TablaEsquema> tablas) {
    const QStringList existentes = TablasExistentes(conexion);
    std::vector<const TablaEsquema *> faltan;
    for (const TablaEsquema &t : tablas) {
        const bool existe = std::any_of(existentes.begin(), existentes.end(),
                                        [&](const QString &e) { return MismoNombre(t.nombre, e); });
        if (!existe)
            faltan.push_back(&t);
    }
    return faltan;
}

bool CrearTablasQueFaltan(ADODB::Connection &conexion, std::span<const TablaEsquema> tablas) {
    // All the missing tables or none: a database left with half a schema would be worse
    // than one that still lacks it. (Databases without transactional DDL do what they can.)
    // The list is made inside the unit, so that two terminals starting together don't both
    // create the same table.
    ADODB::Transaccion unidad(conexion);
    const std::vector<const TablaEsquema *> faltan = TablasQueFaltan(conexion, tablas);
    if (faltan.empty())
        return tablas.empty();
    QSqlDatabase base = conexion.Base();
    const Dialecto &dialecto = conexion.dialecto();
    for (const TablaEsquema *t : faltan) {
        Ejecutar(conexion, base, dialecto.Adaptar(CreateTable(*t, dialecto)));
        for (const IndiceEsquema &i : indices)
            if (MismoNombre(i.tabla, QLatin1String(t->nombre)))
                Ejecutar(conexion, base, CreateIndex(i, dialecto));
    }
    unidad.Commit();
    return faltan.size() == tablas.size();
}

namespace {

/// The column list of an index's definition, as the schema compares it: what stands between
/// the parentheses after "on <table>", in small letters, without blanks or quotes.
/// "CREATE INDEX ix ON public.t USING btree (lower(c) text_pattern_ops)" gives
/// "lower(c)text_pattern_ops". Empty when the text has no such list.
QString ColumnasDeDefinicion(const QString &definicion) {
    static const QRegularExpression tras(QStringLiteral("\\son\\s"),
                                         QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch on = tras.match(definicion);
    if (!on.hasMatch())
        return {};
    const qsizetype abre = definicion.indexOf(QLatin1Char('('), on.capturedEnd());
    const qsizetype cierra = definicion.lastIndexOf(QLatin1Char(')'));
    if (abre < 0 || cierra <= abre)
        return {};
    QString columnas;
    for (const QChar c : QStringView(definicion).sliced(abre + 1, cierra - abre - 1))
        if (!c.isSpace() && c != QLatin1Char('"'))
            columnas += c.toLower();
    return columnas;
}

} // namespace

QStringList RehacerIndicesCambiados(ADODB::Connection &conexion,
                                    std::span<const TablaEsquema> tablas) {
    const Dialecto &dialecto = conexion.dialecto();
    const QString consulta = dialecto.DefinicionIndice();
    if (consulta.isEmpty())
        return {};
    // Read and made again inside the unit: two terminals starting together rebuild each
    // index once, the second finding it made as it should be.
    ADODB::Transaccion unidad(conexion);
    QSqlDatabase base = conexion.Base();
    QStringList rehechos;
    for (const TablaEsquema &t : tablas)
        for (const IndiceEsquema &i : indices) {
            if (!MismoNombre(i.tabla, QLatin1String(t.nombre)))
                continue;
            ADODB::Recordset rs;
            rs.Open(consulta, {QString::fromLatin1(i.nombre)}, conexion);
            if (rs.Eof())
                continue;
            const QString create = CreateIndex(i, dialecto);
            if (ColumnasDeDefinicion(rs.Fields(0).Texto()) == ColumnasDeDefinicion(create))
                continue;
            rs.Close();
            Ejecutar(conexion, base, QStringLiteral("drop index %1").arg(QLatin1String(i.nombre)));
            Ejecutar(conexion, base, create);
            rehechos << QLatin1String(i.nombre);
        }
    unidad.Commit();
    return rehechos;
}

void RevisarIndices(ADODB::Connection &conexion, std::span<const TablaEsquema> tablas) {
    QString aviso;
    try {
        const QStringList rehechos = RehacerIndicesCambiados(conexion, tablas);
        if (!rehechos.isEmpty())
            aviso = QStringLiteral("Índices de una versión anterior rehechos: %1.")
                        .arg(rehechos.join(QStringLiteral(", ")));
    } catch (const ErrorBD &error) {
        aviso = QStringLiteral("No se pudieron rehacer los índices de una versión anterior; las "
                               "búsquedas por código funcionan, pero más despacio. %1")
                    .arg(error.Texto());
    }
    if (aviso.isEmpty())
        return;
    std::fprintf(stderr, "%s\n", aviso.toLocal8Bit().constData());
    std::fflush(stderr);
}
