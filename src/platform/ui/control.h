#pragma once

#include "colores.h"

#include <QFont>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QWidget>

namespace Pantalla {

class Form;

/// A control of a screen, with the members the screens' code uses: position and size in
/// twips relative to its container, visibility, colours, font, caption. The geometry is
/// kept in twips (as doubles) and the widget follows it, so a control can stand off-screen
/// at a negative Left and come back with no rounding drift.
/// The widget belongs to the form's window; the Control object belongs to the Form.
class Control : public QObject {
    Q_OBJECT
  public:
    Control(const QString &nombre, Control *contenedor, Form *form);
    ~Control() override;

    QString Name() const { return objectName(); }
    Control *Container() const { return contenedor; }
    Form *Parent() const { return form; }
    /// The widget that shows the control; nullptr for a control that isn't seen (a timer).
    QWidget *widget() const { return widgetPropio; }

    double Left() const { return left; }
    double Top() const { return top; }
    double Width() const { return width; }
    double Height() const { return height; }
    void setLeft(double v);
    void setTop(double v);
    void setWidth(double v);
    void setHeight(double v);
    void Move(double l, double t, double ancho, double alto);

    bool Visible() const { return visible; }
    void setVisible(bool v);
    virtual bool Enabled() const;
    virtual void setEnabled(bool v);

    virtual ColorOLE BackColor() const;
    virtual void setBackColor(ColorOLE c);
    virtual ColorOLE ForeColor() const;
    virtual void setForeColor(ColorOLE c);

    QFont Font() const;
    void setFont(const QFont &f);

    /// The caption that translation reads and writes; empty for controls that have none.
    virtual QString Caption() const { return {}; }
    virtual void setCaption(const QString &) {}
    virtual bool TieneCaption() const { return false; }

    int TabIndex = 0;
    QString ToolTipText() const;
    void setToolTipText(const QString &t);

    void SetFocus();

  protected:
    /// Sets the widget; the control's subclass creates it, inside the container's widget.
    void ponerWidget(QWidget *widget);
    QWidget *widgetContenedor() const;
    void aplicarGeometria();

  private:
    Control *contenedor;
    Form *form;
    QPointer<QWidget> widgetPropio;
    double left = 0, top = 0, width = 0, height = 0;
    bool visible = true;
    bool habilitado = true;
    ColorOLE back = SinColor, fore = SinColor;
    QFont fuente;
};

} // namespace Pantalla
