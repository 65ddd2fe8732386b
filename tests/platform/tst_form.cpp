// The screen builder: a small design table of its own turned into a window.
#include "apoyo/ejecucion.h"
#include "apoyo/respuestas.h"
#include "platform/datos/errorbd.h"
#include "platform/ui/dtpicker.h"
#include "platform/ui/form.h"
#include "platform/ui/grid.h"
#include "platform/ui/twips.h"
#include "platform/ui/visorayuda.h"

#include <optional>

#include <stdexcept>

using namespace ADODB;
using namespace Pantalla;

namespace {

// clang-format off
// Values chosen off the 15-twip grid, so that rounding shows.
const DisenoControl filasPrueba[] = {
    {.nombre = "frFondo", .clase = ClaseControl::Frame, .contenedor = nullptr, .left = 0, .top = 0,
     .width = 6000, .height = 4500, .tab = 0, .texto = "Frame1", .back = RGB(224, 224, 224),
     .estilo = Estilo::SinBorde},
    {.nombre = "lblDelante", .clase = ClaseControl::Label, .contenedor = "frFondo", .left = 300,
     .top = 150, .width = 1500, .height = 300, .tab = 4, .texto = "Delante",
     .fuente = {"Verdana", 9.75, true}, .fore = RGB(0, 0, 0), .estilo = Estilo::Transparente | Estilo::Centrado},
    {.nombre = "frInterior", .clase = ClaseControl::Frame, .contenedor = "frFondo", .left = 1507,
     .top = 1515, .width = 3000, .height = 1500, .tab = 1, .back = RGB(255, 255, 255),
     .estilo = Estilo::SinBorde},
    {.nombre = "txtDentro", .clase = ClaseControl::TextBox, .contenedor = "frInterior", .left = 23,
     .top = 300, .width = 1500, .height = 322, .tab = 3, .texto = "9999,99",
     .estilo = Estilo::Derecha | Estilo::Bloqueado, .tooltip = "Precio del menu."},
    {.nombre = "txtSegundo", .clase = ClaseControl::TextBox, .contenedor = "frInterior", .left = 1650,
     .top = 300, .width = 1200, .height = 322, .tab = 2, .texto = "Text1"},
    {.nombre = "txtSinTab", .clase = ClaseControl::TextBox, .contenedor = "frFondo", .left = 300,
     .top = 3300, .width = 1200, .height = 322, .tab = 2, .estilo = Estilo::SinTabStop},
    {.nombre = "cmdOculto", .clase = ClaseControl::CommandButton, .contenedor = "frFondo", .left = 0,
     .top = 0, .width = 1200, .height = 450, .tab = 9, .texto = "Genera caption", .estilo = Estilo::Oculto},
    {.nombre = "lblDetras", .clase = ClaseControl::Label, .contenedor = "frFondo", .left = 600,
     .top = 150, .width = 1500, .height = 300, .tab = 5, .texto = "Detras",
     .back = RGB(255, 255, 0)},
};

const DisenoFormulario disenoPrueba{"frmPrueba", "Pantalla de prueba", 6000, 4500,
                                    ":/no/hay/icono.ico", filasPrueba};

const DisenoControl filasOtra[] = {
    {.nombre = "cmdSalir", .clase = ClaseControl::CommandButton, .contenedor = nullptr, .left = 150,
     .top = 150, .width = 1605, .height = 1155, .texto = "Salir"},
};
const DisenoFormulario disenoOtra{"frmOtra", "Otra", 3000, 2000, nullptr, filasOtra};
// clang-format on

/// A screen that counts its loads and binds a control in Form_Load, as the real ones do.
class FormPrueba : public Form {
  public:
    using Form::Form;
    int cargas = 0;
    QString captionAlCargar;

  protected:
    void Form_Load() override {
        ++cargas;
        captionAlCargar = control<Label>(QStringLiteral("lblDelante"))->Caption();
    }
};

/// The test screen, loaded and shown.
struct PantallaPrueba : FormPrueba {
    PantallaPrueba() : FormPrueba(disenoPrueba) {
        Load();
        ventana()->show();
        ventana()->activateWindow();
    }
};

} // namespace

class TstForm : public QObject {
    Q_OBJECT
  private slots:
    void construccion() {
        FormPrueba f(disenoPrueba);
        QCOMPARE(f.Width(), 6000.0 + 90); // the outer size: client area and borders
        f.Load();
        f.Load(); // loaded already: nothing happens
        QCOMPARE(f.cargas, 1);
        QCOMPARE(f.captionAlCargar, QStringLiteral("Delante")); // the controls exist in Form_Load
        // A fixed window with a close box only, built but not shown: showing is for ShowModal.
        QWidget *v = f.ventana();
        QVERIFY(!v->isVisible());
        QCOMPARE(v->size(), QSize(400, 300));
        QCOMPARE(v->windowFlags() & (Qt::WindowMinMaxButtonsHint | Qt::WindowCloseButtonHint),
                 Qt::WindowFlags(Qt::WindowCloseButtonHint));
        // The design order is the order from front to back: the earlier label is on top.
        QWidget *fondo = f.control(QStringLiteral("frFondo"))->widget();
        QCOMPARE(fondo->childAt(QPoint(50, 15)), f.control(QStringLiteral("lblDelante"))->widget());
        // Asked by name and class, a wrong one is an error.
        QVERIFY_THROWS_EXCEPTION(std::logic_error, f.control<Label>(QStringLiteral("txtDentro")));
        QVERIFY_THROWS_EXCEPTION(std::logic_error, f.control<Label>(QStringLiteral("lblNo")));
    }

    void ordenTab() {
        QStringList focos;
        std::optional<PantallaPrueba> pantalla(std::in_place);
        PantallaPrueba &f = *pantalla;
        QVERIFY(QTest::qWaitForWindowActive(f.ventana()));
        auto *segundo = f.control<TextBox>(QStringLiteral("txtSegundo")); // tab 2
        auto *sinTab = f.control<TextBox>(QStringLiteral("txtSinTab"));   // tab 2, no tab stop
        auto *dentro = f.control<TextBox>(QStringLiteral("txtDentro"));   // tab 3
        dentro->SetFocus();
        QTRY_VERIFY(dentro->widget()->hasFocus());
        // The boxes tell when they get and lose the focus, by the keys, the mouse or code.
        for (TextBox *t : {segundo, sinTab, dentro}) {
            connect(t, &TextBox::GotFocus, this, [&focos, t] { focos << u'+' + t->Name(); });
            connect(t, &TextBox::LostFocus, this, [&focos, t] { focos << u'-' + t->Name(); });
        }
        // Tab follows TabIndex, not the design order, across containers, and passes the box
        // that is no tab stop by; a click still reaches that one.
        QTest::keyClick(dentro->widget(), Qt::Key_Backtab);
        QTRY_VERIFY(segundo->widget()->hasFocus());
        QTest::keyClick(segundo->widget(), Qt::Key_Tab);
        QTRY_VERIFY(dentro->widget()->hasFocus());
        QTest::mouseClick(sinTab->widget(), Qt::LeftButton);
        QTRY_VERIFY(sinTab->widget()->hasFocus());
        segundo->SetFocus();
        QTRY_VERIFY(segundo->widget()->hasFocus());
        const QStringList esperados{"-txtDentro", "+txtSegundo", "-txtSegundo", "+txtDentro",
                                    "-txtDentro", "+txtSinTab",  "-txtSinTab",  "+txtSegundo"};
        QCOMPARE(focos, esperados);
        // A screen destroyed with the focus in a box is silent: its frames take their widgets
        // along, and no handler runs among controls already gone.
        pantalla.reset();
        QCOMPARE(focos, esperados);
    }

    // The handler boundary: what the operator sees after a handler fails, and whether the
    // program goes on. A modal show under the failing handler must give way, and the code
    // that opened it must not go on.
    void atender_data() {
        const auto caso = Pruebas::Tabla<QString, bool, QString>();
        caso("la base rechaza un valor: sigue", "bd", false, "CHECK constraint failed: precio");
        caso("fallo del programa: termina", "logica", true, "Fila 7 fuera de rango");
        caso("error sin texto propio: termina", "otro", true, "Error no identificado.");
    }
    void atender() {
        const auto [error, termina, informe] = Pruebas::Fila<QString, bool, QString>();
        Form::Reanudar();
        RespuestasMensajes cajas;
        Form encima(disenoOtra), debajo(disenoPrueba);
        debajo.Load();
        encima.Load();
        auto *salir = encima.control<CommandButton>(QStringLiteral("cmdSalir"));
        bool siguio = false, forzado = false;
        connect(salir, &CommandButton::Click, &encima, [&] {
            Form::Atender([&] {
                if (error == QLatin1String("bd"))
                    throw ErrorBD(informe);
                if (error == QLatin1String("logica"))
                    throw std::logic_error(informe.toStdString());
                throw 42;
            });
        });
        QTimer::singleShot(0, this, [&] {
            QTest::mouseClick(salir->widget(), Qt::LeftButton);
            // The operator, told, leaves the screen (if it is still there).
            QTimer::singleShot(0, &encima, &Form::Unload);
        });
        QTimer::singleShot(10000, this, [&] {
            forzado = true;
            encima.Unload();
        });
        // The opener's own handler: it shows the screen and would go on after it.
        Form::Atender([&] {
            encima.ShowModal();
            siguio = true;
        });
        QVERIFY(!forzado);
        QCOMPARE(cajas.Mostrados(), QStringList{informe});
        QCOMPARE(Form::Terminando(), termina);
        QCOMPARE(Form::EstadoSalida(), termina ? 1 : 0);
        QCOMPARE(siguio, !termina);
        QCOMPARE(debajo.Loaded(), !termina); // the end unloads every screen
        // Once the end is decided, no handler runs any more.
        bool corrio = false;
        Form::Atender([&] { corrio = true; });
        QCOMPARE(corrio, !termina);
        Form::Reanudar();
    }

    void cargaFallida() {
        // A screen whose load fails is gone, and the failure is a failed load, not the
        // database's error that the operator could mend.
        struct Fallida : Form {
            using Form::Form;
            void Form_Load() override { throw ErrorBD(QStringLiteral("no such table: productos")); }
        } f(disenoOtra);
        QVERIFY_THROWS_EXCEPTION(ErrorCarga, f.Load());
        QVERIFY(!f.Loaded());
        QCOMPARE(Form::Buscar(QStringLiteral("frmOtra")), nullptr);
    }
};

TARIFAS_PRUEBAS(TstForm)
#include "tst_form.moc"
