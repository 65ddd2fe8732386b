#include "cambioporvalores.h"

#include "aritmetica.h"
#include "funcionprecio.h"
#include "historial.h"
#include "sqlmotor.h"

#include "platform/datos/recordset.h"

#include <QSet>

using Alcance = PeticionCambio::Alcance;

bool CambioPorValores(const PeticionCambio &peticion) {
    return peticion.base == PeticionCambio::Base::Tarifa &&
           (peticion.alcance == Alcance::Todos || peticion.alcance == Alcance::Seccion);
}

namespace {

/// The rows of the request, of detalle_precio as `d`, with their bound values.
QString Filtro(const PeticionCambio &p, QVariantList &valores) {
    valores = {p.lista};
    if (p.alcance != Alcance::Seccion)
        return QStringLiteral("d.identificador = ?");
    valores << p.seccion;
    return QStringLiteral("d.identificador = ? and d.producto in (select codigo from productos "
                          "where seccion = ?)");
}

} // namespace

namespace {

/// How many rows of the request hold one of the prices of `rechazados` (their text as the
/// database gives it back), or no price at all: the rows the change leaves as they were.
int ContarRechazadas(ADODB::Connection &conexion, const QString &filtro,
                     const QVariantList &valores, const QSet<QString> &rechazados, bool conNulos) {
    ADODB::Recordset rs;
    rs.Open(QStringLiteral("select cast(g.precio as text) as texto, g.n from (select d.precio, "
                           "count(*) as n from detalle_precio d where ") +
                filtro + QStringLiteral(" group by d.precio) g"),
            valores, conexion);
    int filas = 0;
    for (; !rs.Eof(); rs.MoveNext())
        if (rs.Fields(0).EsNulo() ? conNulos : rechazados.contains(rs.Fields(0).Texto()))
            filas += int(rs.Fields(1).Value().toLongLong());
    return filas;
}

} // namespace

namespace {

/// On SQLite, the rule itself is a function of the statements: no read of the distinct
/// prices and no map first. The history's insert and the update each find a row's new price
/// by the function; it works each stored value out once.
qint64 CambiarConFuncion(const ContextoMotor &contexto, const PeticionCambio &peticion,
                         const QString &descripcion, CuentaCambio &cuenta, const QString &filtro,
                         const QVariantList &valores) {
    ADODB::Connection &conexion = *contexto.conexion;
    FuncionPrecio funcion(conexion, peticion.regla);
    const QString cambia = QStringLiteral(" and motor_nuevo(d.precio) is not null");
    const auto contar = [&] {
        if (funcion.HayNulos() || !funcion.Rechazados().isEmpty())
            cuenta.rechazadas += ContarRechazadas(conexion, filtro, valores, funcion.Rechazados(),
                                                  funcion.HayNulos());
    };
    // A change of no row is no operation of the history. Looking for the first row that
    // changes reads every row only when none does.
    if (!SQLMotor::Ejecutar(conexion,
                            QStringLiteral("select 1 from detalle_precio d where ") + filtro +
                                cambia + QStringLiteral(" limit 1"),
                            valores)
             .next()) {
        contar();
        return 0;
    }
    RegistroOperacion registro(contexto, peticion.lista, TipoOperacion::Cambio, descripcion);
    registro.FilasDeSeleccion(
        QStringLiteral("select d.producto, coalesce(d.codproductotextil, '') as variante, "
                       "d.precio as anterior, motor_nuevo(d.precio) as nuevo, 'M' as clase "
                       "from detalle_precio d where ") +
            filtro + cambia,
        valores);
    // Without a history the function has seen no row yet: the refused ones are found (and
    // counted) before the update, while every row still has its old price.
    if (!registro.Activo())
        SQLMotor::Ejecutar(conexion,
                           QStringLiteral("select count(*) from detalle_precio d where ") + filtro +
                               cambia,
                           valores);
    contar();
    cuenta.cambiadas +=
        std::max(0, SQLMotor::Ejecutar(conexion,
                                       QStringLiteral("update detalle_precio as d set precio = "
                                                      "motor_nuevo(d.precio) where ") +
                                           filtro + cambia,
                                       valores)
                        .numRowsAffected());
    return registro.Cerrar();
}

} // namespace

qint64 CambiarPorValores(const ContextoMotor &contexto, const PeticionCambio &peticion,
                         const QString &descripcion, CuentaCambio &cuenta) {
    ADODB::Connection &conexion = *contexto.conexion;
    QVariantList valores;
    const QString filtro = Filtro(peticion, valores);
    if (SQLMotor::De(conexion) == SQLMotor::Motor::SQLite)
        return CambiarConFuncion(contexto, peticion, descripcion, cuenta, filtro, valores);
    // On a server: each distinct stored price and its text for the arithmetic. The rows are counted
    // by the update that changes them; those refused are counted apart, only when there are any.
    ADODB::Recordset rs;
    rs.Open(QStringLiteral("select g.precio, cast(g.precio as text) as texto from (select "
                           "distinct d.precio from detalle_precio d where ") +
                filtro + QStringLiteral(") g"),
            valores, conexion);
    std::vector<QVariant> mapa;
    QSet<QString> rechazados;
    bool nulos = false;
    for (; !rs.Eof(); rs.MoveNext()) {
        if (rs.Fields(1).EsNulo()) {
            nulos = true;
            continue;
        }
        const QString texto = rs.Fields(1).Texto();
        const std::optional<Importe> viejo = Aritmetica::LeerGuardado(texto);
        const std::optional<Importe> nuevo =
            viejo ? NuevoPrecio(*viejo, peticion.regla) : std::nullopt;
        if (!nuevo) {
            rechazados.insert(texto);
            continue;
        }
        if (*nuevo == *viejo)
            continue;
        // A server's decimal is exact: the map's key is the stored value's own text.
        mapa.push_back(QVariant(texto));
        mapa.push_back(nuevo->TextoSQL());
    }
    rs.Close();
    if (nulos || !rechazados.isEmpty())
        cuenta.rechazadas += ContarRechazadas(conexion, filtro, valores, rechazados, nulos);
    if (mapa.empty())
        return 0;

    SQLMotor::TemporalVacia(conexion, QStringLiteral("motor_mapa"),
                            QStringLiteral("viejo numeric primary key, nuevo numeric"), QString());
    SQLMotor::InsertarPorLotes(conexion, QStringLiteral("motor_mapa"),
                               {QStringLiteral("viejo"), QStringLiteral("nuevo")}, mapa);
    RegistroOperacion registro(contexto, peticion.lista, TipoOperacion::Cambio, descripcion);
    // The list's rows drive each statement; each finds its new price by the map's key.
    registro.FilasDeSeleccion(
        QStringLiteral("select d.producto, coalesce(d.codproductotextil, '') as variante, "
                       "d.precio as anterior, m.nuevo, 'M' as clase from detalle_precio d cross "
                       "join motor_mapa m where m.viejo = d.precio and ") +
            filtro,
        valores);
    // The update counts the rows changed.
    cuenta.cambiadas += std::max(
        0, SQLMotor::Ejecutar(conexion,
                              QStringLiteral("update detalle_precio as d set precio = (select "
                                             "m.nuevo from motor_mapa m where m.viejo = "
                                             "d.precio) where ") +
                                  filtro +
                                  QStringLiteral(" and d.precio in (select viejo from motor_mapa)"),
                              valores)
               .numRowsAffected());
    return registro.Cerrar();
}
