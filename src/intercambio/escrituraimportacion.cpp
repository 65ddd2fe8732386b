// The import itself: the operator's dry run, or one made again when the database changed
// since, inside one unit of work with the list held, and its rows written by the engine's
// writer, with the history of every row, as one operation.
#include "importacion.h"

#include "motor/escritura.h"
#include "motor/historial.h"
#include "motor/sqlmotor.h"
#include "platform/datos/transaccion.h"

ResultadoImportacion Importar(const ContextoMotor &contexto, qint32 lista, const QByteArray &datos,
                              ModoImportacion modo, bool soloValidas, const QString &descripcion,
                              const PlanImportacion *previa) {
    ResultadoImportacion resultado;
    ADODB::Transaccion unidad(*contexto.conexion);
    if (!SQLMotor::BloquearLista(*contexto.conexion, lista)) {
        resultado.estado = ResultadoImportacion::ListaBorrada;
        resultado.mensaje = QStringLiteral("La tarifa ya no existe: se ha eliminado desde otro "
                                           "puesto. No se ha importado nada.");
        return resultado;
    }
    resultado.plan = previa && PlanVigente(contexto, lista, datos, modo, *previa)
                         ? *previa
                         : PlanearImportacion(contexto, lista, datos, modo);
    const PlanImportacion &plan = resultado.plan;
    if (!plan.error.isEmpty()) {
        resultado.estado = ResultadoImportacion::FicheroMalo;
        resultado.mensaje = plan.error;
        return resultado;
    }
    if (!plan.rechazadas.isEmpty() && !soloValidas) {
        resultado.estado = ResultadoImportacion::Rechazada;
        resultado.mensaje = QStringLiteral("Hay %1 líneas rechazadas: no se ha importado nada.")
                                .arg(plan.rechazadas.size());
        return resultado;
    }
    resultado.estado = ResultadoImportacion::Importada;
    resultado.mensaje = ResumenImportacion(plan);
    if (plan.cambios.empty())
        return resultado; // nothing to write, and no operation for the history

    CambiosFilas cambios;
    for (const PrecioImportado &f : plan.cambios) {
        if (!f.fila.isValid())
            cambios.altas.push_back({f.producto, f.variante, *f.nuevo});
        else if (f.nuevo)
            cambios.modificar.push_back({f.fila, *f.nuevo});
        else
            cambios.borrar.push_back(f.fila);
    }
    RegistroOperacion operacion(contexto, lista, TipoOperacion::Importacion, descripcion);
    EscribirCambios(*contexto.conexion, lista, cambios, &operacion);
    resultado.operacion = operacion.Cerrar();
    unidad.Commit();
    return resultado;
}
