#pragma once

#include "controles.h"
#include "diseno.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QWidget>
#include <QString>



/// A screen built from its design table. Load() creates the window and every control at
/// its design place; Unload() destroys them, so the next Load starts from the design again.
/// A screen's own class derives from Form, binds its controls after Load and runs its
/// Form_Load there.
class Form : public QObject {
    Q_OBJECT
public:
    explicit Form(const DisenoFormulario &diseno, QObject *padre = nullptr);
    ~Form() override;

    /// Builds the screen if it isn't loaded (and then runs Form_Load); does nothing if it is.
    void Load();
    bool Loaded() const { return ventana_ != nullptr; }
    /// Closes and destroys the window and its controls; a modal show then returns. The
    /// controls are silenced (timers stopped, signals cut) at once; the objects themselves
    /// go when control returns to the event loop, since Unload is mostly called from a
    /// handler of one of them.
    void Unload();

    /// Shows the screen modally, with no owner, and returns once it has been unloaded (by
    /// code or by the close box, which unloads it too). Loads it first if needed.
    void ShowModal();

    QString Caption() const;
    void setCaption(const QString &t);
    /// The outer size of the screen in twips (the client area and the window's borders).
    double Width() const { return ancho; }
    double Height() const { return alto; }
    void setWidth(double twips);
    void setHeight(double twips);
    ColorOLE BackColor() const;
    void setBackColor(ColorOLE c);

    QWidget *ventana() const { return ventana_; }
    const QList<Control *> &Controls() const { return controles; }
    Control *control(const QString &nombre) const;
    /// The control of that name and class; raises std::logic_error when the design lacks it.
    template <class T> T *control(const QString &nombre) const {
        auto *c = qobject_cast<T *>(control(nombre));
        if (!c)
            faltaControl(nombre);
        return c;
    }
    const DisenoFormulario &Diseno() const { return diseno; }

    /// The loaded screen of that name (the platform's Forms collection), or nullptr.
    static Form *Buscar(const QString &nombre);

signals:
    void Unloaded();

protected:
    /// Runs right after the controls exist: bind them and run the screen's load sequence.
    virtual void Form_Load() {}

private:
    [[noreturn]] static void faltaControl(const QString &nombre);
    void construir();
    Control *crear(const DisenoControl &fila, Control *contenedor);
    void aplicarTamano();
    void destruir(bool ahora);
    const DisenoFormulario &diseno;
    QPointer<QWidget> ventana_;
    QList<Control *> controles;
    double ancho = 0, alto = 0;
    QString titulo;
    ColorOLE fondo = SinColor;
};
