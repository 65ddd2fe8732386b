// tarifas historial LISTA and tarifas deshacer OPERACION: a list's operations, and undoing one.
#include "orden.h"

#include "motor/historial.h"
#include "platform/datos/recordset.h"

namespace Ordenes {

namespace {

int Historial(const QCommandLineParser &, const QStringList &argumentos, Consola &consola) {
    SesionOrden sesion;
    const std::optional<qint32> lista = sesion.Lista(argumentos[0], consola);
    if (!lista)
        return Rechazado;
    if (!HistorialDisponible(sesion.Conexion())) {
        consola.errores << "tarifas historial: esta base de datos no guarda historial de "
                           "precios\n";
        return Rechazado;
    }
    for (const OperacionHistorial &o : OperacionesDeLista(sesion.Contexto(), *lista))
        consola.salida << o.numero << '\t'
                       << o.momento.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")) << '\t'
                       << EnUnCampo(o.terminal) << '\t' << NombreTipo(o.tipo) << '\t' << o.filas
                       << '\t' << EnUnCampo(o.descripcion) << "\n";
    return Hecho;
}

/// The list an operation belongs to: looked for among every list's operations.
std::optional<qint32> ListaDeOperacion(SesionOrden &sesion, qint64 operacion) {
    ADODB::Recordset rs;
    rs.Open(QStringLiteral("select identificador from cabecera_precio order by identificador"),
            sesion.Conexion());
    for (; !rs.Eof(); rs.MoveNext()) {
        const qint32 lista = rs.Fields(0).Entero();
        for (const OperacionHistorial &o : OperacionesDeLista(sesion.Contexto(), lista))
            if (o.numero == operacion)
                return lista;
    }
    return std::nullopt;
}

int Deshacer(const QCommandLineParser &, const QStringList &argumentos, Consola &consola) {
    bool esNumero = false;
    const qint64 operacion = argumentos[0].trimmed().toLongLong(&esNumero);
    if (!esNumero || operacion <= 0)
        throw UsoIncorrecto{QStringLiteral("OPERACION es el número que da tarifas historial, no "
                                           "\"%1\"")
                                .arg(argumentos[0])};
    SesionOrden sesion;
    if (!HistorialDisponible(sesion.Conexion())) {
        consola.errores << "tarifas deshacer: esta base de datos no guarda historial de "
                           "precios\n";
        return Rechazado;
    }
    const std::optional<qint32> lista = ListaDeOperacion(sesion, operacion);
    if (!lista) {
        consola.errores << "tarifas deshacer: no hay ninguna operación " << operacion
                        << " de una tarifa que exista\n";
        return Rechazado;
    }
    const ResultadoDeshacer r = DeshacerOperacion(sesion.Contexto(), *lista, operacion);
    if (r.estado != ResultadoDeshacer::Deshecha) {
        consola.errores << "tarifas deshacer: " << r.mensaje << "\n";
        for (const QString &producto : r.productos)
            consola.errores << "  " << producto << "\n";
        return Rechazado;
    }
    consola.salida << "deshacer: " << r.mensaje << "\n";
    return Hecho;
}

} // namespace

DefinicionOrden OrdenHistorial() {
    return {QStringLiteral("historial"),
            QStringLiteral("LISTA"),
            QStringLiteral("Las operaciones de la tarifa, la más reciente primero: número, "
                           "momento, puesto, tipo, filas y descripción, separados por "
                           "tabuladores."),
            {},
            {QStringLiteral("LISTA")},
            Historial};
}

DefinicionOrden OrdenDeshacer() {
    return {QStringLiteral("deshacer"),
            QStringLiteral("OPERACION"),
            QStringLiteral("Deshace entera la operación OPERACION (su número en el historial), o "
                           "nada si una de sus filas ha cambiado después."),
            {},
            {QStringLiteral("OPERACION")},
            Deshacer};
}

} // namespace Ordenes
