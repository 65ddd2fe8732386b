#pragma once

#include "intercambio/preciosdelista.h"

#include <QDate>
#include <QString>
#include <functional>
#include <vector>

class QPagedPaintDevice;

/// A list on paper: what goes on it.
struct DocumentoLista {
    QString tienda;      ///< the shop's name
    CabeceraLista lista; ///< its name and period
    QDate impresion;     ///< the day it is printed
    int decimales = 2;   ///< the shop's
    QChar separador = QLatin1Char(',');
    std::vector<FilaPrecio> filas; ///< in the editor's order
};

/// The shop's name as the suite keeps it (opciones.nombretienda); empty when it has none.
QString LeerNombreTienda(ADODB::Connection &conexion);

/// The document of `lista` as the database has it now. Raises ErrorBD.
DocumentoLista LeerDocumentoLista(const ContextoMotor &contexto, qint32 lista,
                                  const QString &tienda);

/// How many pages `documento` takes on `dispositivo` (its page size and resolution).
int PaginasLista(const DocumentoLista &documento, QPagedPaintDevice &dispositivo);

/// Draws `documento` on `dispositivo`, a page after another: on each the shop, the list's
/// name and period, the date of printing and "Página N de M" above the columns code, product
/// (size, colour), standard price and list price. `progreso` is told each page done (page,
/// pages) and may stop the printing by answering false. False when the device refused to
/// paint or the printing was stopped.
bool DibujarLista(const DocumentoLista &documento, QPagedPaintDevice &dispositivo,
                  const std::function<bool(int, int)> &progreso = {});
