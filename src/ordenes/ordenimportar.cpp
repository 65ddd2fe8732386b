// tarifas importar LISTA FICHERO: a file's prices into a list, after its dry run.
#include "orden.h"

#include "intercambio/importacion.h"
#include "motor/historial.h"

#include <QFile>
#include <QFileInfo>

namespace Ordenes {

namespace {

/// Larger than any list a shop keeps: a file above it is not a price list.
constexpr qint64 tamanoMaximo = qint64(256) * 1024 * 1024;

const QCommandLineOption sustituir(QStringLiteral("sustituir"),
                                   QStringLiteral("Quita de la tarifa los precios que el fichero "
                                                  "no nombra."));
const QCommandLineOption soloValidas(QStringLiteral("solo-validas"),
                                     QStringLiteral("Con líneas rechazadas, importa las válidas "
                                                    "(sin ella no importa nada)."));
const QCommandLineOption prueba(QStringLiteral("prueba"),
                                QStringLiteral("No escribe nada: dice qué cambiaría."));

void Rechazos(const QString &fichero, const PlanImportacion &plan, Consola &consola) {
    for (const LineaRechazada &r : plan.rechazadas)
        consola.errores << fichero << ':' << r.linea << ": " << r.motivo << "\n";
}

QString Resumen(const PlanImportacion &plan) {
    QString texto = ResumenImportacion(plan);
    if (!plan.rechazadas.isEmpty())
        texto += QStringLiteral(", %1 líneas rechazadas").arg(plan.rechazadas.size());
    return texto;
}

int EjecutarImportar(const QCommandLineParser &opciones, const QStringList &argumentos,
                     Consola &consola) {
    const QString &fichero = argumentos[1];
    QFile archivo(fichero);
    if (!archivo.open(QIODevice::ReadOnly)) {
        consola.errores << "tarifas importar: no se puede leer " << fichero << ": "
                        << archivo.errorString() << "\n";
        return Rechazado;
    }
    if (archivo.size() > tamanoMaximo) {
        consola.errores << "tarifas importar: " << fichero
                        << " es demasiado grande para ser una tarifa\n";
        return Rechazado;
    }
    const QByteArray datos = archivo.readAll();
    SesionOrden sesion;
    const std::optional<qint32> lista = sesion.Lista(argumentos[0], consola);
    if (!lista)
        return Rechazado;
    const ModoImportacion modo =
        opciones.isSet(sustituir) ? ModoImportacion::Sustituir : ModoImportacion::AnadirYActualizar;
    const bool validas = opciones.isSet(soloValidas);

    if (opciones.isSet(prueba)) {
        const PlanImportacion plan = PlanearImportacion(sesion.Contexto(), *lista, datos, modo);
        if (!plan.error.isEmpty()) {
            consola.errores << "tarifas importar: " << fichero << ": " << plan.error << "\n";
            return Rechazado;
        }
        Rechazos(fichero, plan, consola);
        consola.salida << "importar (prueba, nada escrito): " << Resumen(plan) << "\n";
        return plan.rechazadas.isEmpty() || validas ? Hecho : Rechazado;
    }

    const ResultadoImportacion r =
        ::Importar(sesion.Contexto(), *lista, datos, modo, validas,
                   QStringLiteral("Importación de %1").arg(QFileInfo(fichero).fileName()));
    switch (r.estado) {
    case ResultadoImportacion::Importada:
        Rechazos(fichero, r.plan, consola);
        consola.salida << "importar: " << Resumen(r.plan) << "\n";
        if (const QString aviso = TomarAvisoHistorial(sesion.Conexion()); !aviso.isEmpty())
            consola.errores << "tarifas importar: " << aviso << "\n";
        return Hecho;
    case ResultadoImportacion::Rechazada:
        Rechazos(fichero, r.plan, consola);
        consola.errores << "tarifas importar: " << r.mensaje
                        << " (--solo-validas importa las válidas)\n";
        return Rechazado;
    case ResultadoImportacion::FicheroMalo:
        consola.errores << "tarifas importar: " << fichero << ": " << r.mensaje << "\n";
        return Rechazado;
    case ResultadoImportacion::ListaBorrada:
        consola.errores << "tarifas importar: " << r.mensaje << "\n";
        return Rechazado;
    }
    return Rechazado;
}

} // namespace

DefinicionOrden OrdenImportar() {
    return {QStringLiteral("importar"),
            QStringLiteral("LISTA FICHERO [--sustituir] [--solo-validas] [--prueba]"),
            QStringLiteral("Lee los precios de un CSV (columnas codigo o variante, y precio) y "
                           "los añade o cambia en la tarifa, todo o nada."),
            {sustituir, soloValidas, prueba},
            {QStringLiteral("LISTA"), QStringLiteral("FICHERO")},
            EjecutarImportar};
}

} // namespace Ordenes
