#pragma once

#include "controles.h"
#include "diseno.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QWidget>
#include <functional>
#include <stdexcept>
#include <utility>

namespace Pantalla {

/// Thrown out of ShowModal once the program is ending (Form::TerminarPrograma), so that the
/// code that showed a screen doesn't go on with a program that is closing. The handler
/// boundary and Main catch it; nothing else should.
struct FinPrograma {};

/// A screen whose load failed: the half-built screen is gone, and the program can't go on
/// without it. Carries the original error's text.
class ErrorCarga : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

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
    bool Loaded() const { return ventanaCargada != nullptr; }
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

    QWidget *ventana() const { return ventanaCargada; }
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

    /// Wires an event of a control to a handler of this screen, through Atender: the one line
    /// a screen writes for each of its handlers, e.g.
    ///     Enlazar(cmdSalir, &CommandButton::Click, &FrmListas::cmdSalir_Click);
    template <class Emisor, class Formulario, class... Args>
    void Enlazar(Emisor *control, void (Emisor::*evento)(Args...),
                 void (Formulario::*manejador)(Args...)) {
        auto *pantalla = static_cast<Formulario *>(this);
        connect(control, evento, this, [pantalla, manejador](Args... args) {
            Atender([&] { (pantalla->*manejador)(std::forward<Args>(args)...); });
        });
    }

    /// The handler boundary: runs one handler of an operator's action, and no error leaves it.
    /// An ErrorBD (the database refused what was asked, or its connection was lost) is shown in
    /// the error report and the program goes on: the operator may mend the value and try again.
    /// Any other error (a screen that couldn't load, a fault of the program) is shown and then
    /// ends the program cleanly (TerminarPrograma(1)). Once the program is ending, no handler
    /// runs any more.
    static void Atender(const std::function<void()> &manejador);

    /// Ends the program cleanly with `estado`: every loaded screen is unloaded, the last loaded
    /// first, so every modal show returns (throwing FinPrograma) and Main returns `estado`.
    static void TerminarPrograma(int estado);
    static bool Terminando();
    /// What Main returns: 0, or the status TerminarPrograma was given.
    static int EstadoSalida();
    /// A new run of the program (Principal::Vida) starts from a program that isn't ending.
    static void Reanudar();

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
    QPointer<QWidget> ventanaCargada;
    QList<Control *> controles;
    double ancho = 0, alto = 0;
    QString titulo;
    ColorOLE fondo = SinColor;
};

} // namespace Pantalla
