// tarifas copiar LISTA NOMBRE: a new list with the prices of another.
#include "orden.h"

#include "intercambio/preciosdelista.h"
#include "motor/copialista.h"
#include "motor/datoslista.h"
#include "motor/historial.h"

namespace Ordenes {

namespace {

const QCommandLineOption desde(QStringLiteral("desde"),
                               QStringLiteral("Primer día de la copia (sin ella, el de la "
                                              "tarifa)."),
                               QStringLiteral("FECHA"));
const QCommandLineOption hasta(QStringLiteral("hasta"),
                               QStringLiteral("Último día de la copia (sin ella, el de la "
                                              "tarifa)."),
                               QStringLiteral("FECHA"));

int Copiar(const QCommandLineParser &opciones, const QStringList &argumentos, Consola &consola) {
    SesionOrden sesion;
    const std::optional<qint32> lista = sesion.Lista(argumentos[0], consola);
    if (!lista)
        return Rechazado;
    const std::optional<CabeceraLista> origen = LeerCabeceraLista(sesion.Conexion(), *lista);
    if (!origen)
        return Rechazado;
    PeticionCopia peticion;
    peticion.origen = *lista;
    peticion.nombre = argumentos[1];
    peticion.desde =
        opciones.isSet(desde) ? LeerFecha(opciones.value(desde), desde.names()[0]) : origen->desde;
    peticion.hasta =
        opciones.isSet(hasta) ? LeerFecha(opciones.value(hasta), hasta.names()[0]) : origen->hasta;
    // The new list's own checks, with the panel's words, before anything is opened.
    if (const auto fallo = ComprobarDatosLista(peticion.nombre, peticion.desde, peticion.hasta)) {
        consola.errores << "tarifas copiar: " << fallo->mensaje << "\n";
        return Rechazado;
    }
    const ResultadoCopia r = CopiarLista(sesion.Contexto(), peticion);
    if (!r.origenExiste) {
        consola.errores << "tarifas copiar: " << r.mensaje << "\n";
        return Rechazado;
    }
    // The new code alone is the summary: what a script takes to go on with the copy.
    consola.salida << r.nueva << "\n";
    if (const QString aviso = TomarAvisoHistorial(sesion.Conexion()); !aviso.isEmpty())
        consola.errores << "tarifas copiar: " << aviso << "\n";
    return Hecho;
}

} // namespace

DefinicionOrden OrdenCopiar() {
    return {QStringLiteral("copiar"),
            QStringLiteral("LISTA NOMBRE [--desde FECHA] [--hasta FECHA]"),
            QStringLiteral("Copia la tarifa con todos sus precios en una nueva de nombre NOMBRE "
                           "y escribe su código."),
            {desde, hasta},
            {QStringLiteral("LISTA"), QStringLiteral("NOMBRE")},
            Copiar};
}

} // namespace Ordenes
