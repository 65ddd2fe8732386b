// A list's prices to a spreadsheet file.
#include "exportacion.h"

#include "csv.h"
#include "preciosdelista.h"
#include "xlsx.h"

#include <QFileInfo>
#include <QSaveFile>

namespace {

QString TextoPrecio(const std::optional<Importe> &precio, int decimales, QChar separador) {
    return precio ? precio->Texto(decimales, separador) : QString();
}

QStringList Campos(const FilaPrecio &fila, int decimales, QChar separador) {
    return {fila.codigo,
            fila.variante,
            fila.nombre,
            fila.talla,
            fila.color,
            TextoPrecio(fila.precioVenta, decimales, separador),
            TextoPrecio(fila.precio, decimales, separador)};
}

ResultadoExportacion ExportarCsv(const ContextoMotor &contexto, qint32 lista, const QString &ruta,
                                 QChar separadorDecimal) {
    ResultadoExportacion resultado;
    QSaveFile fichero(ruta);
    if (!fichero.open(QIODevice::WriteOnly)) {
        resultado.error =
            QStringLiteral("No se puede escribir %1: %2.").arg(ruta, fichero.errorString());
        return resultado;
    }
    EscritorCsv csv(fichero);
    bool escrito = csv.Linea(CabeceraExportacion());
    resultado.filas = LeerPreciosLista(contexto, lista, [&](const FilaPrecio &fila) {
        escrito = escrito && csv.Linea(Campos(fila, contexto.numDecimales, separadorDecimal));
    });
    if (!escrito || !fichero.commit())
        resultado.error =
            QStringLiteral("No se pudo escribir %1: %2.").arg(ruta, fichero.errorString());
    return resultado;
}

ResultadoExportacion ExportarXlsx(const ContextoMotor &contexto, qint32 lista,
                                  const QString &ruta) {
    ResultadoExportacion resultado;
    EscritorXlsx libro(ruta, contexto.numDecimales, {5, 6});
    if (!libro.Abierto()) {
        resultado.error = QStringLiteral("No se puede escribir %1.").arg(ruta);
        return resultado;
    }
    libro.Cabecera(CabeceraExportacion());
    resultado.filas = LeerPreciosLista(contexto, lista, [&](const FilaPrecio &fila) {
        libro.Linea(Campos(fila, contexto.numDecimales, QLatin1Char('.')));
    });
    resultado.error = libro.Cerrar();
    return resultado;
}

} // namespace

QStringList CabeceraExportacion() {
    return {QStringLiteral("codigo"), QStringLiteral("variante"), QStringLiteral("nombre"),
            QStringLiteral("talla"),  QStringLiteral("color"),    QStringLiteral("precio_venta"),
            QStringLiteral("precio")};
}

ResultadoExportacion ExportarLista(const ContextoMotor &contexto, qint32 lista, const QString &ruta,
                                   QChar separadorDecimal) {
    const QString extension = QFileInfo(ruta).suffix().toLower();
    if (extension == QLatin1String("csv"))
        return ExportarCsv(contexto, lista, ruta, separadorDecimal);
    if (extension == QLatin1String("xlsx"))
        return ExportarXlsx(contexto, lista, ruta);
    ResultadoExportacion resultado;
    resultado.error =
        QStringLiteral("El fichero %1 debe acabar en .csv o en .xlsx para saber cómo escribirlo.")
            .arg(ruta);
    return resultado;
}
