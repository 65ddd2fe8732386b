#include "cambioporvalores.h"

#include "aritmetica.h"
#include "historial.h"
#include "sqlmotor.h"

#include "platform/datos/recordset.h"

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

qint64 CambiarPorValores(const ContextoMotor &contexto, const PeticionCambio &peticion,
                         const QString &descripcion, CuentaCambio &cuenta) {
    ADODB::Connection &conexion = *contexto.conexion;
    QVariantList valores;
    const QString filtro = Filtro(peticion, valores);
    const bool lite = SQLMotor::De(conexion) == SQLMotor::Motor::SQLite;
    // Each distinct stored price, its text for the arithmetic, and how many rows hold it.
    ADODB::Recordset rs;
    rs.Open(QStringLiteral("select g.precio, cast(g.precio as text) as texto, g.n from (select "
                           "d.precio, count(*) as n from detalle_precio d where ") +
                filtro + QStringLiteral(" group by d.precio) g"),
            valores, conexion);
    std::vector<QVariant> mapa;
    for (; !rs.Eof(); rs.MoveNext()) {
        const int filas = int(rs.Fields(2).Value().toLongLong());
        const std::optional<Importe> viejo =
            rs.Fields(1).EsNulo() ? std::nullopt : Aritmetica::LeerGuardado(rs.Fields(1).Texto());
        const std::optional<Importe> nuevo =
            viejo ? NuevoPrecio(*viejo, peticion.regla) : std::nullopt;
        if (!nuevo) {
            cuenta.rechazadas += filas;
            continue;
        }
        if (*nuevo == *viejo)
            continue;
        cuenta.cambiadas += filas;
        // The map's key is the stored value itself. SQLite stores a price as a binary number:
        // the value as read is bound back unchanged, so each row finds its own entry even
        // when its value would not survive a round trip through text (the arithmetic above
        // never touches it). A server's decimal is exact, and is given back as its text.
        mapa.push_back(lite ? rs.Fields(0).Value() : QVariant(rs.Fields(1).Texto()));
        mapa.push_back(nuevo->TextoSQL());
    }
    rs.Close();
    if (mapa.empty())
        return 0;

    SQLMotor::TemporalVacia(conexion, QStringLiteral("motor_mapa"),
                            QStringLiteral("viejo numeric primary key, nuevo numeric"));
    SQLMotor::InsertarPorLotes(
        conexion, QStringLiteral("insert into motor_mapa (viejo, nuevo) values "), 2, mapa);
    // The list's rows, read through its index, drive each statement; each finds its new price
    // by the map's key. "cross join" keeps SQLite from putting the map outside (a server plans
    // the join by itself).
    RegistroOperacion registro(contexto, peticion.lista, TipoOperacion::Cambio, descripcion);
    registro.FilasDeSeleccion(
        QStringLiteral("select d.producto, coalesce(d.codproductotextil, '') as variante, "
                       "d.precio as anterior, m.nuevo, 'M' as clase from detalle_precio d cross "
                       "join motor_mapa m where m.viejo = d.precio and ") +
            filtro,
        valores);
    // The update looks its price up for each row, rather than joining: SQLite gathers an
    // update's join into a table of its own first.
    SQLMotor::Ejecutar(conexion,
                       QStringLiteral("update detalle_precio as d set precio = (select m.nuevo "
                                      "from motor_mapa m where m.viejo = d.precio) where ") +
                           filtro +
                           QStringLiteral(" and d.precio in (select viejo from motor_mapa)"),
                       valores);
    return registro.Cerrar();
}
