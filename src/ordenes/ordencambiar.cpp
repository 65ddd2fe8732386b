// tarifas cambiar LISTA: a bulk change of a list's prices, with its rounding.
#include "orden.h"

#include "motor/cambioprecios.h"
#include "motor/historial.h"

#include <QLocale>

namespace Ordenes {

namespace {

const QCommandLineOption base(QStringLiteral("base"),
                              QStringLiteral("tarifa: el precio de la tarifa (por defecto); "
                                             "venta: el precio de venta del producto."),
                              QStringLiteral("tarifa|venta"), QStringLiteral("tarifa"));
const QCommandLineOption porcentaje(QStringLiteral("porcentaje"),
                                    QStringLiteral("Tanto por ciento que se suma (-12,5 rebaja)."),
                                    QStringLiteral("N"));
const QCommandLineOption importe(QStringLiteral("importe"),
                                 QStringLiteral("Importe que se suma tras el porcentaje."),
                                 QStringLiteral("N"));
const QCommandLineOption redondeo(QStringLiteral("redondeo"),
                                  QStringLiteral("Redondea a un múltiplo de PASO (por defecto, "
                                                 "la última cifra decimal de la tienda)."),
                                  QStringLiteral("PASO"));
const QCommandLineOption terminacion(QStringLiteral("terminacion"),
                                     QStringLiteral("Decimales en que acaba cada precio (0,95)."),
                                     QStringLiteral("T"));
const QCommandLineOption seccion(QStringLiteral("seccion"),
                                 QStringLiteral("Solo los productos de la sección S."),
                                 QStringLiteral("S"));
const QCommandLineOption nombre(QStringLiteral("nombre"),
                                QStringLiteral("Solo los productos cuyo nombre empieza por "
                                               "PREFIJO."),
                                QStringLiteral("PREFIJO"));
const QCommandLineOption catalogo(QStringLiteral("todo-el-catalogo"),
                                  QStringLiteral("Con --base venta: todos los productos vivos "
                                                 "del catálogo, estén o no en la tarifa."));
const QCommandLineOption prueba(QStringLiteral("prueba"),
                                QStringLiteral("No escribe nada: dice qué cambiaría."));

/// "Camisa (M, Azul)": a row as the operator knows it.
QString Producto(const FilaCambio &f) {
    if (f.talla.isEmpty() && f.color.isEmpty())
        return f.nombre;
    return QStringLiteral("%1 (%2, %3)").arg(f.nombre, f.talla, f.color);
}

PeticionCambio LeerPeticion(const QCommandLineParser &opciones, qint32 lista,
                            const ContextoMotor &contexto, Consola &consola, bool &valida) {
    PeticionCambio peticion;
    peticion.lista = lista;
    const QString textoBase = opciones.value(base).toLower();
    if (textoBase != QLatin1String("tarifa") && textoBase != QLatin1String("venta"))
        throw UsoIncorrecto{QStringLiteral("--base es tarifa o venta, no \"%1\"").arg(textoBase)};
    peticion.base = textoBase == QLatin1String("venta") ? PeticionCambio::Base::Catalogo
                                                        : PeticionCambio::Base::Tarifa;
    if (int(opciones.isSet(seccion)) + int(opciones.isSet(nombre)) + int(opciones.isSet(catalogo)) >
        1)
        throw UsoIncorrecto{QStringLiteral("--seccion, --nombre y --todo-el-catalogo no van "
                                           "juntas")};
    if (opciones.isSet(seccion)) {
        peticion.alcance = PeticionCambio::Alcance::Seccion;
        peticion.seccion = opciones.value(seccion);
    } else if (opciones.isSet(nombre)) {
        peticion.alcance = PeticionCambio::Alcance::NombreEmpieza;
        peticion.prefijo = opciones.value(nombre);
    } else if (opciones.isSet(catalogo)) {
        peticion.alcance = PeticionCambio::Alcance::Catalogo;
    }
    // The dialog's checks and words.
    const TextosRegla textos{opciones.value(porcentaje), opciones.value(importe),
                             opciones.value(redondeo), opciones.value(terminacion)};
    valida = true;
    if (const auto fallo = LeerRegla(textos, contexto.numDecimales, peticion.regla)) {
        consola.errores << "tarifas cambiar: " << fallo->mensaje << "\n";
        valida = false;
    } else if (const QString motivo = ComprobarPeticion(peticion); !motivo.isEmpty()) {
        consola.errores << "tarifas cambiar: " << motivo << "\n";
        valida = false;
    }
    return peticion;
}

int Cambiar(const QCommandLineParser &opciones, const QStringList &argumentos, Consola &consola) {
    SesionOrden sesion;
    const ContextoMotor &contexto = sesion.Contexto();
    const std::optional<qint32> lista = sesion.Lista(argumentos[0], consola);
    if (!lista)
        return Rechazado;
    bool valida = false;
    const PeticionCambio peticion = LeerPeticion(opciones, *lista, contexto, consola, valida);
    if (!valida)
        return Rechazado;
    const QChar coma = QLocale().decimalPoint().front();

    if (opciones.isSet(prueba)) {
        const VistaPreviaCambio vista =
            PrevisualizarCambio(contexto, peticion, std::numeric_limits<int>::max());
        for (const FilaCambio &f : vista.primeras)
            consola.salida << Producto(f) << '\t'
                           << (f.anterior ? f.anterior->Texto(contexto.numDecimales, coma)
                                          : QStringLiteral("-"))
                           << " -> " << f.nuevo->Texto(contexto.numDecimales, coma) << "\n";
        for (const FilaCambio &f : vista.rechazadas)
            consola.errores << Producto(f) << ": " << f.motivo << "\n";
        consola.salida << "cambiar (prueba, nada escrito): " << vista.cambian << " cambian, "
                       << vista.iguales << " iguales, " << vista.rechazadas.size()
                       << " rechazados\n";
        return Hecho;
    }
    const ResultadoCambio r = AplicarCambio(contexto, peticion);
    if (!r.listaExiste) {
        consola.errores << "tarifas cambiar: " << r.mensaje << "\n";
        return Rechazado;
    }
    consola.salida << "cambiar: " << r.cambiadas << " cambiados, " << r.rechazadas
                   << " rechazados\n";
    if (const QString aviso = TomarAvisoHistorial(sesion.Conexion()); !aviso.isEmpty())
        consola.errores << "tarifas cambiar: " << aviso << "\n";
    return Hecho;
}

} // namespace

DefinicionOrden OrdenCambiar() {
    return {QStringLiteral("cambiar"),
            QStringLiteral("LISTA [--base tarifa|venta] [--porcentaje N] [--importe N] "
                           "[--redondeo PASO] [--terminacion T] [--seccion S] [--nombre PREFIJO] "
                           "[--todo-el-catalogo] [--prueba]"),
            QStringLiteral("Cambia los precios de la tarifa: porcentaje, importe y redondeo. Sin "
                           "porcentaje ni importe solo redondea."),
            {base, porcentaje, importe, redondeo, terminacion, seccion, nombre, catalogo, prueba},
            {QStringLiteral("LISTA")},
            Cambiar};
}

} // namespace Ordenes
