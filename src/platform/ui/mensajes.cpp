#include "mensajes.h"

#include <QAbstractButton>
#include <QApplication>
#include <QFileDialog>
#include <QMessageBox>

namespace Pantalla {

namespace {

QMessageBox::StandardButton Mostrar(QMessageBox::Icon icono, const QString &titulo,
                                    const QString &texto, QMessageBox::StandardButtons botones,
                                    QMessageBox::StandardButton porOmision) {
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

Contestador *&ContestadorMensajes() {
    static Contestador *instalado = nullptr;
    return instalado;
}

void MsgBoxInformacion(const QString &texto) {
    if (Contestador *c = ContestadorMensajes()) {
        c->Contestar(texto, {});
        return;
    }
    Mostrar(QMessageBox::Information, {}, texto, QMessageBox::Ok, QMessageBox::Ok);
}

void MsgBoxError(const QString &texto) {
    Mostrar(QMessageBox::Critical, {}, texto, QMessageBox::Ok, QMessageBox::Ok);
}

bool MsgBoxPregunta(const QString &texto, const QString &titulo, IconoPregunta icono) {
    if (Contestador *c = ContestadorMensajes())
        return c->Contestar(texto, titulo);
    const QMessageBox::Icon dibujo =
        icono == IconoPregunta::Ninguno ? QMessageBox::NoIcon : QMessageBox::Question;
    return Mostrar(dibujo, titulo, texto, QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes) ==
           QMessageBox::Yes;
}

QString PedirFicheroGuardar(QWidget *padre, const QString &titulo, const QString &propuesto,
                            const QString &filtros, QString *elegido) {
    if (Contestador *c = ContestadorMensajes())
        return c->ContestarFichero(titulo, propuesto);
    return QFileDialog::getSaveFileName(padre, titulo, propuesto, filtros, elegido);
}

QString PedirFicheroAbrir(QWidget *padre, const QString &titulo, const QString &carpeta,
                          const QString &filtros) {
    if (Contestador *c = ContestadorMensajes())
        return c->ContestarFichero(titulo, carpeta);
    return QFileDialog::getOpenFileName(padre, titulo, carpeta, filtros);
}

} // namespace Pantalla
