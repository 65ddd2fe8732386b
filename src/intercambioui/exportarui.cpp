// "Exportar…": where to, and the export.
#include "intercambioui.h"
#include "nombrefichero.h"

#include "intercambio/exportacion.h"
#include "platform/ui/mensajes.h"

#include <QDir>
#include <QFileInfo>
#include <QLocale>

using namespace Pantalla;

void DialogoExportar(const ContextoMotor &contexto, qint32 lista, const QString &nombre,
                     QWidget *padre) {
    QString filtro;
    QString ruta =
        PedirFicheroGuardar(padre, QStringLiteral("Exportar la tarifa"),
                            QDir::home().filePath(NombreFichero(nombre) + QStringLiteral(".csv")),
                            QStringLiteral("Hoja CSV (*.csv);;Libro de Excel (*.xlsx)"), &filtro);
    if (ruta.isEmpty())
        return;
    // A name typed without the extension takes the one of the kind of file left chosen.
    const QString extension = QFileInfo(ruta).suffix().toLower();
    if (extension != u"csv" && extension != u"xlsx")
        ruta += filtro.contains(QLatin1String("xlsx")) ? QStringLiteral(".xlsx")
                                                       : QStringLiteral(".csv");
    const ResultadoExportacion r =
        ::ExportarLista(contexto, lista, ruta, QLocale().decimalPoint().front());
    MsgBoxInformacion(r.error.isEmpty()
                          ? QStringLiteral("%1 precios exportados a %2.").arg(r.filas).arg(ruta)
                          : r.error);
}
