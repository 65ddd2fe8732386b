#include "mensajes.h"

#include "mensajesprueba.h"

#include "platform/datos/conexion.h"

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QQueue>

namespace {

struct Intercepcion {
    int activas = 0;
    QStringList mostrados;
    QStringList titulos;
    QQueue<bool> respuestas;
    int enUnidad = 0;
};

Intercepcion &intercepcion() {
    static Intercepcion i;
    return i;
}

QMessageBox::StandardButton mostrar(QMessageBox::Icon icono, const QString &titulo,
                                    const QString &texto, QMessageBox::StandardButtons botones,
                                    QMessageBox::StandardButton porOmision) {
    if (ADODB::Connection::HayUnidadAbierta())
        qWarning("Se muestra un mensaje con una unidad de trabajo abierta: %s", qPrintable(texto));
    QMessageBox caja(icono, titulo.isEmpty() ? QApplication::applicationDisplayName() : titulo,
                     texto, botones, QApplication::activeWindow());
    caja.setDefaultButton(porOmision);
    // The shop's boxes speak Spanish whatever translations Qt finds on the machine.
    const std::pair<QMessageBox::StandardButton, QString> textos[] = {
        {QMessageBox::Ok, QStringLiteral("Aceptar")},
        {QMessageBox::Yes, QStringLiteral("&Sí")},
        {QMessageBox::No, QStringLiteral("&No")},
    };
    for (const auto &[boton, rotulo] : textos)
        if (QAbstractButton *b = caja.button(boton))
            b->setText(rotulo);
    return QMessageBox::StandardButton(caja.exec());
}

} // namespace

namespace mensajes_prueba {

bool Interceptando() {
    return intercepcion().activas > 0;
}

void Registrar(const QString &texto, const QString &titulo) {
    // A box while a unit of work is open keeps the unit's locks (on SQLite, the whole file)
    // from every other terminal for as long as the operator takes: a fault of the program,
    // which a test must see.
    if (ADODB::Connection::HayUnidadAbierta()) {
        ++intercepcion().enUnidad;
        intercepcion().mostrados.append(MarcaDentroDeUnidad + texto);
        intercepcion().titulos.append(titulo);
        return;
    }
    intercepcion().mostrados.append(texto);
    intercepcion().titulos.append(titulo);
}

} // namespace mensajes_prueba

void MsgBoxInformacion(const QString &texto) {
    if (mensajes_prueba::Interceptando()) {
        mensajes_prueba::Registrar(texto);
        return;
    }
    mostrar(QMessageBox::Information, {}, texto, QMessageBox::Ok, QMessageBox::Ok);
}

void MsgBoxError(const QString &texto) {
    mostrar(QMessageBox::Critical, {}, texto, QMessageBox::Ok, QMessageBox::Ok);
}

bool MsgBoxPregunta(const QString &texto, const QString &titulo, IconoPregunta icono) {
    if (mensajes_prueba::Interceptando()) {
        mensajes_prueba::Registrar(texto, titulo);
        Intercepcion &i = intercepcion();
        return i.respuestas.isEmpty() ? true : i.respuestas.dequeue();
    }
    const QMessageBox::Icon dibujo =
        icono == IconoPregunta::Ninguno ? QMessageBox::NoIcon : QMessageBox::Question;
    return mostrar(dibujo, titulo, texto, QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes) ==
           QMessageBox::Yes;
}

RespuestasMensajes::RespuestasMensajes() {
    Intercepcion &i = intercepcion();
    if (i.activas++ == 0) {
        i.enUnidad = 0;
        i.mostrados.clear();
        i.titulos.clear();
        i.respuestas.clear();
    }
}

RespuestasMensajes::~RespuestasMensajes() {
    --intercepcion().activas;
}

void RespuestasMensajes::Responder(bool si) {
    intercepcion().respuestas.enqueue(si);
}

QStringList RespuestasMensajes::Mostrados() const {
    return intercepcion().mostrados;
}

QStringList RespuestasMensajes::Titulos() const {
    return intercepcion().titulos;
}

int RespuestasMensajes::DentroDeUnidad() const {
    return intercepcion().enUnidad;
}
