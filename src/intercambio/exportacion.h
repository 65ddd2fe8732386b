#pragma once

#include "motor/contexto.h"

#include <QString>
#include <QStringList>

/// The header of an exported list, in its order: codigo, variante, nombre, talla, color,
/// precio_venta, precio.
QStringList CabeceraExportacion();

struct ResultadoExportacion {
    int filas = 0;
    QString error; ///< empty when the file is in its place, else the sentence for the operator
};

/// Writes every price of `lista` to `ruta`, as a CSV or an XLSX workbook by the file's
/// extension (any case), rows in the editor's order. A CSV's prices carry `separadorDecimal`
/// (the regional one), a workbook's are numbers; both with the shop's decimals. The file
/// appears whole or not at all; what was at its place stays when the export fails. Raises
/// ErrorBD when the database fails.
ResultadoExportacion ExportarLista(const ContextoMotor &contexto, qint32 lista, const QString &ruta,
                                   QChar separadorDecimal);
