// The screen services on a small screen of their own: scaling, looks and translation.
#include "apoyo/ejecucion.h"
#include "apoyo/basedatosprueba.h"
#include "platform/datos/cadenaconexion.h"
#include "platform/datos/recordset.h"
#include "platform/ui/form.h"
#include "platform/ui/grid.h"
#include "suite/datos/esquema.h"
#include "suite/ui/svcaspecto.h"
#include "suite/ui/svcescala.h"
#include "suite/ui/svctraduccion.h"

#include <QSqlQuery>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

namespace {

constexpr DisenoControl controles[] = {
    {.nombre = "frPadre", .clase = Clase::Frame, .contenedor = nullptr,
     .left = 0, .top = 0, .width = 15360, .height = 11085, .estilo = SinBorde},
    {.nombre = "frHijo", .clase = Clase::Frame, .contenedor = "frPadre",
     .left = 0, .top = 1005, .width = 15285, .height = 9720, .back = RGB(224, 224, 224), .estilo = SinBorde},
    {.nombre = "frBlanco", .clase = Clase::Frame, .contenedor = "frHijo",
     .left = 270, .top = 8475, .width = 10215, .height = 1065, .back = RGB(255, 255, 255), .estilo = SinBorde},
    {.nombre = "Label1", .clase = Clase::Label, .contenedor = "frHijo",
     .left = 495, .top = 420, .width = 4650, .height = 420, .texto = "Lista de Productos",
     .fuente = {"Verdana", 12, true}},
    {.nombre = "txtNombre", .clase = Clase::TextBox, .contenedor = "frBlanco",
     .left = 120, .top = 285, .width = 4920, .height = 270, .texto = ""},
    {.nombre = "cmdSalir", .clase = Clase::CommandButton, .contenedor = "frHijo",
     .left = 13545, .top = 8445, .width = 1605, .height = 1155, .texto = "Salir"},
};

constexpr DisenoFormulario diseno{.nombre = "frmPrueba", .caption = "Prueba", .clientWidth = 15270,
                                  .clientHeight = 10710, .icono = nullptr, .controles = controles};

} // namespace

class TstPantallas : public QObject {
    Q_OBJECT
    std::unique_ptr<BaseDatosPrueba> db;
    std::unique_ptr<Form> form;

    void ejecutar(const QString &sql) { db->Ejecutar(sql); }

private slots:
    void initTestCase() { QStandardPaths::setTestModeEnabled(true); }
    void init() {
        db = std::make_unique<BaseDatosPrueba>();
        form = std::make_unique<Form>(diseno);
        form->Load();
    }
    void cleanup() {
        form.reset();
        db.reset();
    }

    void escala_data() {
        QTest::addColumn<double>("ancho");
        QTest::addColumn<double>("alto");
        QTest::newRow("diseno") << 15360.0 << 11085.0;
        QTest::newRow("0,75") << 11520.0 << 8313.75;
        QTest::newRow("ancha") << 19200.0 << 11085.0;
        QTest::newRow("1280x1024") << 19200.0 << 15360.0;
    }
    void escala() {
        QFETCH(double, ancho);
        QFETCH(double, alto);
        const double fx = ancho / 15360.0, fy = alto / 11085.0;
        SvcEscala escala;
        const double anchoForm = form->Width(), altoForm = form->Height();
        const double puntos = form->control(QStringLiteral("Label1"))->Font().pointSizeF();
        escala.AjustarFormulario(db->Conexion(), *form, ancho, alto, 15360.0, 11085.0);
        QCOMPARE(escala.FactorEscala(), fx);
        QCOMPARE(form->Width(), anchoForm * fx);
        QCOMPARE(form->Height(), altoForm * fy);
        // Every control keeps its design place relative to its container, scaled.
        for (const DisenoControl &d : controles) {
            Control *c = form->control(QString::fromLatin1(d.nombre));
            QCOMPARE(c->Left(), d.left * fx);
            QCOMPARE(c->Top(), d.top * fy);
            QCOMPARE(c->Width(), d.width * fx);
            QCOMPARE(c->Height(), d.height * fy);
        }
        QCOMPARE(form->control(QStringLiteral("Label1"))->Font().pointSizeF(), puntos * std::min(fx, fy));
        // The widgets follow: the button's pixel place is its twips over 15, rounded.
        QWidget *boton = form->control(QStringLiteral("cmdSalir"))->widget();
        QCOMPARE(boton->x(), int(std::lround(13545 * fx / 15)));
        QCOMPARE(boton->height(), int(std::lround(1155 * fy / 15)));
    }

    void aspectos_data() {
        QTest::addColumn<int>("estilo");
        QTest::newRow("clasico") << 0;
        QTest::newRow("azul") << 1;
        QTest::newRow("desconocido es el clasico") << 7;
    }
    void aspectos() {
        QFETCH(int, estilo);
        SvcAspecto aspecto;
        aspecto.AplicarAspecto(*form, qint16(estilo), db->Conexion());
        const ColorOLE foco = aspecto.ColorFoco(db->Conexion(), qint16(estilo)).toInt();
        QVERIFY(foco >= 0 && foco <= 0xFFFFFF);
        // White stays white; the grey panel and the boxes take the look's colours, and a box
        // with the focus stands out from one without.
        QCOMPARE(form->control(QStringLiteral("frBlanco"))->BackColor(), RGB(255, 255, 255));
        QVERIFY(form->control(QStringLiteral("txtNombre"))->BackColor() != foco);
        if (estilo == 1)
            QVERIFY(form->control(QStringLiteral("frHijo"))->BackColor() != RGB(224, 224, 224));
        else
            QCOMPARE(form->control(QStringLiteral("frHijo"))->BackColor(), RGB(224, 224, 224));
        QCOMPARE(aspecto.ColorFoco(db->Conexion(), 0) == aspecto.ColorFoco(db->Conexion(), 1), false);
    }

    void traduccion() {
        SvcTraduccion traduccion;
        // Spanish, the design's language, needs no rows.
        ejecutar(QStringLiteral("insert into opciones (idioma) values ('es')"));
        traduccion.TraducirFormulario(db->Conexion(), *form);
        QCOMPARE(form->control(QStringLiteral("Label1"))->Caption(), QStringLiteral("Lista de Productos"));

        // The captions stored once, and only once, for the translators.
        traduccion.GenerarCaptions(db->Conexion(), *form);
        traduccion.GenerarCaptions(db->Conexion(), *form);
        ADODB::Recordset rs;
        rs.Open(QStringLiteral("select control, texto from traducciones where idioma = 'es' and formulario = 'frmPrueba'"), db->Conexion());
        QCOMPARE(rs.RecordCount(), 3); // the screen, Label1 and cmdSalir
        rs.Close();

        ejecutar(QStringLiteral("update opciones set idioma = 'ca'"));
        ejecutar(QStringLiteral("insert into traducciones values ('ca', 'frmPrueba', 'Label1', 'Llista de Productes')"));
        ejecutar(QStringLiteral("insert into traducciones values ('ca', 'frmPrueba', '', 'Prova')"));
        ejecutar(QStringLiteral("insert into traducciones values ('ca', 'frmAltra', 'cmdSalir', 'Altra')"));
        traduccion.TraducirFormulario(db->Conexion(), *form);
        QCOMPARE(form->control(QStringLiteral("Label1"))->Caption(), QStringLiteral("Llista de Productes"));
        QCOMPARE(form->Caption(), QStringLiteral("Prova"));
        QCOMPARE(form->control(QStringLiteral("cmdSalir"))->Caption(), QStringLiteral("Salir"));
    }
};

TARIFAS_PRUEBAS(TstPantallas)
#include "tst_pantallas.moc"
