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
    delete widgetPropio.data();
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
    if (widgetPropio)
        widgetPropio->setGeometry(APixeles(left), APixeles(top), APixeles(width), APixeles(height));
}

void Control::setVisible(bool v) {
    visible = v;
    if (!widgetPropio)
        return;
    // A widget with no parent is a window of its own (a control tested alone): it is only
    // ever hidden here, never shown behind the caller's back.
    if (widgetPropio->parentWidget() || !v)
        widgetPropio->setVisible(v);
}

bool Control::Enabled() const {
    return widgetPropio ? widgetPropio->isEnabled() : habilitado;
}

void Control::setEnabled(bool v) {
    habilitado = v;
    if (widgetPropio)
        widgetPropio->setEnabled(v);
}

namespace {

void PintarFondo(QWidget *widgetPropio, ColorOLE c) {
    QPalette p = widgetPropio->palette();
    const QColor color = AColor(c);
    for (auto rol : {QPalette::Window, QPalette::Base, QPalette::Button}) {
        p.setColor(QPalette::Active, rol, color);
        p.setColor(QPalette::Inactive, rol, color);
        p.setColor(QPalette::Disabled, rol, color);
    }
    widgetPropio->setPalette(p);
    widgetPropio->setAutoFillBackground(true);
}

void PintarTexto(QWidget *widgetPropio, ColorOLE c) {
    QPalette p = widgetPropio->palette();
    const QColor color = AColor(c);
    for (auto rol : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        p.setColor(QPalette::Active, rol, color);
        p.setColor(QPalette::Inactive, rol, color);
    }
    widgetPropio->setPalette(p);
}

} // namespace

ColorOLE Control::BackColor() const {
    if (back != SinColor || !widgetPropio)
        return back;
    return DeColor(widgetPropio->palette().color(widgetPropio->backgroundRole()));
}

void Control::setBackColor(ColorOLE c) {
    back = c;
    if (widgetPropio && c != SinColor)
        PintarFondo(widgetPropio, c);
}

ColorOLE Control::ForeColor() const {
    if (fore != SinColor || !widgetPropio)
        return fore;
    return DeColor(widgetPropio->palette().color(widgetPropio->foregroundRole()));
}

void Control::setForeColor(ColorOLE c) {
    fore = c;
    if (widgetPropio && c != SinColor)
        PintarTexto(widgetPropio, c);
}

QFont Control::Font() const {
    return widgetPropio ? widgetPropio->font() : fuente;
}

void Control::setFont(const QFont &f) {
    fuente = f;
    if (widgetPropio)
        widgetPropio->setFont(f);
}

QString Control::ToolTipText() const {
    return widgetPropio ? widgetPropio->toolTip() : QString();
}

void Control::setToolTipText(const QString &t) {
    if (widgetPropio)
        widgetPropio->setToolTip(t);
}

void Control::SetFocus() {
    if (widgetPropio)
        widgetPropio->setFocus(Qt::OtherFocusReason);
}

QWidget *Control::widgetContenedor() const {
    if (contenedor)
        return contenedor->widget();
    return form ? form->ventana() : nullptr;
}

void Control::ponerWidget(QWidget *widget) {
    widgetPropio = widget;
    if (!widgetPropio)
        return;
    widgetPropio->setObjectName(objectName());
    if (QWidget *padre = widgetContenedor())
        widgetPropio->setParent(padre);
    aplicarGeometria();
    if (back != SinColor)
        PintarFondo(widgetPropio, back);
    if (fore != SinColor)
        PintarTexto(widgetPropio, fore);
    if (!habilitado)
        widgetPropio->setEnabled(false);
    setVisible(visible);
}

} // namespace Pantalla
