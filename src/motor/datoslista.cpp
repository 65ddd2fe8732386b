#include "datoslista.h"

std::optional<FalloDatosLista> ComprobarDatosLista(const QString &nombre, const QDate &desde,
                                                   const QDate &hasta) {
    if (nombre.isEmpty())
        return FalloDatosLista{FalloDatosLista::Nombre,
                               QStringLiteral("Tiene que indicar un nombre para la nueva tarifa")};
    // The record writer's field list closes each value with "|", so a name can't carry one.
    if (nombre.contains(QLatin1Char('|')))
        return FalloDatosLista{
            FalloDatosLista::Nombre,
            QStringLiteral("El nombre de la tarifa no puede llevar el carácter |")};
    if (desde.isValid() && hasta.isValid() && desde <= hasta)
        return std::nullopt;
    return FalloDatosLista{FalloDatosLista::Periodo,
                           QStringLiteral("Compruebe el periodo de validez de la tarifa")};
}
