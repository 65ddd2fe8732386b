#pragma once

#include <QString>
#include <QStringList>

/// Message boxes, titled with the program's title (QApplication::applicationDisplayName).
/// Tests can answer them: see RespuestasMensajes.

/// An information box with the one button OK.
void MsgBoxInformacion(const QString &texto);
/// A question with Yes and No; true for Yes.
bool MsgBoxPregunta(const QString &texto);

/// For tests: while one of these lives, boxes are not shown; each is recorded and answered
/// from the queue (Yes when it runs dry).
class RespuestasMensajes {
public:
    RespuestasMensajes();
    ~RespuestasMensajes();
    void Responder(bool si);
    QStringList Mostrados() const;
};
