#include "mensajes.h"

#include "mensajesprueba.h"

#include <QApplication>
#include <QMessageBox>
#include <QQueue>

namespace {

struct Intercepcion {
    int activas = 0;
    QStringList mostrados;
    QQueue<bool> respuestas;
};

Intercepcion &intercepcion()
{
    static Intercepcion i;
    return i;
}

QMessageBox::StandardButton mostrar(QMessageBox::Icon icono, const QString &texto,
                                    QMessageBox::StandardButtons botones,
                                    QMessageBox::StandardButton porOmision)
{
    QMessageBox caja(icono, QApplication::applicationDisplayName(), texto, botones,
                     QApplication::activeWindow());
    caja.setDefaultButton(porOmision);
    return QMessageBox::StandardButton(caja.exec());
}

} // namespace

namespace mensajes_prueba {

bool Interceptando()
{
    return intercepcion().activas > 0;
}

void Registrar(const QString &texto)
{
    intercepcion().mostrados.append(texto);
}

} // namespace mensajes_prueba

void MsgBoxInformacion(const QString &texto)
{
    if (mensajes_prueba::Interceptando()) {
        mensajes_prueba::Registrar(texto);
        return;
    }
    mostrar(QMessageBox::Information, texto, QMessageBox::Ok, QMessageBox::Ok);
}

bool MsgBoxPregunta(const QString &texto)
{
    if (mensajes_prueba::Interceptando()) {
        Intercepcion &i = intercepcion();
        i.mostrados.append(texto);
        return i.respuestas.isEmpty() ? true : i.respuestas.dequeue();
    }
    return mostrar(QMessageBox::Question, texto, QMessageBox::Yes | QMessageBox::No,
                   QMessageBox::Yes) == QMessageBox::Yes;
}

RespuestasMensajes::RespuestasMensajes()
{
    Intercepcion &i = intercepcion();
    if (i.activas++ == 0) {
        i.mostrados.clear();
        i.respuestas.clear();
    }
}

RespuestasMensajes::~RespuestasMensajes()
{
    --intercepcion().activas;
}

void RespuestasMensajes::Responder(bool si)
{
    intercepcion().respuestas.enqueue(si);
}

QStringList RespuestasMensajes::Mostrados() const
{
    return intercepcion().mostrados;
}
