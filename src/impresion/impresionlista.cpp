// A price list laid out on pages: a heading on every page, then as many rows as fit.
#include "impresionlista.h"

#include "platform/datos/recordset.h"
#include "platform/datos/regional.h"

#include <QFontMetricsF>
#include <QPagedPaintDevice>
#include <QPainter>

using namespace Sistema;

namespace {

/// Where everything goes on a page, in the device's pixels.
struct Maqueta {
    QRectF pagina;
    QFont letra;
    QFont titulo;
    double alto = 0;     ///< of a row
    double cabecera = 0; ///< height of the heading, column titles included
    int filasPorPagina = 1;
    double columnas[4] = {}; ///< left edge of code, product, standard price, list price
    double finPrecios = 0;

    Maqueta(QPagedPaintDevice &dispositivo) {
        const QPageLayout maqueta = dispositivo.pageLayout();
        const double ppp = dispositivo.logicalDpiY();
        const QRectF puntos = maqueta.paintRect(QPageLayout::Point);
        const double escala = ppp / 72.0;
        pagina = QRectF(0, 0, puntos.width() * escala, puntos.height() * escala);
        letra = QFont(QStringLiteral("DejaVu Sans"));
        letra.setPointSizeF(9);
        titulo = letra;
        titulo.setPointSizeF(13);
        titulo.setBold(true);
        // The fonts are sized for the device, whatever its resolution.
        const QFontMetricsF medida(letra, &dispositivo);
        const QFontMetricsF medidaTitulo(titulo, &dispositivo);
        alto = medida.height() * 1.35;
        cabecera = medidaTitulo.height() * 1.3 + alto * 3.5;
        const double pie = alto * 1.5;
        filasPorPagina = qMax(1, int((pagina.height() - cabecera - pie) / alto));
        const double ancho = pagina.width();
        columnas[0] = 0;
        columnas[1] = ancho * 0.16;
        columnas[2] = ancho * 0.66;
        columnas[3] = ancho * 0.83;
        finPrecios = ancho;
    }
};

QString Producto(const FilaPrecio &fila) {
    if (fila.talla.isEmpty() && fila.color.isEmpty())
        return fila.nombre;
    return QStringLiteral("%1 (%2, %3)").arg(fila.nombre, fila.talla, fila.color);
}

QString Precio(const std::optional<Importe> &precio, const DocumentoLista &d) {
    return precio ? precio->Texto(d.decimales, d.separador) : QString();
}

void Encabezado(QPainter &p, const Maqueta &m, const DocumentoLista &d, int pagina, int paginas) {
    const QFontMetricsF medidaTitulo(m.titulo, p.device());
    double y = 0;
    p.setFont(m.titulo);
    p.drawText(QRectF(0, y, m.pagina.width(), medidaTitulo.height()),
               Qt::AlignLeft | Qt::AlignVCenter, d.tienda);
    y += medidaTitulo.height() * 1.3;
    p.setFont(m.letra);
    const QString periodo =
        QStringLiteral("%1 (del %2 al %3)")
            .arg(d.lista.nombre, FechaATexto(d.lista.desde), FechaATexto(d.lista.hasta));
    p.drawText(QRectF(0, y, m.pagina.width() * 0.7, m.alto), Qt::AlignLeft | Qt::AlignVCenter,
               periodo);
    p.drawText(QRectF(0, y, m.pagina.width(), m.alto), Qt::AlignRight | Qt::AlignVCenter,
               QStringLiteral("Impresa el %1").arg(FechaATexto(d.impresion)));
    y += m.alto;
    p.drawText(QRectF(0, y, m.pagina.width(), m.alto), Qt::AlignRight | Qt::AlignVCenter,
               QStringLiteral("Página %1 de %2").arg(pagina).arg(paginas));
    y += m.alto * 1.2;
    QFont negrita = m.letra;
    negrita.setBold(true);
    p.setFont(negrita);
    const QStringList titulos{QStringLiteral("Código"), QStringLiteral("Producto"),
                              QStringLiteral("Precio venta"), QStringLiteral("Precio tarifa")};
    for (int c = 0; c < 4; ++c) {
        const double fin = c < 3 ? m.columnas[c + 1] : m.finPrecios;
        p.drawText(QRectF(m.columnas[c], y, fin - m.columnas[c] - 4, m.alto),
                   (c >= 2 ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter, titulos[c]);
    }
    y += m.alto;
    p.drawLine(QPointF(0, y), QPointF(m.pagina.width(), y));
    p.setFont(m.letra);
}

void Fila(QPainter &p, const Maqueta &m, const DocumentoLista &d, const FilaPrecio &fila,
          double y) {
    const QFontMetricsF medida(m.letra, p.device());
    const QString codigo = fila.variante.isEmpty() ? fila.codigo : fila.variante;
    const QString textos[4] = {codigo, Producto(fila), Precio(fila.precioVenta, d),
                               Precio(fila.precio, d)};
    for (int c = 0; c < 4; ++c) {
        const double fin = c < 3 ? m.columnas[c + 1] : m.finPrecios;
        const double ancho = fin - m.columnas[c] - 4;
        // A name longer than its column ends in "…" rather than running into the prices.
        p.drawText(QRectF(m.columnas[c], y, ancho, m.alto),
                   (c >= 2 ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter,
                   medida.elidedText(textos[c], Qt::ElideRight, ancho));
    }
}

} // namespace

QString LeerNombreTienda(ADODB::Connection &conexion) {
    ADODB::Recordset rs;
    rs.Open(QStringLiteral("select nombretienda from opciones"), conexion);
    return rs.RecordCount() > 0 ? rs.Fields(0).Texto() : QString();
}

DocumentoLista LeerDocumentoLista(const ContextoMotor &contexto, qint32 lista,
                                  const QString &tienda) {
    DocumentoLista d;
    d.tienda = tienda;
    if (const auto cabecera = LeerCabeceraLista(*contexto.conexion, lista))
        d.lista = *cabecera;
    d.impresion = QDate::currentDate();
    d.decimales = contexto.numDecimales;
    d.separador = QLocale().decimalPoint().front();
    LeerPreciosLista(contexto, lista, [&d](const FilaPrecio &fila) { d.filas.push_back(fila); });
    return d;
}

int PaginasLista(const DocumentoLista &documento, QPagedPaintDevice &dispositivo) {
    const Maqueta m(dispositivo);
    const int filas = int(documento.filas.size());
    return qMax(1, (filas + m.filasPorPagina - 1) / m.filasPorPagina);
}

bool DibujarLista(const DocumentoLista &documento, QPagedPaintDevice &dispositivo,
                  const std::function<bool(int, int)> &progreso) {
    const Maqueta m(dispositivo);
    const int paginas = PaginasLista(documento, dispositivo);
    QPainter p;
    if (!p.begin(&dispositivo))
        return false;
    size_t siguiente = 0;
    for (int pagina = 1; pagina <= paginas; ++pagina) {
        if (pagina > 1 && !dispositivo.newPage())
            return false;
        Encabezado(p, m, documento, pagina, paginas);
        double y = m.cabecera;
        for (int i = 0; i < m.filasPorPagina && siguiente < documento.filas.size(); ++i) {
            Fila(p, m, documento, documento.filas[siguiente++], y);
            y += m.alto;
        }
        if (progreso && !progreso(pagina, paginas))
            return false;
    }
    return p.end();
}
