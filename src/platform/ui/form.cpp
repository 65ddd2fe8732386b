#include "form.h"

#include "informeerror.h"
#include "platform/datos/errorbd.h"

#include <utility>

#include "dtpicker.h"
#include "grid.h"
#include "twips.h"
#include "visorayuda.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QEventLoop>
#include <QFile>
#include <QHash>
#include <QIcon>

#include <algorithm>
#include <functional>
#include <stdexcept>

using namespace ADODB;

namespace Pantalla {

namespace {

/// The outer size of a window beyond its client area, as the screens were measured: two
/// borders across, and a title bar and two borders down.
constexpr double BordesAncho = 90;
constexpr double BordesAlto = 375;

/// The loaded screens by their design name.
QList<Form *> &Cargados() {
    static QList<Form *> lista;
    return lista;
}

/// Whether the program is ending, and with which status.
struct Fin {
    bool terminando = false;
    int estado = 0;
};
Fin &EstadoFin() {
    static Fin f;
    return f;
}

/// The window of a screen. Its close box unloads the screen instead of just hiding it.
class Ventana : public QWidget {
  public:
    explicit Ventana(std::function<void()> cierre)
        : QWidget(nullptr, Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                               Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint),
          alCerrar(std::move(cierre)) {
        setAttribute(Qt::WA_DeleteOnClose, false);
    }

  protected:
    void closeEvent(QCloseEvent *ev) override {
        ev->accept();
        if (alCerrar)
            alCerrar();
    }

  private:
    std::function<void()> alCerrar;
};

/// The fonts the screens were drawn with, and what stands in for them where they are
/// missing: the metrics of DejaVu Sans are the closest to Verdana's among the free fonts.
void SustitutosDeFuentes() {
    static const bool hecho = [] {
        QFont::insertSubstitutions(
            QStringLiteral("Verdana"),
            {QStringLiteral("DejaVu Sans"), QStringLiteral("Bitstream Vera Sans")});
        QFont::insertSubstitutions(
            QStringLiteral("MS Sans Serif"),
            {QStringLiteral("Liberation Sans"), QStringLiteral("DejaVu Sans")});
        QFont::insertSubstitutions(QStringLiteral("Arial"), {QStringLiteral("Liberation Sans"),
                                                             QStringLiteral("DejaVu Sans")});
        return true;
    }();
    Q_UNUSED(hecho);
}

QFont FuenteDe(const Fuente &f, QFont base) {
    if (f.familia)
        base.setFamilies({QString::fromUtf8(f.familia)});
    if (f.puntos > 0)
        base.setPointSizeF(f.puntos);
    base.setBold(f.negrita);
    return base;
}

Qt::Alignment Alineacion(Estilos estilo) {
    if (estilo.testFlag(Estilo::Centrado))
        return Qt::AlignHCenter | Qt::AlignTop;
    if (estilo.testFlag(Estilo::Derecha))
        return Qt::AlignRight | Qt::AlignTop;
    return Qt::AlignLeft | Qt::AlignTop;
}

QString TextoDiseno(const char *t) {
    return t ? QString::fromUtf8(t) : QString();
}

} // namespace

Form::Form(const DisenoFormulario &tabla, QObject *padre)
    : QObject(padre), diseno(tabla), ancho(tabla.clientWidth + BordesAncho),
      alto(tabla.clientHeight + BordesAlto), titulo(TextoDiseno(tabla.caption)) {
    setObjectName(TextoDiseno(tabla.nombre));
}

Form::~Form() {
    Cargados().removeAll(this);
    destruir(true);
}

void Form::Load() {
    if (Loaded())
        return;
    try {
        construir();
    } catch (...) {
        destruir(true);
        throw;
    }
    Cargados().append(this);
    try {
        Form_Load();
    } catch (const FinPrograma &) {
        throw;
    } catch (const std::exception &error) {
        // A half-built screen is no use to anyone: it goes, and the error goes on as a failed
        // load, which the program can't go on from.
        Unload();
        throw ErrorCarga(error.what());
    }
}

void Form::Unload() {
    if (!Loaded())
        return;
    Cargados().removeAll(this);
    destruir(false);
    emit Unloaded();
}

void Form::destruir(bool ahora) {
    // Unload is often called from a handler of one of the screen's own controls (a button's
    // Click): then the widgets go once that event is over, not in the middle of it. Everything
    // is silenced before anything goes, so nothing of the old screen runs any more: deleting a
    // frame takes the widgets inside it along, and a box losing the focus that way must not
    // reach a handler that would look for controls already gone.
    const auto viejos = std::exchange(controles, {});
    for (Control *c : viejos) {
        if (auto *t = qobject_cast<Timer *>(c))
            t->setEnabled(false);
        c->disconnect();
        c->blockSignals(true);
    }
    for (Control *c : viejos) {
        if (ahora)
            delete c;
        else
            c->deleteLater();
    }
    if (ventanaCargada) {
        QWidget *v = ventanaCargada;
        ventanaCargada = nullptr;
        v->hide();
        if (ahora)
            delete v;
        else
            v->deleteLater();
    }
}

void Form::construir() {
    SustitutosDeFuentes();
    ancho = diseno.clientWidth + BordesAncho;
    alto = diseno.clientHeight + BordesAlto;
    titulo = TextoDiseno(diseno.caption);
    fondo = SinColor;

    ventanaCargada = new Ventana([this] { Unload(); });
    ventanaCargada->setObjectName(TextoDiseno(diseno.nombre));
    ventanaCargada->setWindowTitle(titulo);
    if (diseno.icono && QFile::exists(TextoDiseno(diseno.icono)))
        ventanaCargada->setWindowIcon(QIcon(TextoDiseno(diseno.icono)));
    ventanaCargada->setAutoFillBackground(true);
    aplicarTamano();

    QHash<QString, Control *> porNombre;
    for (const DisenoControl &fila : diseno.controles) {
        const QString nombre = TextoDiseno(fila.nombre);
        if (nombre.isEmpty())
            throw std::logic_error(QStringLiteral("El diseño de %1 tiene un control sin nombre.")
                                       .arg(objectName())
                                       .toStdString());
        if (porNombre.contains(nombre))
            throw std::logic_error(QStringLiteral("El diseño de %1 repite el control %2.")
                                       .arg(objectName(), nombre)
                                       .toStdString());
        Control *contenedor = nullptr;
        if (fila.contenedor) {
            const QString nombreContenedor = TextoDiseno(fila.contenedor);
            contenedor = porNombre.value(nombreContenedor);
            if (!contenedor)
                throw std::logic_error(
                    QStringLiteral("El diseño de %1 pone el control %2 dentro de %3, que no es "
                                   "un control anterior del diseño.")
                        .arg(objectName(), nombre, nombreContenedor)
                        .toStdString());
            if (!contenedor->widget())
                throw std::logic_error(
                    QStringLiteral("El diseño de %1 pone el control %2 dentro de %3, que no "
                                   "puede contener controles.")
                        .arg(objectName(), nombre, nombreContenedor)
                        .toStdString());
        }
        Control *c = crear(fila, contenedor);
        porNombre.insert(nombre, c);
        controles.append(c);
    }

    // Tab order by TabIndex across the whole screen, as the designer numbered it. Frames and
    // labels never take the focus and stay out of the chain.
    QList<Control *> orden;
    for (Control *c : std::as_const(controles))
        if (c->widget() && c->widget()->focusPolicy() != Qt::NoFocus)
            orden.append(c);
    std::stable_sort(orden.begin(), orden.end(),
                     [](const Control *a, const Control *b) { return a->TabIndex < b->TabIndex; });
    for (qsizetype i = 1; i < orden.size(); ++i)
        QWidget::setTabOrder(orden[i - 1]->widget(), orden[i]->widget());
}

Control *Form::crear(const DisenoControl &fila, Control *contenedor) {
    const QString nombre = TextoDiseno(fila.nombre);
    const Estilos estilo = fila.estilo;
    Control *c = nullptr;
    switch (fila.clase) {
    case ClaseControl::Frame:
        c = new Frame(nombre, contenedor, this, !estilo.testFlag(Estilo::SinBorde));
        break;
    case ClaseControl::Label:
        c = new Label(nombre, contenedor, this);
        break;
    case ClaseControl::TextBox:
        c = new TextBox(nombre, contenedor, this);
        break;
    case ClaseControl::CommandButton:
        c = new CommandButton(nombre, contenedor, this);
        break;
    case ClaseControl::PictureBox:
        c = new PictureBox(nombre, contenedor, this);
        break;
    case ClaseControl::Timer:
        c = new Timer(nombre, contenedor, this);
        break;
    case ClaseControl::Grid: {
        static const DisenoGrid porOmision;
        c = new Grid(nombre, contenedor, this, fila.grid ? *fila.grid : porOmision);
        break;
    }
    case ClaseControl::DTPicker:
        c = new DTPicker(nombre, contenedor, this);
        break;
    case ClaseControl::VisorAyuda:
        c = new VisorAyuda(nombre, contenedor, this);
        break;
    }
    if (!c)
        throw std::logic_error(
            QStringLiteral("El diseño de %1 da al control %2 una clase desconocida.")
                .arg(objectName(), nombre)
                .toStdString());

    // Each new widget goes to the back of its container: an earlier control of the design
    // lies in front of a later one.
    if (QWidget *w = c->widget())
        w->lower();

    c->TabIndex = fila.tab;
    if (auto *t = qobject_cast<Timer *>(c)) {
        t->Move(fila.left, fila.top, 0, 0);
        t->setInterval(fila.intervalo);
        t->setEnabled(fila.habilitado);
        return c;
    }

    c->Move(fila.left, fila.top, fila.width, fila.height);
    // A control drawn with no font of its own has the form's: MS Sans Serif 8.25 on the
    // platform the screens were drawn on, which the small picture buttons were sized for.
    static constexpr Fuente fuenteDelFormulario{"MS Sans Serif", 8.25, false};
    const bool sinFuente = !fila.fuente.familia && fila.fuente.puntos <= 0 && !fila.fuente.negrita;
    c->setFont(FuenteDe(sinFuente ? fuenteDelFormulario : fila.fuente, c->Font()));
    if (fila.back != SinColor)
        c->setBackColor(fila.back);
    if (fila.fore != SinColor)
        c->setForeColor(fila.fore);
    if (fila.tooltip && *fila.tooltip)
        c->setToolTipText(TextoDiseno(fila.tooltip));

    if (auto *l = qobject_cast<Label *>(c)) {
        l->setTransparente(estilo.testFlag(Estilo::Transparente));
        l->setAlignment(Alineacion(estilo));
        l->setCaption(TextoDiseno(fila.texto));
        if (estilo.testFlag(Estilo::AutoSize))
            l->setAutoSize(true);
    } else if (auto *t = qobject_cast<TextBox *>(c)) {
        t->setText(TextoDiseno(fila.texto));
        t->setAlignment((Alineacion(estilo) & ~Qt::AlignTop) | Qt::AlignVCenter);
        t->setLocked(estilo.testFlag(Estilo::Bloqueado));
        t->setTabStop(!estilo.testFlag(Estilo::SinTabStop));
    } else if (auto *b = qobject_cast<CommandButton *>(c)) {
        b->setCaption(TextoDiseno(fila.texto));
        if (estilo.testFlag(Estilo::Grafico) || fila.imagen)
            b->setPicture(TextoDiseno(fila.imagen));
    } else if (auto *p = qobject_cast<PictureBox *>(c)) {
        if (fila.imagen)
            p->setPicture(TextoDiseno(fila.imagen));
    }
    c->setVisible(!estilo.testFlag(Estilo::Oculto));
    return c;
}

void Form::aplicarTamano() {
    if (ventanaCargada)
        ventanaCargada->setFixedSize(APixeles(ancho - BordesAncho), APixeles(alto - BordesAlto));
}

void Form::ShowModal() {
    Load();
    if (!Loaded())
        return;
    QEventLoop bucle;
    connect(this, &Form::Unloaded, &bucle, &QEventLoop::quit);
    ventanaCargada->setWindowModality(Qt::ApplicationModal);
    ventanaCargada->show();
    ventanaCargada->activateWindow();
    bucle.exec();
    if (EstadoFin().terminando)
        throw FinPrograma{};
}

void Form::Atender(const std::function<void()> &manejador) {
    if (EstadoFin().terminando)
        return;
    try {
        manejador();
    } catch (const FinPrograma &) {
        // The program is ending: the screens are already unloaded, there's nothing to say.
    } catch (const ErrorBD &error) {
        MostrarError(error.Texto());
    } catch (const std::exception &error) {
        MostrarError(QString::fromUtf8(error.what()));
        TerminarPrograma(1);
    } catch (...) {
        MostrarError(QStringLiteral("Error no identificado."));
        TerminarPrograma(1);
    }
}

void Form::TerminarPrograma(int estado) {
    if (EstadoFin().terminando)
        return;
    EstadoFin() = {true, estado};
    // Unloading a screen quits its modal show; the show then throws FinPrograma, so the code
    // that opened it goes no further.
    // Without a screen (an event before the first one shows), the application's own loop.
    if (Cargados().isEmpty())
        QCoreApplication::exit(estado);
    while (!Cargados().isEmpty())
        Cargados().constLast()->Unload();
}

bool Form::Terminando() {
    return EstadoFin().terminando;
}

int Form::EstadoSalida() {
    return EstadoFin().estado;
}

void Form::Reanudar() {
    EstadoFin() = {};
}

QString Form::Caption() const {
    return titulo;
}

void Form::setCaption(const QString &t) {
    titulo = t;
    if (ventanaCargada)
        ventanaCargada->setWindowTitle(t);
}

void Form::setWidth(double twips) {
    ancho = std::max(twips, BordesAncho);
    aplicarTamano();
}

void Form::setHeight(double twips) {
    alto = std::max(twips, BordesAlto);
    aplicarTamano();
}

ColorOLE Form::BackColor() const {
    if (fondo != SinColor || !ventanaCargada)
        return fondo;
    return DeColor(ventanaCargada->palette().color(QPalette::Window));
}

void Form::setBackColor(ColorOLE c) {
    fondo = c;
    if (ventanaCargada && c != SinColor) {
        QPalette p = ventanaCargada->palette();
        p.setColor(QPalette::Window, AColor(c));
        ventanaCargada->setPalette(p);
    }
}

Control *Form::control(const QString &nombre) const {
    for (Control *c : controles)
        if (c->objectName() == nombre)
            return c;
    return nullptr;
}

void Form::faltaControl(const QString &nombre) {
    throw std::logic_error(QStringLiteral("La pantalla no tiene el control %1 de esa clase.")
                               .arg(nombre)
                               .toStdString());
}

Form *Form::Buscar(const QString &nombre) {
    for (Form *f : Cargados())
        if (f->objectName() == nombre)
            return f;
    return nullptr;
}

} // namespace Pantalla
