#pragma once

#include "motor/importe.h"

#include <QString>
#include <QStringList>
#include <optional>

class QDialog;
class QLabel;
class QPushButton;
class QTableWidget;

/// The small pieces every dialog of the work on whole lists is made of.

/// A button named `nombre` (for tests) that Enter doesn't press unless it is the default.
QPushButton *Boton(const QString &texto, const char *nombre);
/// The line where a dialog says what is wrong with the input (lblMensaje), in dark red.
QLabel *EtiquetaMensaje();
/// A price as the operator reads it, with the shop's decimals; "—" for none.
QString TextoPrecio(const std::optional<Importe> &precio, int decimales);
/// A read-only table of whole rows, one selected at a time, named `nombre` (for tests), with
/// these column titles; the last column takes the width left.
QTableWidget *Tabla(const char *nombre, const QStringList &titulos);
/// Appends a row of texts to `t`.
void Fila(QTableWidget *t, const QStringList &celdas);
/// Gives `dialogo` its first size, `ancho` × `alto` or the least its contents need at that
/// width, and keeps it from being made shorter. Its wrapped lines (the message, the preview's
/// summary) make Qt give up the window's own minimum, and the choices would be squeezed into
/// each other.
void Dimensionar(QDialog &dialogo, int ancho, int alto);
