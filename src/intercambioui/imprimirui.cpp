// "Imprimir…": Qt's print preview of the list, with "Guardar como PDF", and the progress of
// the pages while they are drawn.
#include "intercambioui.h"
#include "nombrefichero.h"

#include "impresion/impresionlista.h"
#include "platform/ui/mensajes.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QPageSize>
#include <QPdfWriter>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QProgressDialog>
#include <QSaveFile>
#include <QToolBar>

using namespace Pantalla;

namespace {

/// Draws the document with a progress dialog that the operator may cancel. The dialog shows
/// from the first page, modal over the preview: each step it serves the screen's events (the
/// windows are redrawn, Cancelar answers), while the preview's own buttons, which would start
/// another drawing, wait.
bool DibujarConProgreso(const DocumentoLista &documento, QPagedPaintDevice &dispositivo,
                        QWidget *padre) {
    QProgressDialog progreso(
        QStringLiteral("Preparando las páginas de %1…").arg(documento.lista.nombre),
        QStringLiteral("Cancelar"), 0, 1, padre);
    progreso.setWindowModality(Qt::WindowModal);
    progreso.setMinimumDuration(0);
    progreso.setValue(0);
    return DibujarLista(documento, dispositivo, [&progreso](int pagina, int paginas) {
        progreso.setMaximum(paginas);
        progreso.setValue(pagina);
        return !progreso.wasCanceled();
    });
}

void GuardarPdf(const DocumentoLista &documento, QWidget *padre) {
    QString ruta = PedirFicheroGuardar(
        padre, QStringLiteral("Guardar como PDF"),
        QDir::home().filePath(NombreFichero(documento.lista.nombre) + QStringLiteral(".pdf")),
        QStringLiteral("PDF (*.pdf)"));
    if (ruta.isEmpty())
        return;
    if (QFileInfo(ruta).suffix().isEmpty())
        ruta += QStringLiteral(".pdf");
    QSaveFile destino(ruta);
    bool bien = destino.open(QIODevice::WriteOnly);
    if (bien) {
        QPdfWriter pdf(&destino);
        pdf.setPageSize(QPageSize(QPageSize::A4));
        pdf.setPageMargins(QMarginsF(15, 15, 15, 15), QPageLayout::Millimeter);
        pdf.setTitle(documento.lista.nombre);
        bien = DibujarConProgreso(documento, pdf, padre);
    }
    // A cancelled or failed PDF leaves whatever was at its place.
    if (bien && destino.commit())
        MsgBoxInformacion(QStringLiteral("La tarifa se ha guardado en %1.").arg(ruta));
    else if (!bien)
        destino.cancelWriting();
    else
        MsgBoxInformacion(
            QStringLiteral("No se pudo escribir %1: %2").arg(ruta, destino.errorString()));
}

} // namespace

void DialogoImprimir(const ContextoMotor &contexto, qint32 lista, const QString &tienda,
                     QWidget *padre) {
    const DocumentoLista documento = LeerDocumentoLista(
        contexto, lista, tienda.isEmpty() ? LeerNombreTienda(*contexto.conexion) : tienda);
    QPrinter impresora(QPrinter::HighResolution);
    impresora.setPageSize(QPageSize(QPageSize::A4));
    impresora.setPageMargins(QMarginsF(15, 15, 15, 15), QPageLayout::Millimeter);
    impresora.setDocName(documento.lista.nombre);
    QPrintPreviewDialog vista(&impresora, padre);
    vista.setWindowTitle(QStringLiteral("Imprimir %1").arg(documento.lista.nombre));
    QObject::connect(&vista, &QPrintPreviewDialog::paintRequested, &vista,
                     [&documento, &vista](QPrinter *destino) {
                         DibujarConProgreso(documento, *destino, &vista);
                     });
    if (QToolBar *barra = vista.findChild<QToolBar *>()) {
        barra->addSeparator();
        QAction *pdf = barra->addAction(QStringLiteral("Guardar como PDF"));
        QObject::connect(pdf, &QAction::triggered, &vista,
                         [&documento, &vista] { GuardarPdf(documento, &vista); });
    }
    vista.exec();
}
