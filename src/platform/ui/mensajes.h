#pragma once

#include <QString>
#include <QStringList>

/// Message boxes, titled with the program's title (QApplication::applicationDisplayName).
/// Tests can answer them: see RespuestasMensajes.

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

/// For tests: while one of these lives, boxes are not shown; each is recorded and answered
/// from the queue (Yes when it runs dry). A box (or an error report) asked for while a unit of
/// work is open is recorded with MarcaDentroDeUnidad before its text, so that no comparison
/// of the texts passes, and counted.
class RespuestasMensajes {
  public:
    RespuestasMensajes();
    ~RespuestasMensajes();
    void Responder(bool si);
    QStringList Mostrados() const;
    /// The title of each box recorded, in the same order: empty for the program's own title.
    QStringList Titulos() const;
    /// How many of the boxes recorded were asked for inside a unit of work.
    int DentroDeUnidad() const;
};

/// What a box recorded inside a unit of work starts with.
inline const QString MarcaDentroDeUnidad = QStringLiteral("[dentro de una unidad de trabajo] ");
