// "Exportar…": where to, and the export.
#include "intercambioui.h"

#include "intercambio/exportacion.h"
#include "platform/ui/mensajes.h"

#include <QDir>
#include <QFileDialog>
#include <QLocale>

namespace {

/// A list's name as a file's: what no file system takes becomes "_".
QString NombreFichero(const QString &nombre) {
    QString limpio = nombre.trimmed();
    for (QChar &c : limpio)
        if (QStringLiteral("/\\:*?\"<>|").contains(c) || c.unicode() < 32)
            c = u'_';
    return limpio.isEmpty() ? QStringLiteral("tarifa") : limpio;
}

} // namespace

void DialogoExportar(const ContextoMotor &contexto, qint32 lista, const QString &nombre,
                     QWidget *padre) {
    const QString ruta = QFileDialog::getSaveFileName(
        padre, QStringLiteral("Exportar la tarifa"),
        QDir::home().filePath(NombreFichero(nombre) + QStringLiteral(".csv")),
        QStringLiteral("Hoja CSV (*.csv);;Libro de Excel (*.xlsx)"));
    if (ruta.isEmpty())
        return;
    const ResultadoExportacion r =
        ::ExportarLista(contexto, lista, ruta, QLocale().decimalPoint().front());
    MsgBoxInformacion(r.error.isEmpty()
                          ? QStringLiteral("%1 precios exportados a %2.").arg(r.filas).arg(ruta)
                          : r.error);
}
