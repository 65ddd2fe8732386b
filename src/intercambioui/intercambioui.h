#pragma once

#include "motor/contexto.h"

#include <QString>

class QWidget;

/// The screens' items "Exportar…", "Importar…" and "Imprimir…" of a list: each a dialog of its
/// own over the exchange of files and the printing. `nombre` is the list's name, which the
/// file dialogs propose as the file's name. No dialog waits while a unit of work is open.

/// Asks where (CSV or XLSX) and writes the list's prices there; says how it went.
void DialogoExportar(const ContextoMotor &contexto, qint32 lista, const QString &nombre,
                     QWidget *padre);
/// Asks for a CSV, shows its dry run (counts and every refused line, with the mode to choose),
/// then imports on "Importar" (or "Importar las válidas" with refused lines). True when
/// something was written, so that the screen shows the list again.
bool DialogoImportar(const ContextoMotor &contexto, qint32 lista, const QString &nombre,
                     QWidget *padre);
/// Qt's print preview of the list, with "Guardar como PDF"; progress is shown while the pages
/// are drawn. An empty `tienda` is the name the suite keeps for the shop.
void DialogoImprimir(const ContextoMotor &contexto, qint32 lista, const QString &tienda,
                     QWidget *padre);
