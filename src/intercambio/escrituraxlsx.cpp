// The workbook of an exported list, through libxlsxwriter.
#include "xlsx.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cstdio>
#include <xlsxwriter.h>

struct EscritorXlsx::Libro {
    QString ruta;
    QString parcial; ///< where it is written until it is whole
    QByteArray directorioTemporal;
    QList<int> columnasPrecio;
    lxw_workbook *libro = nullptr;
    lxw_worksheet *hoja = nullptr;
    lxw_format *titulo = nullptr;
    lxw_format *precio = nullptr;
    lxw_row_t fila = 0;
    lxw_error error = LXW_NO_ERROR;

    void Anotar(lxw_error e) {
        if (error == LXW_NO_ERROR)
            error = e;
    }
};

EscritorXlsx::EscritorXlsx(const QString &ruta, int decimales, QList<int> columnasPrecio)
    : libro(std::make_unique<Libro>()) {
    Libro &l = *libro;
    l.ruta = ruta;
    l.parcial = ruta + QStringLiteral(".parcial");
    l.columnasPrecio = std::move(columnasPrecio);
    // Rows go to disk as they are written: a list of any length takes little memory. Its
    // temporary files live beside the workbook rather than in a /tmp that may be memory.
    l.directorioTemporal = QFile::encodeName(QFileInfo(ruta).absolutePath());
    lxw_workbook_options opciones{};
    opciones.constant_memory = LXW_TRUE;
    opciones.tmpdir = l.directorioTemporal.data();
    l.libro = workbook_new_opt(QFile::encodeName(l.parcial).constData(), &opciones);
    if (!l.libro)
        return;
    l.hoja = workbook_add_worksheet(l.libro, "Tarifa");
    l.titulo = workbook_add_format(l.libro);
    format_set_bold(l.titulo);
    l.precio = workbook_add_format(l.libro);
    const QByteArray formato =
        decimales > 0 ? "0." + QByteArray(qMin(decimales, 10), '0') : QByteArray("0");
    format_set_num_format(l.precio, formato.constData());
    worksheet_freeze_panes(l.hoja, 1, 0);
}

EscritorXlsx::~EscritorXlsx() {
    if (libro->libro) {
        // Not closed: the partial file goes, and whatever was at the place stays.
        workbook_close(libro->libro);
        QFile::remove(libro->parcial);
    }
}

bool EscritorXlsx::Abierto() const {
    return libro->libro && libro->hoja;
}

void EscritorXlsx::Cabecera(const QStringList &nombres) {
    Libro &l = *libro;
    for (qsizetype c = 0; c < nombres.size(); ++c) {
        const QByteArray texto = nombres[c].toUtf8();
        l.Anotar(worksheet_write_string(l.hoja, l.fila, lxw_col_t(c), texto.constData(), l.titulo));
        worksheet_set_column(l.hoja, lxw_col_t(c), lxw_col_t(c),
                             l.columnasPrecio.contains(int(c)) ? 12 : 16, nullptr);
    }
    ++l.fila;
}

void EscritorXlsx::Linea(const QStringList &campos) {
    Libro &l = *libro;
    for (qsizetype c = 0; c < campos.size(); ++c) {
        const QString &campo = campos[c];
        if (campo.isEmpty())
            continue;
        if (l.columnasPrecio.contains(int(c))) {
            // The spreadsheet keeps a number in binary: the decimal text of the price, of
            // at most 15 digits, reads back exactly in it.
            l.Anotar(
                worksheet_write_number(l.hoja, l.fila, lxw_col_t(c), campo.toDouble(), l.precio));
        } else {
            const QByteArray texto = campo.toUtf8();
            l.Anotar(
                worksheet_write_string(l.hoja, l.fila, lxw_col_t(c), texto.constData(), nullptr));
        }
    }
    ++l.fila;
}

QString EscritorXlsx::Cerrar() {
    Libro &l = *libro;
    if (!l.libro)
        return QStringLiteral("No se puede escribir en la carpeta de %1.").arg(l.ruta);
    const lxw_error alCerrar = workbook_close(l.libro);
    l.libro = nullptr;
    l.Anotar(alCerrar);
    if (l.error != LXW_NO_ERROR) {
        QFile::remove(l.parcial);
        QString causa = QString::fromUtf8(lxw_strerror(l.error));
        while (causa.endsWith(QLatin1Char('.')))
            causa.chop(1);
        return QStringLiteral("No se pudo escribir %1: %2.").arg(l.ruta, causa);
    }
    if (std::rename(QFile::encodeName(l.parcial).constData(),
                    QFile::encodeName(l.ruta).constData()) != 0) {
        QFile::remove(l.parcial);
        return QStringLiteral("No se pudo dejar el fichero en %1.").arg(l.ruta);
    }
    return QString();
}
