#include "cambioporvalores.h"

#include "aritmetica.h"
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

qint64 CambiarPorValores(const ContextoMotor &contexto, const PeticionCambio &peticion,
                         const QString &descripcion, CuentaCambio &cuenta) {
    ADODB::Connection &conexion = *contexto.conexion;
    QVariantList valores;
    const QString filtro = Filtro(peticion, valores);
    const bool lite = SQLMotor::De(conexion) == SQLMotor::Motor::SQLite;
    // Each distinct stored price and its text for the arithmetic. The rows are counted by the
    // update that changes them; those refused are counted apart, only when there are any.
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
        // The map's key is the stored value itself. SQLite stores a price as a binary number:
        // the value as read is bound back unchanged, so each row finds its own entry even
        // when its value would not survive a round trip through text (the arithmetic above
        // never touches it). A server's decimal is exact, and is given back as its text.
        mapa.push_back(lite ? rs.Fields(0).Value() : QVariant(texto));
        mapa.push_back(nuevo->TextoSQL());
    }
    rs.Close();
    if (nulos || !rechazados.isEmpty())
        cuenta.rechazadas += ContarRechazadas(conexion, filtro, valores, rechazados, nulos);
    if (mapa.empty())
        return 0;

    // Without a rowid of its own, SQLite finds a price's entry with one search of the key.
    SQLMotor::TemporalVacia(conexion, QStringLiteral("motor_mapa"),
                            QStringLiteral("viejo numeric primary key, nuevo numeric"),
                            lite ? QStringLiteral("without rowid") : QString());
    SQLMotor::InsertarPorLotes(
        conexion, QStringLiteral("insert into motor_mapa (viejo, nuevo) values "), 2, mapa);
    RegistroOperacion registro(contexto, peticion.lista, TipoOperacion::Cambio, descripcion);
    // The list's rows, read through its index, drive each statement; each finds its new price
    // by the map's key. "cross join" keeps SQLite from putting the map outside (a server plans
    // the join by itself).
    registro.FilasDeSeleccion(
        QStringLiteral("select d.producto, coalesce(d.codproductotextil, '') as variante, "
                       "d.precio as anterior, m.nuevo, 'M' as clase from detalle_precio d cross "
                       "join motor_mapa m where m.viejo = d.precio and ") +
            filtro,
        valores);
    // The update looks its price up for each row, rather than joining: SQLite gathers an
    // update's join into a table of its own first. It counts the rows changed.
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
