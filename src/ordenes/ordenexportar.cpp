// tarifas exportar LISTA FICHERO: a list's prices to a CSV or XLSX file.
#include "orden.h"

#include "intercambio/exportacion.h"

#include <QLocale>

namespace Ordenes {

namespace {

int Exportar(const QCommandLineParser &, const QStringList &argumentos, Consola &consola) {
    SesionOrden sesion;
    const std::optional<qint32> lista = sesion.Lista(argumentos[0], consola);
    if (!lista)
        return Rechazado;
    const QString &fichero = argumentos[1];
    const ResultadoExportacion resultado =
        ExportarLista(sesion.Contexto(), *lista, fichero, QLocale().decimalPoint().front());
    if (!resultado.error.isEmpty()) {
        consola.errores << "tarifas exportar: " << resultado.error << "\n";
        return Rechazado;
    }
    consola.salida << "exportar: " << resultado.filas << " precios en " << fichero << "\n";
    return Hecho;
}

} // namespace

DefinicionOrden OrdenExportar() {
    return {QStringLiteral("exportar"),
            QStringLiteral("LISTA FICHERO"),
            QStringLiteral("Escribe los precios de la tarifa en FICHERO, .csv o .xlsx según su "
                           "extensión."),
            {},
            {QStringLiteral("LISTA"), QStringLiteral("FICHERO")},
            Exportar};
}

} // namespace Ordenes
