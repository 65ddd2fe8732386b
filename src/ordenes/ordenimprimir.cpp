// tarifas imprimir LISTA FICHERO.pdf: the list on paper, as a PDF.
#include "orden.h"

#include "impresion/impresionlista.h"

#include <QFileInfo>
#include <QPageSize>
#include <QPdfWriter>
#include <QSaveFile>

namespace Ordenes {

namespace {

int Imprimir(const QCommandLineParser &, const QStringList &argumentos, Consola &consola) {
    const QString &fichero = argumentos[1];
    if (QFileInfo(fichero).suffix().toLower() != QLatin1String("pdf"))
        throw UsoIncorrecto{QStringLiteral("el fichero debe acabar en .pdf")};
    SesionOrden sesion;
    const std::optional<qint32> lista = sesion.Lista(argumentos[0], consola);
    if (!lista)
        return Rechazado;
    const DocumentoLista documento =
        LeerDocumentoLista(sesion.Contexto(), *lista, sesion.NombreTienda());
    // The file appears whole, or what was there stays.
    QSaveFile destino(fichero);
    if (!destino.open(QIODevice::WriteOnly)) {
        consola.errores << "tarifas imprimir: no se puede escribir " << fichero << ": "
                        << destino.errorString() << "\n";
        return Rechazado;
    }
    int paginas = 0;
    {
        QPdfWriter pdf(&destino);
        pdf.setPageSize(QPageSize(QPageSize::A4));
        pdf.setPageMargins(QMarginsF(15, 15, 15, 15), QPageLayout::Millimeter);
        pdf.setTitle(documento.lista.nombre);
        pdf.setCreator(QStringLiteral("tarifas"));
        paginas = PaginasLista(documento, pdf);
        if (!DibujarLista(documento, pdf)) {
            consola.errores << "tarifas imprimir: no se pudo dibujar " << fichero << "\n";
            return Rechazado;
        }
    }
    if (!destino.commit()) {
        consola.errores << "tarifas imprimir: no se pudo escribir " << fichero << ": "
                        << destino.errorString() << "\n";
        return Rechazado;
    }
    consola.salida << "imprimir: " << documento.filas.size() << " precios en " << paginas
                   << (paginas == 1 ? " página, " : " páginas, ") << fichero << "\n";
    return Hecho;
}

} // namespace

DefinicionOrden OrdenImprimir() {
    return {QStringLiteral("imprimir"),
            QStringLiteral("LISTA FICHERO.pdf"),
            QStringLiteral("Escribe la tarifa impresa, con sus páginas numeradas, en un PDF."),
            {},
            {QStringLiteral("LISTA"), QStringLiteral("FICHERO.pdf")},
            Imprimir};
}

} // namespace Ordenes
