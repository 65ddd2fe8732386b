// The screen services on a small screen of their own: scaling, translation, grids filled
// from a query and what a price box lets through.
#include "apoyo/basedatosprueba.h"
#include "apoyo/ejecucion.h"
#include "platform/datos/errorbd.h"
#include "platform/ui/controles.h"
#include "platform/ui/form.h"
#include "platform/ui/grid.h"
#include "suite/ui/svcescala.h"
#include "suite/ui/svcgrid.h"
#include "suite/ui/svcteclado.h"
#include "suite/ui/svctraduccion.h"

using namespace ADODB;
using namespace Pantalla;

namespace {

// clang-format off
constexpr DisenoControl controles[] = {
    {.nombre = "frPadre", .clase = ClaseControl::Frame, .contenedor = nullptr,
     .left = 0, .top = 0, .width = 15360, .height = 11085, .estilo = Estilo::SinBorde},
    {.nombre = "frHijo", .clase = ClaseControl::Frame, .contenedor = "frPadre",
     .left = 0, .top = 1005, .width = 15285, .height = 9720, .estilo = Estilo::SinBorde},
    {.nombre = "Label1", .clase = ClaseControl::Label, .contenedor = "frHijo",
     .left = 495, .top = 420, .width = 4650, .height = 420, .texto = "Lista de Productos",
     .fuente = {"Verdana", 12, true}},
    {.nombre = "cmdSalir", .clase = ClaseControl::CommandButton, .contenedor = "frHijo",
     .left = 13545, .top = 8445, .width = 1605, .height = 1155, .texto = "Salir"},
};
constexpr DisenoFormulario diseno{.nombre = "frmPrueba", .caption = "Prueba", .clientWidth = 15270,
                                  .clientHeight = 10710, .icono = nullptr, .controles = controles};
// clang-format on

/// A grid's header, widths and alignments as "title width I|C|D; ...".
QString Columnas(const Grid &g) {
    QStringList c;
    for (int i = 0; i < g.Cols(); ++i)
        c << QStringLiteral("%1 %2 %3")
                 .arg(g.TextMatrix(0, i))
                 .arg(g.ColWidth(i))
                 .arg("ICD"[int(g.ColAlignment(i))]);
    return c.join(QStringLiteral("; "));
}

} // namespace

class TstPantallas : public QObject {
    Q_OBJECT
    std::unique_ptr<BaseDatosPrueba> db;
    std::unique_ptr<Form> form;
    std::unique_ptr<Grid> grid;

    Control *control(const char *nombre) { return form->control(QString::fromLatin1(nombre)); }

  private slots:
    void init() {
        db = std::make_unique<BaseDatosPrueba>();
        form = std::make_unique<Form>(diseno);
        form->Load();
        grid = std::make_unique<Grid>(QStringLiteral("grid"), nullptr, nullptr,
                                      DisenoGrid{.rows = 2, .cols = 4});
    }
    void cleanup() {
        grid.reset();
        form.reset();
        db.reset();
    }

    void escala() {
        // A screen wider and, more so, taller than the design's: each axis its own factor.
        const double ancho = 19200.0, alto = 15360.0;
        const double fx = ancho / 15360.0, fy = alto / 11085.0;
        SvcEscala escala;
        const double anchoForm = form->Width(), altoForm = form->Height();
        const double puntos = control("Label1")->Font().pointSizeF();
        escala.AjustarFormulario(db->Conexion(), *form, ancho, alto, 15360.0, 11085.0);
        QCOMPARE(escala.FactorEscala(), fx);
        QCOMPARE(form->Width(), anchoForm * fx);
        QCOMPARE(form->Height(), altoForm * fy);
        // Every control keeps its design place relative to its container, scaled.
        for (const DisenoControl &d : controles) {
            Control *c = control(d.nombre);
            QCOMPARE(QList<double>({c->Left(), c->Top(), c->Width(), c->Height()}),
                     QList<double>({d.left * fx, d.top * fy, d.width * fx, d.height * fy}));
        }
        QCOMPARE(control("Label1")->Font().pointSizeF(), puntos * std::min(fx, fy));
        // The widgets follow: the button's pixel place is its twips over 15, rounded.
        QWidget *boton = control("cmdSalir")->widget();
        QCOMPARE(boton->x(), int(std::lround(13545 * fx / 15)));
        QCOMPARE(boton->height(), int(std::lround(1155 * fy / 15)));
    }

    void escalaAcotada_data() {
        // The display's free area and the size the options ask for, in pixels; whether the
        // screen is brought down to the area.
        const auto caso = Pruebas::Tabla<QSize, QSize, bool>();
        caso("3840x2160 stored, 1024x768 shown", QSize(1024, 740), QSize(3840, 2160), true);
        caso("too tall only", QSize(1920, 1000), QSize(1280, 1600), true);
        caso("it fits: each axis its own", QSize(1920, 1040), QSize(1280, 1024), false);
        caso("area not known", QSize(0, 0), QSize(3840, 2160), false);
    }
    void escalaAcotada() {
        const auto [area, pedido, acotada] = Pruebas::Fila<QSize, QSize, bool>();
        SvcEscala::FijarAreaDisponible(area.width() * 15.0, area.height() * 15.0);
        const double ancho = form->Width(), alto = form->Height();
        SvcEscala escala;
        escala.AjustarFormulario(db->Conexion(), *form, pedido.width() * 15.0,
                                 pedido.height() * 15.0, 15360.0, 11085.0);
        SvcEscala::FijarAreaDisponible(0, 0);
        if (!acotada) {
            QCOMPARE(form->Width(), ancho * pedido.width() * 15.0 / 15360.0);
            QCOMPARE(form->Height(), alto * pedido.height() * 15.0 / 11085.0);
            return;
        }
        // Inside the area, one side filling it, in the design's proportions, and every
        // control (the door button too) inside the window.
        QVERIFY(form->Width() <= area.width() * 15.0 + 1e-6);
        QVERIFY(form->Height() <= area.height() * 15.0 + 1e-6);
        QVERIFY(qFuzzyCompare(form->Width(), area.width() * 15.0) ||
                qFuzzyCompare(form->Height(), area.height() * 15.0));
        QVERIFY(qFuzzyCompare(form->Width() / form->Height(), ancho / alto));
        QCOMPARE(escala.FactorEscala(), form->Width() / ancho);
        Control *salir = control("cmdSalir");
        QVERIFY(salir->Left() + salir->Width() <= form->Width());
        QVERIFY(salir->Top() + salir->Height() <= form->Height());
    }

    void traduccion() {
        SvcTraduccion traduccion;
        // Spanish, the design's language, needs no rows.
        db->Ejecutar(QStringLiteral("insert into opciones (idioma) values ('es')"));
        traduccion.TraducirFormulario(db->Conexion(), *form);
        QCOMPARE(control("Label1")->Caption(), QStringLiteral("Lista de Productos"));
        // The captions stored once, and only once, for the translators.
        traduccion.GenerarCaptions(db->Conexion(), *form);
        traduccion.GenerarCaptions(db->Conexion(), *form);
        QCOMPARE(db->Valor("select count(*) from traducciones where idioma = 'es' and formulario"
                           " = 'frmPrueba'")
                     .toInt(),
                 3); // the screen, Label1 and cmdSalir
        db->Ejecutar(QStringLiteral("update opciones set idioma = 'ca'"));
        db->Ejecutar("insert into traducciones values ('ca', 'frmPrueba', 'Label1', 'Llista'),"
                     " ('ca', 'frmPrueba', '', 'Prova'), ('ca', 'frmAltra', 'cmdSalir', 'Altra')");
        traduccion.TraducirFormulario(db->Conexion(), *form);
        QCOMPARE(control("Label1")->Caption(), QStringLiteral("Llista"));
        QCOMPARE(form->Caption(), QStringLiteral("Prova"));
        QCOMPARE(control("cmdSalir")->Caption(), QStringLiteral("Salir"));
    }

    void formatos_data() {
        // Region, widths/alignments, and the columns they give (empty: refused).
        const auto caso = Pruebas::Tabla<QString, QString, QString>();
        caso("widths and alignments", "es_ES", "5000/Izquierda;1500/centrado;0/derecha;0/derecha",
             "A 5000 I; B 1500 C; C 0 D; D 0 D");
        caso("fraction with a comma", "es_ES",
             "1237,5/centrado;4125/Izquierda;1/centrado;1/derecha",
             "A 1237.5 C; B 4125 I; C 1 C; D 1 D");
        caso("an entry missing", "es_ES", "10/centrado;10/centrado;10/centrado", "");
        caso("letters in a width", "es_ES", "10x/centrado;10/centrado;1/centrado;1/centrado", "");
    }
    void formatos() {
        const auto [idioma, formato, columnas] = Pruebas::Fila<QString, QString, QString>();
        QLocale::setDefault(QLocale(idioma));
        SvcGrid().FormatearGrid(*grid, "X;Y;Z;W", "1/centrado;2/centrado;3/centrado;4/centrado", 0);
        grid->setTextMatrix(1, 0, QStringLiteral("dato"));
        const QString antes = Columnas(*grid);
        if (columnas.isEmpty()) // a refused format leaves the grid as it was
            QVERIFY_THROWS_EXCEPTION(std::invalid_argument,
                                     SvcGrid().FormatearGrid(*grid, "A;B;C;D", formato, 0));
        else
            SvcGrid().FormatearGrid(*grid, "A;B;C;D", formato, 0);
        QCOMPARE(Columnas(*grid), columnas.isEmpty() ? antes : columnas);
        QCOMPARE(grid->Rows(), 2); // the data rows are not the format's business
        QCOMPARE(grid->TextMatrix(1, 0), QStringLiteral("dato"));
    }

    void carga() {
        SvcGrid().FormatearGrid(*grid, "Nombre;Desde;Hasta;Cod",
                                "5000/Izquierda;1500/centrado;1500/centrado;0/derecha", 0);
        db->Ejecutar("insert into cabecera_precio values (3, 'Año nuevo', '2026-12-01',"
                     " '1601-01-01', '9999-12-31'), (41, null, null, '2026-02-28', '2026-02-28')");
        const QString consulta = "Select descripcion,preciovalidodesde,preciovalidohasta,"
                                 "identificador from cabecera_precio order by identificador";
        // A fill after a larger one leaves none of its rows behind.
        grid->setRows(10);
        grid->setTextMatrix(9, 0, QStringLiteral("resto"));
        SvcGrid().CargarGrid(db->Conexion(), consulta, *grid, 0, 0);
        QCOMPARE(grid->Rows(), 3);
        QStringList celdas;
        for (int f = 0; f < 3; ++f)
            for (int c = 0; c < 4; ++c)
                celdas << grid->TextMatrix(f, c);
        QCOMPARE(celdas.join('|'), "Nombre|Desde|Hasta|Cod|Año nuevo|1/1/1601|31/12/9999|3|"
                                   "|28/2/2026|28/2/2026|41");
        QCOMPARE(grid->ColWidth(0), 5000.0);
        db->Ejecutar(QStringLiteral("delete from cabecera_precio"));
        SvcGrid().CargarGrid(db->Conexion(), consulta, *grid, 0, 0);
        QCOMPARE(grid->Rows(), 1);
        QVERIFY_THROWS_EXCEPTION(
            ErrorBD, SvcGrid().CargarGrid(db->Conexion(), "Select x from nada", *grid, 0, 0));
    }

    // The box's text with the cursor at '^' or the selection in [ ], the shop's decimals, the
    // key, and whether it passes.
    void teclaPrecio_data() {
        const auto caso = Pruebas::Tabla<QString, int, QChar, bool>();
        caso("digit", "12^", 2, '5', true);
        caso("comma", "12^", 2, ',', true);
        caso("second comma", "12,5^", 2, ',', false);
        caso("comma with no decimals", "12^", 0, ',', false);
        caso("one decimal too many", "12,50^", 2, '1', false);
        caso("whole digit with the decimals full", "^12,50", 2, '1', true);
        caso("comma that would leave three decimals", "12^345", 2, ',', false);
        caso("selection replaced", "12,[50]", 2, '9', true);
        caso("minus first", "^12", 2, '-', true);
        caso("minus in the middle", "1^2", 2, '-', false);
    }
    void teclaPrecio() {
        auto [caja, decimales, tecla, pasa] = Pruebas::Fila<QString, int, QChar, bool>();
        const qsizetype desde = std::max(caja.indexOf('^'), caja.indexOf('['));
        const qsizetype hasta = caja.contains(']') ? caja.indexOf(']') - 1 : desde;
        TextBox texto(QStringLiteral("txt_NuevoPrecio"), nullptr, nullptr);
        texto.setText(caja.remove('^').remove('[').remove(']'));
        texto.setSelStart(int(desde));
        texto.setSelLength(int(hasta - desde));
        const qint16 codigo = qint16(tecla.unicode());
        QCOMPARE(SvcTeclado().FiltrarTeclaPrecio(codigo, texto, qint16(decimales)),
                 pasa ? codigo : qint16(0));
    }
};

TARIFAS_PRUEBAS(TstPantallas)
#include "tst_pantallas.moc"
