#include "copialista.h"

#include "cambiointerno.h"
#include "datoslista.h"
#include "historial.h"
#include "sqlmotor.h"

#include "platform/datos/errorbd.h"
#include "platform/datos/recordset.h"
#include "platform/datos/transaccion.h"

#include <limits>

using namespace ADODB;

namespace {

/// The next code after the highest, as a new list takes it. Inside the unit that holds the
/// register of lists, so no other terminal takes the same one.
qint32 CodigoNuevo(ADODB::Connection &conexion) {
    ADODB::Recordset rs;
    rs.Open(QStringLiteral("select max(identificador) as num from cabecera_precio"), conexion);
    const qint64 mayor =
        rs.RecordCount() == 0 || rs.Fields(0).EsNulo() ? 0 : rs.Fields(0).Value().toLongLong();
    if (mayor >= std::numeric_limits<qint32>::max())
        throw ErrorBD(QStringLiteral("No quedan códigos para una tarifa nueva: la tarifa %1 tiene "
                                     "el código más alto posible. No se ha grabado nada.")
                          .arg(mayor));
    return qint32(mayor + 1);
}

} // namespace

ResultadoCopia CopiarLista(const ContextoMotor &contexto, const PeticionCopia &peticion) {
    if (const auto fallo = ComprobarDatosLista(peticion.nombre, peticion.desde, peticion.hasta))
        throw ErrorBD(fallo->mensaje);
    if (peticion.cambio) {
        const QString motivo = ComprobarPeticion(*peticion.cambio);
        if (!motivo.isEmpty())
            throw ErrorBD(motivo + QStringLiteral(" No se ha grabado nada."));
    }
    ADODB::Connection &conexion = *contexto.conexion;
    const SQLMotor::Motor motor = SQLMotor::De(conexion);
    HistorialDisponible(conexion); // made, if need be, before the unit
    ResultadoCopia resultado;
    ADODB::Transaccion unidad(conexion);
    // On a server, other terminals' new lists wait for this one (SQLite's unit already holds
    // the whole database), so that the highest code plus one is still free at the insert.
    if (motor == SQLMotor::Motor::PostgreSQL)
        SQLMotor::Ejecutar(
            conexion, QStringLiteral("lock table cabecera_precio in share row exclusive mode"));
    if (!SQLMotor::BloquearLista(conexion, peticion.origen)) {
        resultado.origenExiste = false;
        resultado.mensaje = QStringLiteral("La tarifa ya no existe: se ha eliminado desde otro "
                                           "puesto. No se ha copiado nada.");
        return resultado;
    }
    resultado.nueva = CodigoNuevo(conexion);
    const QString nueva = QString::number(resultado.nueva);
    SQLMotor::Ejecutar(
        conexion,
        QStringLiteral("insert into cabecera_precio (identificador, descripcion, "
                       "fechaalta, preciovalidodesde, preciovalidohasta) values (?, "
                       "?, ?, ?, ?)"),
        {resultado.nueva, peticion.nombre, QDate::currentDate(), peticion.desde, peticion.hasta});
    const QSqlQuery filas = SQLMotor::Ejecutar(
        conexion,
        QStringLiteral("insert into detalle_precio (identificador, producto, precio, "
                       "codproductotextil) select ") +
            nueva +
            QStringLiteral(", producto, precio, codproductotextil from detalle_precio where "
                           "identificador = ?"),
        {peticion.origen});
    resultado.filas = std::max(0, filas.numRowsAffected());
    if (peticion.cambio) {
        PeticionCambio cambio = *peticion.cambio;
        cambio.lista = resultado.nueva;
        CuentaCambio cuenta;
        EscribirCambios(conexion, resultado.nueva, CalcularCambios(contexto, cambio, cuenta),
                        nullptr);
        // The catalogue's scope may have added rows.
        ADODB::Recordset rs;
        rs.Open(QStringLiteral("select count(*) from detalle_precio where identificador = ?"),
                {resultado.nueva}, conexion);
        resultado.filas = int(rs.Fields(0).Value().toLongLong());
    }
    // The history has the copy's rows as they end up: none -> price.
    RegistroOperacion registro(contexto, resultado.nueva, TipoOperacion::Copia,
                               QStringLiteral("Copia de la tarifa %1").arg(peticion.origen));
    registro.FilasDeLista(resultado.nueva, true);
    resultado.operacion = registro.Cerrar();
    unidad.Commit();
    resultado.mensaje = QStringLiteral("Se ha creado la tarifa %1, \"%2\", con %3 precios.")
                            .arg(nueva, peticion.nombre)
                            .arg(resultado.filas);
    return resultado;
}
