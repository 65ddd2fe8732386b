#include "quitarproducto.h"

#include "escritura.h"
#include "historial.h"
#include "sqlmotor.h"

#include "platform/datos/recordset.h"
#include "platform/datos/transaccion.h"

ResultadoQuitar QuitarProducto(const ContextoMotor &contexto, qint32 lista, qint32 producto,
                               const QString &variante) {
    ADODB::Connection &conexion = *contexto.conexion;
    const SQLMotor::Motor motor = SQLMotor::De(conexion);
    HistorialDisponible(conexion); // made, if need be, before the unit
    ResultadoQuitar resultado;
    ADODB::Transaccion unidad(conexion);
    if (!SQLMotor::BloquearLista(conexion, lista)) {
        resultado.estado = ResultadoQuitar::ListaBorrada;
        resultado.mensaje = QStringLiteral("La tarifa ya no existe: se ha eliminado desde otro "
                                           "puesto. No se ha quitado nada.");
        return resultado;
    }
    // A plain product's row keeps no variant (Null, or empty from another program).
    ADODB::Recordset rs;
    rs.Open(QStringLiteral("select ") + SQLMotor::ClaveFila(motor, QStringLiteral("d")) +
                QStringLiteral(", p.nombre from detalle_precio d left join productos p on "
                               "p.codigo = d.producto where d.identificador = ? and d.producto = ? "
                               "and coalesce(d.codproductotextil, '') = ?"),
            {lista, producto, variante.isNull() ? QStringLiteral("") : variante}, conexion);
    if (rs.RecordCount() == 0) {
        resultado.estado = ResultadoQuitar::NoEstaba;
        resultado.mensaje = QStringLiteral("Ese producto ya no está en la tarifa: otro puesto lo "
                                           "ha quitado. No se ha quitado nada.");
        return resultado;
    }
    const QString nombre =
        rs.Fields(1).EsNulo() ? QStringLiteral("producto %1").arg(producto) : rs.Fields(1).Texto();
    CambiosFilas cambios;
    for (; !rs.Eof(); rs.MoveNext())
        cambios.borrar.push_back(rs.Fields(0).Value());
    RegistroOperacion registro(
        contexto, lista, TipoOperacion::Quitar,
        QStringLiteral("Quitar ") + nombre +
            (variante.isEmpty() ? QString() : QStringLiteral(" (") + variante + QLatin1Char(')')));
    EscribirCambios(conexion, lista, cambios, &registro);
    resultado.operacion = registro.Cerrar();
    unidad.Commit();
    resultado.estado = ResultadoQuitar::Quitado;
    resultado.mensaje = QStringLiteral("Se ha quitado %1 de la tarifa.").arg(nombre);
    return resultado;
}
