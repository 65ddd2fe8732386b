#pragma once

#include <QString>

class QWidget;

namespace Pantalla {

/// Message boxes, titled with the program's title (QApplication::applicationDisplayName).
/// While a Contestador is installed, it answers them instead of the operator.

/// An information box with the one button OK.
void MsgBoxInformacion(const QString &texto);
/// The error report's box: a critical icon and OK. Not recorded in tests (the report records
/// its text itself).
void MsgBoxError(const QString &texto);
/// The icon of a question box.
enum class IconoPregunta { Pregunta, Ninguno };

/// A question with Yes and No, Yes the default; true for Yes. Titled `titulo`, or with the
/// program's title when it is empty; `Ninguno` makes the plain box with no icon (the old
/// platform's button code 4).
bool MsgBoxPregunta(const QString &texto, const QString &titulo = {},
                    IconoPregunta icono = IconoPregunta::Pregunta);

/// The file to write to, asked with the system's file dialog titled `titulo`, which proposes
/// the path `propuesto` and offers the `filtros` ("Hoja CSV (*.csv);;PDF (*.pdf)"). Empty when
/// the operator cancels. `elegido`, when given, gets the filter the operator left chosen.
QString PedirFicheroGuardar(QWidget *padre, const QString &titulo, const QString &propuesto,
                            const QString &filtros, QString *elegido = nullptr);
/// The same for a file to read, which must exist.
QString PedirFicheroAbrir(QWidget *padre, const QString &titulo, const QString &carpeta,
                          const QString &filtros);

/// Who answers the boxes in the operator's place (the tests' RespuestasMensajes): while one is
/// installed, no box is shown; every one, the error report's included, goes to Contestar with
/// its title (empty for the program's own), and a question gets its answer (true for Yes).
/// No file dialog is shown either: ContestarFichero gives the file (empty: cancelled).
class Contestador {
  public:
    virtual ~Contestador() = default;
    virtual bool Contestar(const QString &texto, const QString &titulo) = 0;
    virtual QString ContestarFichero(const QString &titulo, const QString &propuesto) = 0;
};
/// The installed one (nullptr: the operator answers). Not owned.
Contestador *&ContestadorMensajes();

} // namespace Pantalla
