#include "escritura.h"

using SQLMotor::Motor;

namespace {

void PrepararTemporales(ADODB::Connection &conexion, Motor motor) {
    // Made once for the connection's life, emptied for each use: their rows never outlive the
    // unit that wrote them, as every use starts by emptying them.
    SQLMotor::TemporalVacia(conexion, QStringLiteral("motor_filas"),
                            motor == Motor::SQLite
                                ? QStringLiteral("clave integer primary key, nuevo numeric, "
                                                 "baja integer")
                                : QStringLiteral("clave tid, nuevo numeric, baja integer"));
    SQLMotor::TemporalVacia(conexion, QStringLiteral("motor_altas"),
                            QStringLiteral("producto integer, variante text, nuevo numeric"));
}

} // namespace

void EscribirCambios(ADODB::Connection &conexion, qint32 lista, const CambiosFilas &cambios,
                     RegistroOperacion *registro) {
    if (cambios.Total() == 0)
        return;
    const Motor motor = SQLMotor::De(conexion);
    PrepararTemporales(conexion, motor);
    const bool historial = registro && registro->Activo();
    const QString codigo = QString::number(lista);
    const QString claveDetalle =
        motor == Motor::SQLite ? QStringLiteral("rowid") : QStringLiteral("ctid");

    if (!cambios.modificar.empty() || !cambios.borrar.empty()) {
        std::vector<QVariant> valores;
        valores.reserve(3 * (cambios.modificar.size() + cambios.borrar.size()));
        for (const CambiosFilas::Cambio &c : cambios.modificar) {
            valores.push_back(c.clave);
            valores.push_back(c.nuevo ? QVariant(c.nuevo->TextoSQL()) : SQLMotor::TextoNulo());
            valores.push_back(0);
        }
        for (const QVariant &clave : cambios.borrar) {
            valores.push_back(clave);
            valores.push_back(SQLMotor::TextoNulo());
            valores.push_back(1);
        }
        SQLMotor::InsertarPorLotes(
            conexion, QStringLiteral("motor_filas"),
            {QStringLiteral("clave"), QStringLiteral("nuevo"), QStringLiteral("baja")}, valores);
        if (historial)
            registro->FilasDeSeleccion(
                QStringLiteral("select d.producto, coalesce(d.codproductotextil, '') as variante, "
                               "d.precio as anterior, t.nuevo, case when t.baja = 1 then 'B' else "
                               "'M' end as clase from motor_filas t join "
                               "detalle_precio d on d.") +
                claveDetalle + QStringLiteral(" = t.clave"));
        if (!cambios.modificar.empty())
            SQLMotor::Ejecutar(conexion,
                               QStringLiteral("update detalle_precio set precio = t.nuevo from "
                                              "motor_filas t where detalle_precio.") +
                                   claveDetalle + QStringLiteral(" = t.clave and t.baja = 0"));
        if (!cambios.borrar.empty())
            SQLMotor::Ejecutar(conexion,
                               QStringLiteral("delete from detalle_precio where ") + claveDetalle +
                                   QStringLiteral(" in (select clave from motor_filas where "
                                                  "baja = 1)"));
    }

    if (!cambios.altas.empty()) {
        std::vector<QVariant> valores;
        valores.reserve(3 * cambios.altas.size());
        for (const CambiosFilas::Alta &a : cambios.altas) {
            valores.push_back(a.producto);
            // The history names a plain product's row with an empty variant, never a Null.
            valores.push_back(a.variante.isNull() ? QStringLiteral("") : a.variante);
            valores.push_back(a.precio ? QVariant(a.precio->TextoSQL()) : SQLMotor::TextoNulo());
        }
        SQLMotor::InsertarPorLotes(
            conexion, QStringLiteral("motor_altas"),
            {QStringLiteral("producto"), QStringLiteral("variante"), QStringLiteral("nuevo")},
            valores);
        if (historial)
            registro->FilasDeSeleccion(
                QStringLiteral("select producto, variante, cast(null as numeric) as anterior, "
                               "nuevo, 'A' as clase from motor_altas"));
        SQLMotor::Ejecutar(conexion,
                           QStringLiteral("insert into detalle_precio (identificador, producto, "
                                          "precio, codproductotextil) select ") +
                               codigo +
                               QStringLiteral(", producto, nuevo, nullif(variante, '') from "
                                              "motor_altas"));
    }
}
