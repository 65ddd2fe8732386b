#include "dialectos.h"

#include <QDate>

QVariant DialectoPostgreSQL::Normalizar(const QVariant &valor, const QString &tipoDeclarado) const {
    if (valor.isNull())
        return {};
    // numeric arrives as a double, or as its text when the query asked for full precision.
    if (valor.typeId() == QMetaType::QString && tipoDeclarado == QLatin1String("double")) {
        bool ok = false;
        const double d = valor.toString().toDouble(&ok);
        return ok ? QVariant(d) : valor;
    }
    if (valor.typeId() == QMetaType::QString && tipoDeclarado == QLatin1String("QDate")) {
        const QDate fecha = QDate::fromString(valor.toString(), Qt::ISODate);
        return fecha.isValid() ? QVariant(fecha) : valor;
    }
    return Dialecto::Normalizar(valor, tipoDeclarado);
}
