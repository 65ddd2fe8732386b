#include "control.h"

#include "form.h"
#include "twips.h"

#include <QPalette>

namespace Pantalla {

Control::Control(const QString &nombre, Control *padre, Form *pantalla)
    : QObject(pantalla), contenedor(padre), form(pantalla) {
    setObjectName(nombre);
}

Control::~Control() {
    // A control destroyed before its window takes its widget along; when the window went
    // first the pointer is already null.
    delete w.data();
}

void Control::setLeft(double v) {
    left = v;
    aplicarGeometria();
}

void Control::setTop(double v) {
    top = v;
    aplicarGeometria();
}

void Control::setWidth(double v) {
    width = v < 0 ? 0 : v;
    aplicarGeometria();
}

void Control::setHeight(double v) {
    height = v < 0 ? 0 : v;
    aplicarGeometria();
}

void Control::Move(double l, double t, double ancho, double alto) {
    left = l;
    top = t;
    width = ancho < 0 ? 0 : ancho;
    height = alto < 0 ? 0 : alto;
    aplicarGeometria();
}

void Control::aplicarGeometria() {
    if (w)
        w->setGeometry(APixeles(left), APixeles(top), APixeles(width), APixeles(height));
}

void Control::setVisible(bool v) {
    visible = v;
    if (!w)
        return;
    // A widget with no parent is a window of its own (a control tested alone): it is only
    // ever hidden here, never shown behind the caller's back.
    if (w->parentWidget() || !v)
        w->setVisible(v);
}

bool Control::Enabled() const {
    return w ? w->isEnabled() : habilitado;
}

void Control::setEnabled(bool v) {
    habilitado = v;
    if (w)
        w->setEnabled(v);
}

namespace {

void pintarFondo(QWidget *w, ColorOLE c) {
    QPalette p = w->palette();
    const QColor color = AColor(c);
    for (auto rol : {QPalette::Window, QPalette::Base, QPalette::Button}) {
        p.setColor(QPalette::Active, rol, color);
        p.setColor(QPalette::Inactive, rol, color);
        p.setColor(QPalette::Disabled, rol, color);
    }
    w->setPalette(p);
    w->setAutoFillBackground(true);
}

void pintarTexto(QWidget *w, ColorOLE c) {
    QPalette p = w->palette();
    const QColor color = AColor(c);
    for (auto rol : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        p.setColor(QPalette::Active, rol, color);
        p.setColor(QPalette::Inactive, rol, color);
    }
    w->setPalette(p);
}

} // namespace

ColorOLE Control::BackColor() const {
    if (back != SinColor || !w)
        return back;
    return DeColor(w->palette().color(w->backgroundRole()));
}

void Control::setBackColor(ColorOLE c) {
    back = c;
    if (w && c != SinColor)
        pintarFondo(w, c);
}

ColorOLE Control::ForeColor() const {
    if (fore != SinColor || !w)
        return fore;
    return DeColor(w->palette().color(w->foregroundRole()));
}

void Control::setForeColor(ColorOLE c) {
    fore = c;
    if (w && c != SinColor)
        pintarTexto(w, c);
}

QFont Control::Font() const {
    return w ? w->font() : fuente;
}

void Control::setFont(const QFont &f) {
    fuente = f;
    if (w)
        w->setFont(f);
}

QString Control::ToolTipText() const {
    return w ? w->toolTip() : QString();
}

void Control::setToolTipText(const QString &t) {
    if (w)
        w->setToolTip(t);
}

void Control::SetFocus() {
    if (w)
        w->setFocus(Qt::OtherFocusReason);
}

QWidget *Control::widgetContenedor() const {
    if (contenedor)
        return contenedor->widget();
    return form ? form->ventana() : nullptr;
}

void Control::ponerWidget(QWidget *widget) {
    w = widget;
    if (!w)
        return;
    w->setObjectName(objectName());
    if (QWidget *padre = widgetContenedor())
        w->setParent(padre);
    aplicarGeometria();
    if (back != SinColor)
        pintarFondo(w, back);
    if (fore != SinColor)
        pintarTexto(w, fore);
    if (!habilitado)
        w->setEnabled(false);
    setVisible(visible);
}

} // namespace Pantalla
