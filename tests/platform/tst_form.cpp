// The screen builder: a small design table of its own turned into a window.
#include "platform/ui/dtpicker.h"
#include "platform/ui/form.h"
#include "platform/ui/grid.h"
#include "platform/ui/twips.h"
#include "platform/ui/visorayuda.h"

#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QtTest>

#include <stdexcept>

namespace {

const DisenoGrid gridPrueba{.rows = 3, .cols = 5, .fixedRows = 1, .fixedCols = 0};

// Values chosen off the 15-twip grid, so that rounding shows.
const DisenoControl filasPrueba[] = {
    {.nombre = "Open1", .clase = Clase::VisorAyuda, .contenedor = nullptr, .left = 5235, .top = 3000,
     .width = 3000, .height = 2000, .tab = 7},
    {.nombre = "frFondo", .clase = Clase::Frame, .contenedor = nullptr, .left = 0, .top = 0,
     .width = 6000, .height = 4500, .tab = 0, .texto = "Frame1", .back = RGB(224, 224, 224),
     .estilo = SinBorde},
    {.nombre = "lblDelante", .clase = Clase::Label, .contenedor = "frFondo", .left = 300, .top = 150,
     .width = 1500, .height = 300, .tab = 4, .texto = "Delante", .fuente = {"Verdana", 9.75, true},
     .fore = RGB(0, 0, 0), .estilo = Transparente | Centrado},
    {.nombre = "frInterior", .clase = Clase::Frame, .contenedor = "frFondo", .left = 1507, .top = 1515,
     .width = 3000, .height = 1500, .tab = 1, .back = RGB(255, 255, 255), .estilo = SinBorde},
    {.nombre = "txtDentro", .clase = Clase::TextBox, .contenedor = "frInterior", .left = 23, .top = 300,
     .width = 1500, .height = 322, .tab = 3, .texto = "9999,99", .estilo = Derecha | Bloqueado,
     .tooltip = "Precio del menu."},
    {.nombre = "txtSegundo", .clase = Clase::TextBox, .contenedor = "frInterior", .left = 1650, .top = 300,
     .width = 1200, .height = 322, .tab = 2, .texto = "Text1"},
    {.nombre = "txtSinTab", .clase = Clase::TextBox, .contenedor = "frFondo", .left = 300, .top = 3300,
     .width = 1200, .height = 322, .tab = 2, .estilo = SinTabStop},
    {.nombre = "cmdOculto", .clase = Clase::CommandButton, .contenedor = "frFondo", .left = 0, .top = 0,
     .width = 1200, .height = 450, .tab = 9, .texto = "Genera caption", .estilo = Oculto},
    {.nombre = "lblDetras", .clase = Clase::Label, .contenedor = "frFondo", .left = 600, .top = 150,
     .width = 1500, .height = 300, .tab = 5, .texto = "Detras", .back = RGB(255, 255, 0)},
    {.nombre = "lblAuto", .clase = Clase::Label, .contenedor = "frInterior", .left = 150, .top = 60,
     .width = 3000, .height = 900, .tab = 10, .texto = "Fec. Desde:", .fuente = {"Verdana", 9.75, false},
     .estilo = AutoSize | Transparente},
    {.nombre = "tmrPaso", .clase = Clase::Timer, .contenedor = "frFondo", .left = 1935, .top = 9060,
     .width = 0, .height = 0, .intervalo = 1, .habilitado = false},
    {.nombre = "tmrVivo", .clase = Clase::Timer, .contenedor = nullptr, .left = 0, .top = 0, .width = 0,
     .height = 0, .intervalo = 1, .habilitado = true},
    {.nombre = "desde", .clase = Clase::DTPicker, .contenedor = "frInterior", .left = 150, .top = 900,
     .width = 2040, .height = 420, .tab = 6, .fuente = {"Verdana", 14.25, false}},
    {.nombre = "grid_lista", .clase = Clase::Grid, .contenedor = "frFondo", .left = 3255, .top = 885,
     .width = 2400, .height = 600, .tab = 8, .tooltip = "Lista de clientes", .grid = &gridPrueba},
};

const DisenoFormulario disenoPrueba{"frmPrueba", "Pantalla de prueba", 6000, 4500, ":/no/hay/icono.ico",
                                    filasPrueba};

const DisenoControl filasOtra[] = {
    {.nombre = "cmdSalir", .clase = Clase::CommandButton, .contenedor = nullptr, .left = 150, .top = 150,
     .width = 1605, .height = 1155, .texto = "Salir"},
};
const DisenoFormulario disenoOtra{"frmOtra", "Otra", 3000, 2000, nullptr, filasOtra};

/// A screen that counts its loads and binds a control in Form_Load, as the real ones do.
class FormPrueba : public Form {
public:
    using Form::Form;
    int cargas = 0;
    QString captionAlCargar;

protected:
    void Form_Load() override
    {
        ++cargas;
        captionAlCargar = control<Label>(QStringLiteral("lblDelante"))->Caption();
    }
};

} // namespace

class TstForm : public QObject {
    Q_OBJECT
private slots:
    void colocacion_data();
    void colocacion();
    void ventana();
    void apilado();
    void propiedadesDeFila_data();
    void propiedadesDeFila();
    void timers();
    void ordenTab();
    void disenoErroneo_data();
    void disenoErroneo();
    void controlPorNombre();
    void cargarDescargarCargar();
    void tamanoExterior();
    void showModal_data();
    void showModal();
    void buscar();
};

void TstForm::colocacion_data()
{
    QTest::addColumn<QString>("nombre");
    QTest::addColumn<QRect>("enContenedor"); // pixels, relative to the container's widget
    QTest::addColumn<QPoint>("enVentana");   // its top-left corner in the window
    QTest::newRow("marco de fondo") << "frFondo" << QRect(0, 0, 400, 300) << QPoint(0, 0);
    QTest::newRow("marco anidado, redondeo hacia abajo") << "frInterior" << QRect(100, 101, 200, 100)
                                                         << QPoint(100, 101);
    QTest::newRow("caja en marco anidado, medio pixel sube") << "txtDentro" << QRect(2, 20, 100, 21)
                                                             << QPoint(102, 121);
    QTest::newRow("fecha en marco anidado") << "desde" << QRect(10, 60, 136, 28) << QPoint(110, 161);
    QTest::newRow("grid") << "grid_lista" << QRect(217, 59, 160, 40) << QPoint(217, 59);
    QTest::newRow("visor sobre la pantalla") << "Open1" << QRect(349, 200, 200, 133) << QPoint(349, 200);
}

void TstForm::colocacion()
{
    QFETCH(QString, nombre);
    QFETCH(QRect, enContenedor);
    QFETCH(QPoint, enVentana);
    FormPrueba f(disenoPrueba);
    f.Load();
    Control *c = f.control(nombre);
    QVERIFY(c);
    QVERIFY(c->widget());
    QCOMPARE(c->widget()->geometry(), enContenedor);
    QCOMPARE(c->widget()->mapTo(f.ventana(), QPoint(0, 0)), enVentana);
    QCOMPARE(c->widget()->window(), f.ventana());
    if (c->Container())
        QCOMPARE(c->widget()->parentWidget(), c->Container()->widget());
    else
        QCOMPARE(c->widget()->parentWidget(), f.ventana());

    // The twips stay as designed, whatever the pixels rounded to.
    const DisenoControl *fila = nullptr;
    for (const DisenoControl &d : filasPrueba)
        if (nombre == QLatin1String(d.nombre))
            fila = &d;
    QVERIFY(fila);
    QCOMPARE(c->Left(), double(fila->left));
    QCOMPARE(c->Top(), double(fila->top));
    QCOMPARE(c->Width(), double(fila->width));
    QCOMPARE(c->Height(), double(fila->height));
}

void TstForm::ventana()
{
    FormPrueba f(disenoPrueba);
    QVERIFY(!f.ventana());
    f.Load();
    QWidget *v = f.ventana();
    QVERIFY(v);
    QVERIFY(v->isWindow());
    QVERIFY(!v->isVisible()); // Load builds; showing is for ShowModal
    QCOMPARE(v->windowTitle(), QStringLiteral("Pantalla de prueba"));
    QCOMPARE(f.Caption(), QStringLiteral("Pantalla de prueba"));
    QCOMPARE(v->size(), QSize(400, 300));
    QCOMPARE(v->minimumSize(), v->maximumSize()); // fixed: the operator can't resize it
    QVERIFY(!(v->windowFlags() & Qt::WindowMinimizeButtonHint));
    QVERIFY(!(v->windowFlags() & Qt::WindowMaximizeButtonHint));
    QVERIFY(v->windowFlags() & Qt::WindowCloseButtonHint);
    f.setCaption(QStringLiteral("Gestion de Tarifas"));
    QCOMPARE(v->windowTitle(), QStringLiteral("Gestion de Tarifas"));
}

void TstForm::apilado()
{
    FormPrueba f(disenoPrueba);
    f.Load();
    QWidget *delante = f.control(QStringLiteral("lblDelante"))->widget();
    QWidget *detras = f.control(QStringLiteral("lblDetras"))->widget();
    QWidget *fondo = f.control(QStringLiteral("frFondo"))->widget();
    // Both labels cover the point; the one earlier in the design is on top.
    const QPoint comun(50, 15);
    QVERIFY(delante->geometry().contains(comun));
    QVERIFY(detras->geometry().contains(comun));
    QCOMPARE(fondo->childAt(comun), delante);
    // And among all children of the frame, the design order is the order from front to back.
    QStringList deDelanteAtras;
    const QObjectList hijos = fondo->children();
    for (auto it = hijos.crbegin(); it != hijos.crend(); ++it)
        if (auto *w = qobject_cast<QWidget *>(*it))
            deDelanteAtras << w->objectName();
    QCOMPARE(deDelanteAtras, (QStringList{"lblDelante", "frInterior", "txtSinTab", "cmdOculto",
                                          "lblDetras", "grid_lista"}));
    // The viewer, first on the screen itself, lies above the frame that fills it.
    QWidget *visor = f.control(QStringLiteral("Open1"))->widget();
    QWidget *arriba = f.ventana()->childAt(QPoint(360, 250));
    QVERIFY(arriba);
    QVERIFY(arriba == visor || visor->isAncestorOf(arriba));
}

void TstForm::propiedadesDeFila_data()
{
    QTest::addColumn<QString>("nombre");
    QTest::addColumn<bool>("visible");
    QTest::addColumn<QString>("caption");
    QTest::addColumn<int>("back");
    QTest::newRow("marco con color") << "frFondo" << true << "" << int(RGB(224, 224, 224));
    QTest::newRow("boton oculto") << "cmdOculto" << false << "Genera caption" << int(SinColor);
    QTest::newRow("etiqueta amarilla") << "lblDetras" << true << "Detras" << int(RGB(255, 255, 0));
    QTest::newRow("etiqueta transparente") << "lblDelante" << true << "Delante" << int(SinColor);
}

void TstForm::propiedadesDeFila()
{
    QFETCH(QString, nombre);
    QFETCH(bool, visible);
    QFETCH(QString, caption);
    QFETCH(int, back);
    FormPrueba f(disenoPrueba);
    f.Load();
    f.ventana()->show();
    QVERIFY(QTest::qWaitForWindowExposed(f.ventana()));
    Control *c = f.control(nombre);
    QVERIFY(c);
    QCOMPARE(c->Visible(), visible);
    QCOMPARE(c->widget()->isVisible(), visible);
    QCOMPARE(c->Caption(), caption);
    if (back != SinColor) {
        QCOMPARE(c->BackColor(), back);
        QCOMPARE(c->widget()->palette().color(c->widget()->backgroundRole()), AColor(back));
        QVERIFY(c->widget()->autoFillBackground());
    }
}

void TstForm::timers()
{
    FormPrueba f(disenoPrueba);
    f.Load();
    auto *paso = f.control<Timer>(QStringLiteral("tmrPaso"));
    auto *vivo = f.control<Timer>(QStringLiteral("tmrVivo"));
    QVERIFY(!paso->widget());
    QCOMPARE(paso->Interval(), 1);
    QVERIFY(!paso->Enabled());
    QCOMPARE(paso->Left(), 1935.0);
    QCOMPARE(vivo->Interval(), 1);
    QVERIFY(vivo->Enabled());
    QSignalSpy ticksVivo(vivo, &Timer::Tick), ticksPaso(paso, &Timer::Tick);
    QTRY_VERIFY(ticksVivo.count() >= 2);
    QCOMPARE(ticksPaso.count(), 0);

    // Other rows: fonts, alignment, flags, tooltip and the grid's own design.
    auto *lbl = f.control<Label>(QStringLiteral("lblDelante"));
    QVERIFY(lbl->Font().bold());
    QCOMPARE(lbl->Font().pointSizeF(), 9.75);
    QCOMPARE(lbl->Font().family(), QStringLiteral("Verdana"));
    QVERIFY(static_cast<QLabel *>(lbl->widget())->alignment() & Qt::AlignHCenter);
    QVERIFY(!lbl->widget()->autoFillBackground());
    auto *txt = f.control<TextBox>(QStringLiteral("txtDentro"));
    QVERIFY(txt->Locked());
    QCOMPARE(txt->Text(), QStringLiteral("9999,99"));
    QVERIFY(static_cast<QLineEdit *>(txt->widget())->alignment() & Qt::AlignRight);
    QCOMPARE(txt->ToolTipText(), QStringLiteral("Precio del menu."));
    QVERIFY(!f.control<TextBox>(QStringLiteral("txtSegundo"))->Locked());
    // A control drawn with no font has the form's, which the small buttons were sized for.
    QCOMPARE(f.control(QStringLiteral("cmdOculto"))->Font().family(), QStringLiteral("MS Sans Serif"));
    QCOMPARE(f.control(QStringLiteral("cmdOculto"))->Font().pointSizeF(), 8.25);
    auto *grid = f.control<Grid>(QStringLiteral("grid_lista"));
    QCOMPARE(grid->Rows(), 3);
    QCOMPARE(grid->Cols(), 5);
    QCOMPARE(grid->ToolTipText(), QStringLiteral("Lista de clientes"));
    QCOMPARE(f.control<DTPicker>(QStringLiteral("desde"))->Font().pointSizeF(), 14.25);

    // A label sized to its text leaves its design size behind, in its font.
    auto *autoLbl = f.control<Label>(QStringLiteral("lblAuto"));
    const QFontMetrics fm(autoLbl->widget()->font());
    QVERIFY(autoLbl->widget()->height() >= fm.height() && autoLbl->widget()->height() <= fm.height() + 2);
    QVERIFY(autoLbl->widget()->width() >= fm.horizontalAdvance(QStringLiteral("Fec. Desde:")));
    QVERIFY(autoLbl->Width() < 3000);
    QCOMPARE(autoLbl->Width(), ATwips(autoLbl->widget()->width()));
    QCOMPARE(autoLbl->Left(), 150.0);
}

void TstForm::ordenTab()
{
    FormPrueba f(disenoPrueba);
    f.Load();
    f.ventana()->show();
    f.ventana()->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(f.ventana()));
    auto *segundo = f.control<TextBox>(QStringLiteral("txtSegundo")); // tab 2
    auto *dentro = f.control<TextBox>(QStringLiteral("txtDentro"));   // tab 3
    auto *sinTab = f.control<TextBox>(QStringLiteral("txtSinTab"));   // tab 2, but no tab stop
    QCOMPARE(segundo->TabIndex, 2);
    QCOMPARE(dentro->TabIndex, 3);
    segundo->SetFocus();
    QTRY_VERIFY(segundo->widget()->hasFocus());
    // Tab follows TabIndex, not the design order, across containers.
    QTest::keyClick(segundo->widget(), Qt::Key_Tab);
    QTRY_VERIFY(dentro->widget()->hasFocus());
    QTest::keyClick(dentro->widget(), Qt::Key_Backtab);
    QTRY_VERIFY(segundo->widget()->hasFocus());
    QTest::keyClick(segundo->widget(), Qt::Key_Backtab);
    QVERIFY(!sinTab->widget()->hasFocus());
    // A click still reaches the box that Tab passes by.
    QTest::mouseClick(sinTab->widget(), Qt::LeftButton);
    QTRY_VERIFY(sinTab->widget()->hasFocus());
}

void TstForm::disenoErroneo_data()
{
    QTest::addColumn<int>("caso");
    QTest::addColumn<QStringList>("enElTexto");
    QTest::newRow("contenedor desconocido") << 0 << QStringList{"lblHuerfana", "frNoExiste"};
    QTest::newRow("contenedor despues del hijo") << 1 << QStringList{"lblAntes", "frDespues"};
    QTest::newRow("un timer como contenedor") << 2 << QStringList{"lblDentro", "tmrPadre"};
    QTest::newRow("nombre repetido") << 3 << QStringList{"lblDoble"};
}

void TstForm::disenoErroneo()
{
    QFETCH(int, caso);
    QFETCH(QStringList, enElTexto);
    static const DisenoControl casos[4][2] = {
        {{.nombre = "frBien", .clase = Clase::Frame, .contenedor = nullptr, .left = 0, .top = 0, .width = 100, .height = 100},
         {.nombre = "lblHuerfana", .clase = Clase::Label, .contenedor = "frNoExiste", .left = 0, .top = 0, .width = 100, .height = 100}},
        {{.nombre = "lblAntes", .clase = Clase::Label, .contenedor = "frDespues", .left = 0, .top = 0, .width = 100, .height = 100},
         {.nombre = "frDespues", .clase = Clase::Frame, .contenedor = nullptr, .left = 0, .top = 0, .width = 100, .height = 100}},
        {{.nombre = "tmrPadre", .clase = Clase::Timer, .contenedor = nullptr, .left = 0, .top = 0, .width = 0, .height = 0},
         {.nombre = "lblDentro", .clase = Clase::Label, .contenedor = "tmrPadre", .left = 0, .top = 0, .width = 100, .height = 100}},
        {{.nombre = "lblDoble", .clase = Clase::Label, .contenedor = nullptr, .left = 0, .top = 0, .width = 100, .height = 100},
         {.nombre = "lblDoble", .clase = Clase::Label, .contenedor = nullptr, .left = 0, .top = 0, .width = 100, .height = 100}},
    };
    const DisenoFormulario diseno{"frmMal", "Mal", 3000, 2000, nullptr, casos[caso]};
    FormPrueba f(diseno);
    QString texto;
    try {
        f.Load();
    } catch (const std::logic_error &e) {
        texto = QString::fromUtf8(e.what());
    }
    QVERIFY2(!texto.isEmpty(), "no std::logic_error");
    QVERIFY2(texto.contains(QLatin1String("frmMal")), qPrintable(texto));
    for (const QString &parte : enElTexto)
        QVERIFY2(texto.contains(parte), qPrintable(texto));
    // Nothing half-built is left behind, and the screen's own load never ran.
    QVERIFY(!f.Loaded());
    QVERIFY(!f.ventana());
    QVERIFY(f.Controls().isEmpty());
    QCOMPARE(f.cargas, 0);
    QCOMPARE(Form::Buscar(QStringLiteral("frmMal")), nullptr);
}

void TstForm::controlPorNombre()
{
    FormPrueba f(disenoPrueba);
    QCOMPARE(f.control(QStringLiteral("frFondo")), nullptr); // nothing before Load
    f.Load();
    QCOMPARE(f.Controls().size(), qsizetype(std::size(filasPrueba)));
    QVERIFY(f.control(QStringLiteral("frFondo")));
    QCOMPARE(f.control(QStringLiteral("frfondo")), nullptr); // names are case-sensitive
    QCOMPARE(f.control(QStringLiteral("txtDentro"))->Container(), f.control(QStringLiteral("frInterior")));
    QCOMPARE(f.control(QStringLiteral("Open1"))->Container(), nullptr);
    QVERIFY_THROWS_EXCEPTION(std::logic_error, f.control<Label>(QStringLiteral("txtDentro")));
    QVERIFY_THROWS_EXCEPTION(std::logic_error, f.control<Label>(QStringLiteral("lblNoExiste")));
    QVERIFY(f.control<VisorAyuda>(QStringLiteral("Open1")));
}

void TstForm::cargarDescargarCargar()
{
    FormPrueba f(disenoPrueba);
    QSignalSpy descargas(&f, &Form::Unloaded);
    f.Load();
    f.Load(); // loaded already: nothing happens
    QCOMPARE(f.cargas, 1);
    QCOMPARE(f.captionAlCargar, QStringLiteral("Delante")); // the controls exist in Form_Load

    QPointer<QWidget> ventanaVieja = f.ventana();
    QPointer<Control> etiquetaVieja = f.control(QStringLiteral("lblDelante"));
    auto *lbl = f.control<Label>(QStringLiteral("lblDelante"));
    lbl->setCaption(QStringLiteral("Cambiada"));
    lbl->setLeft(-13920);
    f.control(QStringLiteral("cmdOculto"))->setVisible(true);
    f.setWidth(9000);
    f.setCaption(QStringLiteral("Otra cosa"));
    f.control<Timer>(QStringLiteral("tmrPaso"))->setEnabled(true);

    f.Unload();
    QCOMPARE(descargas.count(), 1);
    QVERIFY(!f.Loaded());
    QVERIFY(!f.ventana());
    QVERIFY(f.Controls().isEmpty());
    QCOMPARE(f.control(QStringLiteral("lblDelante")), nullptr);
    QTRY_VERIFY(ventanaVieja.isNull());
    QTRY_VERIFY(etiquetaVieja.isNull());
    f.Unload(); // not loaded: nothing, and no second signal
    QCOMPARE(descargas.count(), 1);

    f.Load();
    QCOMPARE(f.cargas, 2);
    QCOMPARE(f.captionAlCargar, QStringLiteral("Delante"));
    QCOMPARE(f.control(QStringLiteral("lblDelante"))->Left(), 300.0);
    QCOMPARE(f.control(QStringLiteral("lblDelante"))->widget()->x(), 20);
    QVERIFY(!f.control(QStringLiteral("cmdOculto"))->Visible());
    QVERIFY(!f.control<Timer>(QStringLiteral("tmrPaso"))->Enabled());
    QCOMPARE(f.Width(), 6090.0);
    QCOMPARE(f.Caption(), QStringLiteral("Pantalla de prueba"));
    QVERIFY(f.ventana() != nullptr);
}

void TstForm::tamanoExterior()
{
    FormPrueba f(disenoPrueba);
    QCOMPARE(f.Width(), 6000.0 + 90);
    QCOMPARE(f.Height(), 4500.0 + 375);
    f.Load();
    QCOMPARE(f.Width(), 6090.0);
    QCOMPARE(f.Height(), 4875.0);
    f.setWidth(15360);
    f.setHeight(11085);
    QCOMPARE(f.Width(), 15360.0);
    QCOMPARE(f.Height(), 11085.0);
    QCOMPARE(f.ventana()->size(), QSize(APixeles(15360 - 90), APixeles(11085 - 375)));
    QCOMPARE(f.ventana()->minimumSize(), f.ventana()->maximumSize());
}

void TstForm::showModal_data()
{
    QTest::addColumn<QString>("como");
    QTest::newRow("Unload por codigo") << "codigo";
    QTest::newRow("casilla de cierre") << "cierre";
    QTest::newRow("boton que descarga") << "boton";
}

void TstForm::showModal()
{
    QFETCH(QString, como);
    Form f(disenoOtra);
    f.Load();
    auto *salir = f.control<CommandButton>(QStringLiteral("cmdSalir"));
    connect(salir, &CommandButton::Click, &f, &Form::Unload);
    QSignalSpy descargas(&f, &Form::Unloaded);

    bool visto = false, modal = false, forzado = false;
    QTimer::singleShot(0, this, [&] {
        QWidget *v = f.ventana();
        visto = v && v->isVisible();
        modal = v && v->windowModality() == Qt::ApplicationModal;
        if (como == QLatin1String("codigo"))
            f.Unload();
        else if (como == QLatin1String("cierre"))
            v->close();
        else
            QTest::mouseClick(salir->widget(), Qt::LeftButton);
    });
    // A guard so that a show that never returns fails instead of hanging.
    QTimer::singleShot(10000, this, [&] {
        forzado = true;
        f.Unload();
    });
    f.ShowModal();
    QVERIFY(!forzado);
    QVERIFY(visto);
    QVERIFY(modal);
    QCOMPARE(descargas.count(), 1);
    QVERIFY(!f.Loaded());

    // And it can be shown again, from the design.
    QTimer::singleShot(0, this, [&] { f.Unload(); });
    f.ShowModal();
    QCOMPARE(descargas.count(), 2);
}

void TstForm::buscar()
{
    FormPrueba uno(disenoPrueba);
    Form otra(disenoOtra);
    QCOMPARE(Form::Buscar(QStringLiteral("frmPrueba")), nullptr);
    uno.Load();
    otra.Load();
    QCOMPARE(Form::Buscar(QStringLiteral("frmPrueba")), &uno);
    QCOMPARE(Form::Buscar(QStringLiteral("frmOtra")), &otra);
    QCOMPARE(Form::Buscar(QStringLiteral("frmprueba")), nullptr);
    uno.Unload();
    QCOMPARE(Form::Buscar(QStringLiteral("frmPrueba")), nullptr);
    QCOMPARE(Form::Buscar(QStringLiteral("frmOtra")), &otra);
    {
        Form breve(disenoOtra);
        // Two screens of one design: the name finds the one loaded.
        otra.Unload();
        breve.Load();
        QCOMPARE(Form::Buscar(QStringLiteral("frmOtra")), &breve);
    }
    QCOMPARE(Form::Buscar(QStringLiteral("frmOtra")), nullptr); // a destroyed screen is gone
}

QTEST_MAIN(TstForm)
#include "tst_form.moc"
