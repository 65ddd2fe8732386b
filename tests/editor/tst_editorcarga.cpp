// The editor's load: the business mode, the grids' formats, the colours, the placing of the
// frames, the sliding entry, the focus colours, the hand-over from the register, the way out
// and the next opening, and what a load that can't go on does.
#include "apoyo/ejecucion.h"
#include "apoyo/tiendaprueba.h"
#include "editor/frmtarifas.h"
#include "platform/datos/errorbd.h"
#include "platform/datos/regional.h"
#include "register/frmlistas.h"
#include "session/principal.h"
#include "session/sesionsuite.h"
#include "suite/ui/svcaspecto.h"

#include <QStandardPaths>
#include <QtTest>

namespace {

const QString TallaColor = QStringLiteral("TALLACOLOR");

QStringList Titulos(const Grid &g) {
    QStringList t;
    for (int c = 0; c < g.Cols(); ++c)
        t << g.TextMatrix(0, c);
    return t;
}

QList<double> Anchos(const Grid &g) {
    QList<double> a;
    for (int c = 0; c < g.Cols(); ++c)
        a << g.ColWidth(c);
    return a;
}

/// Each pair of numbers compared as QCOMPARE compares doubles (to a relative 1e-12), so that a
/// width of 1000 x 1,1 matches whatever the last bit of the factor.
void CompararNumeros(const QList<double> &real, const QList<double> &esperado) {
    QCOMPARE(real.size(), esperado.size());
    for (qsizetype i = 0; i < real.size(); ++i)
        QCOMPARE(real[i], esperado[i]);
}

QList<AlineacionColumna> Alineaciones(const Grid &g) {
    QList<AlineacionColumna> a;
    for (int c = 0; c < g.Cols(); ++c)
        a << g.ColAlignment(c);
    return a;
}

} // namespace

class TstEditorCarga : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        QStandardPaths::setTestModeEnabled(true);
        QLocale::setDefault(QLocale(QLocale::Spanish, QLocale::Spain));
    }

    void modo_data() {
        QTest::addColumn<QString>("tipoNegocio");
        QTest::addColumn<bool>("tallaColor");
        QTest::newRow("TALLACOLOR") << TallaColor << true;
        QTest::newRow("minusculas") << QStringLiteral("tallacolor") << false;
        QTest::newRow("mezcla") << QStringLiteral("TallaColor") << false;
        QTest::newRow("blanco detras") << QStringLiteral("TALLACOLOR ") << false;
        QTest::newRow("blanco delante") << QStringLiteral(" TALLACOLOR") << false;
        QTest::newRow("vacio") << QString() << false;
        QTest::newRow("otro negocio") << QStringLiteral("HOSTELERIA") << false;
    }
    void modo() {
        QFETCH(QString, tipoNegocio);
        QFETCH(bool, tallaColor);
        TiendaPrueba tienda(tipoNegocio);
        tienda.Producto(1, "C1", "Camisa", 12.5);
        tienda.Lista(1, "General");
        tienda.Precio(1, 1, 11, tallaColor ? QVariant("-1") : QVariant());
        FrmTarifas &e = tienda.CargarEditor(1);

        QCOMPARE(e.frResultado->Visible(), tallaColor);
        QCOMPARE(e.grid_Pseleccionados->Cols(), tallaColor ? 8 : 5);
        QCOMPARE(e.grid_Pseleccionados->Rows(), 2);
        QCOMPARE(e.grid_Pseleccionados->TextMatrix(1, 1), QStringLiteral("Camisa"));
        if (tallaColor) {
            // The plain catalogue stays as designed, unformatted and empty, behind the frame.
            QCOMPARE(e.grid_productos->Cols(), 4);
            QCOMPARE(e.grid_productos->Rows(), 2);
            QCOMPARE(e.grid_productos->TextMatrix(0, 0), QString());
            QCOMPARE(e.grid_productos->TextMatrix(1, 1), QString());
            QCOMPARE(e.grid_productos_textil->Cols(), 8);
            QCOMPARE(e.grid_productos_textil->TextMatrix(1, 1), QStringLiteral("Camisa"));
            QCOMPARE(e.grid_productos_textil->TextMatrix(1, 3), QStringLiteral("-1"));
            QCOMPARE(e.grid_Pseleccionados->TextMatrix(1, 6), QStringLiteral("11"));
        } else {
            QCOMPARE(e.grid_productos_textil->Cols(), 2);
            QCOMPARE(e.grid_productos_textil->TextMatrix(0, 0), QString());
            QCOMPARE(e.grid_productos->Cols(), 5);
            QCOMPARE(e.grid_productos->TextMatrix(1, 1), QStringLiteral("Camisa"));
            QCOMPARE(e.grid_productos->TextMatrix(1, 3), QStringLiteral("12,5"));
            QCOMPARE(e.grid_Pseleccionados->TextMatrix(1, 3), QStringLiteral("11"));
        }
    }

    void formatos_data() {
        QTest::addColumn<QString>("tipoNegocio");
        QTest::addColumn<double>("factor");
        QTest::addColumn<QStringList>("titulos");
        QTest::addColumn<QList<double>>("anchos");
        QTest::addColumn<QList<AlineacionColumna>>("alineaciones");
        using A = AlineacionColumna;
        const QStringList llano{"Codigo", "Producto", "codigo", "precio", "seccion"};
        const QList<A> alLlano{A::Centrado, A::Izquierda, A::Derecha, A::Centrado, A::Derecha};
        const QStringList textil{"Codigo", "Producto", "codigo", "codigo_hijo",
                                 "Talla",  "Color",    "precio", "seccion"};
        const QList<A> alTextil{A::Centrado, A::Izquierda, A::Derecha,  A::Derecha,
                                A::Centrado, A::Centrado,  A::Centrado, A::Derecha};
        QTest::newRow("llano, diseno")
            << QString() << 1.0 << llano << QList<double>{1200, 4000, 0, 1500, 0} << alLlano;
        // Only the first two columns follow the scale.
        QTest::newRow("llano, 1,5")
            << QString() << 1.5 << llano << QList<double>{1800, 6000, 0, 1500, 0} << alLlano;
        QTest::newRow("llano, 0,75")
            << QString() << 0.75 << llano << QList<double>{900, 3000, 0, 1500, 0} << alLlano;
        QTest::newRow("textil, diseno")
            << TallaColor << 1.0 << textil << QList<double>{1000, 2500, 0, 0, 700, 1500, 1500, 0}
            << alTextil;
        QTest::newRow("textil, 1,5")
            << TallaColor << 1.5 << textil << QList<double>{1500, 3750, 0, 0, 700, 1500, 1500, 0}
            << alTextil;
        // A width with a fraction travels in the format's text and comes back whole.
        QTest::newRow("textil, 1,1")
            << TallaColor << 1.1 << textil
            << QList<double>{1000 * 1.1, 2500 * 1.1, 0, 0, 700, 1500, 1500, 0} << alTextil;
    }
    void formatos() {
        QFETCH(QString, tipoNegocio);
        QFETCH(double, factor);
        QFETCH(QStringList, titulos);
        QFETCH(QList<double>, anchos);
        QFETCH(QList<AlineacionColumna>, alineaciones);
        TiendaPrueba tienda(tipoNegocio);
        tienda.Escala(factor);
        tienda.Lista(1, "General");
        FrmTarifas &e = tienda.CargarEditor(1);
        // The catalogue of the mode and the selected products share one layout.
        Grid &catalogo = tipoNegocio == TallaColor ? *e.grid_productos_textil : *e.grid_productos;
        for (Grid *g : {&catalogo, e.grid_Pseleccionados}) {
            QCOMPARE(Titulos(*g), titulos);
            CompararNumeros(Anchos(*g), anchos);
            if (QTest::currentTestFailed())
                return;
            QCOMPARE(Alineaciones(*g), alineaciones);
        }
    }

    void colores_data() {
        QTest::addColumn<int>("estilo");
        QTest::addColumn<QString>("conFoco");
        QTest::addColumn<int>("panelPadre");
        QTest::addColumn<int>("panelHijo");
        QTest::newRow("clasico") << 0 << QString::number(RGB(255, 255, 192)) << RGB(224, 224, 224)
                                 << RGB(192, 192, 192);
        QTest::newRow("azul") << 1 << QString::number(RGB(204, 228, 255)) << RGB(214, 226, 238)
                              << RGB(186, 203, 222);
    }
    void colores() {
        QFETCH(int, estilo);
        QFETCH(QString, conFoco);
        QFETCH(int, panelPadre);
        QFETCH(int, panelHijo);
        TiendaPrueba tienda;
        SesionSuite.EstiloAspecto = qint16(estilo);
        tienda.Lista(1, "General");
        FrmTarifas &e = tienda.CargarEditor(1);
        QCOMPARE(e.estado.colorConFoco, conFoco);
        QCOMPARE(e.estado.colorSinFoco, QString::number(RGB(255, 255, 255)));
        // The calendars take the frames' colours as the look left them.
        for (DTPicker *fecha : {e.desde, e.hasta}) {
            QCOMPARE(fecha->CalendarBackColor(), panelPadre);
            QCOMPARE(fecha->CalendarTitleBackColor(), panelHijo);
            QCOMPARE(fecha->CalendarForeColor(), 0);
            QCOMPARE(fecha->CalendarTitleForeColor(), 0);
        }
    }

    void lugares_data() {
        QTest::addColumn<QString>("tipoNegocio");
        QTest::addColumn<double>("fx");
        QTest::addColumn<double>("fy");
        QTest::newRow("llano, diseno") << QString() << 1.0 << 1.0;
        QTest::newRow("textil, diseno") << TallaColor << 1.0 << 1.0;
        QTest::newRow("llano, 1,5 x 1,2") << QString() << 1.5 << 1.2;
        QTest::newRow("textil, 0,75 x 0,8") << TallaColor << 0.75 << 0.8;
    }
    void lugares() {
        QFETCH(QString, tipoNegocio);
        QFETCH(double, fx);
        QFETCH(double, fy);
        TiendaPrueba tienda(tipoNegocio);
        tienda.Escala(fx, fy);
        tienda.Lista(1, "General");
        FrmTarifas &e = tienda.CargarEditor(1);
        // The price panel stands where the selected products are, scaled.
        QCOMPARE(e.frCambio->Left(), 7800 * fx);
        QCOMPARE(e.frCambio->Top(), 705 * fy);
        QVERIFY(!e.frCambio->Visible());
        QCOMPARE(e.Frame2->Left(), 270 * fx);
        QCOMPARE(e.grid_productos->Top(), 720 * fy);
        QCOMPARE(e.grid_productos->Width(), 6960 * fx);
        // The variants' frame covers the plain catalogue in its mode, and keeps its design
        // place (scaled) down the screen in the other; across, it goes with the slide.
        QCOMPARE(e.frResultado->Top(), (tipoNegocio == TallaColor ? 720 : 1710) * fy);
        QCOMPARE(e.frResultado->Left(), e.grid_productos->Left());
        QVERIFY(e.grid_productos->Left() < -6960 * fx);
    }

    void entrada_data() {
        QTest::addColumn<QString>("tipoNegocio");
        QTest::addColumn<double>("factor");
        QTest::addColumn<double>("inicio");
        QTest::addColumn<QList<double>>("recorrido");
        const QList<double> diseno{-10920, -7920, -4920, -1920, 1080, 270};
        QTest::newRow("llano, diseno") << QString() << 1.0 << -13920.0 << diseno;
        QTest::newRow("textil, diseno") << TallaColor << 1.0 << -13920.0 << diseno;
        // Wider: further away, the same steps, more ticks.
        QTest::newRow("llano, 1,5")
            << QString() << 1.5 << -20880.0
            << QList<double>{-17880, -14880, -11880, -8880, -5880, -2880, 120, 3120, 405};
        // 6960 x 1,1 has a fraction in double precision; the start is taken in single.
        QTest::newRow("textil, 1,1")
            << TallaColor << 1.1 << -15312.0
            << QList<double>{-12312, -9312, -6312, -3312, -312, 2688, 270 * 1.1};
    }
    void entrada() {
        QFETCH(QString, tipoNegocio);
        QFETCH(double, factor);
        QFETCH(double, inicio);
        QFETCH(QList<double>, recorrido);
        // An empty catalogue and an empty list: the entry runs all the same.
        TiendaPrueba tienda(tipoNegocio);
        tienda.Escala(factor);
        tienda.Lista(1, "General");
        FrmTarifas &e = tienda.CargarEditor(1);
        // Exactly: in double precision the 1,1 start would be -15312.000000000002.
        QVERIFY2(e.grid_productos->Left() == inicio,
                 qPrintable(QString::number(e.grid_productos->Left(), 'g', 17)));
        QVERIFY(e.frResultado->Left() == inicio);
        QVERIFY(e.tmrRegresaLista->Enabled());
        QCOMPARE(e.tmrRegresaLista->Interval(), 1);

        QList<double> visto;
        bool juntos = true;
        connect(e.tmrRegresaLista, &Timer::Tick, this, [&] {
            visto << e.grid_productos->Left();
            juntos = juntos && e.frResultado->Left() == e.grid_productos->Left();
        });
        QTRY_VERIFY(!e.tmrRegresaLista->Enabled());
        CompararNumeros(visto, recorrido);
        QVERIFY(juntos);
        QCOMPARE(e.grid_productos->Left(), e.Frame2->Left());
        // Nothing starts it again.
        QTest::qWait(20);
        QCOMPARE(visto.size(), recorrido.size());
    }

    void foco_data() {
        QTest::addColumn<QString>("caja");
        QTest::addColumn<QString>("otra");
        QTest::newRow("ct_buscar_c")
            << QStringLiteral("ct_buscar_c") << QStringLiteral("ct_buscar_n");
        QTest::newRow("ct_buscar_n")
            << QStringLiteral("ct_buscar_n") << QStringLiteral("ct_buscar_c");
        QTest::newRow("txt_NuevoPrecio")
            << QStringLiteral("txt_NuevoPrecio") << QStringLiteral("ct_buscar_n");
    }
    void foco() {
        QFETCH(QString, caja);
        QFETCH(QString, otra);
        TiendaPrueba tienda;
        SesionSuite.EstiloAspecto = 1;
        tienda.Lista(1, "General");
        bool comprobado = false;
        QVERIFY(tienda.AbrirEditor(1, [&](FrmTarifas &e) {
            QVERIFY(QTest::qWaitForWindowActive(e.ventana()));
            e.frCambio->setVisible(
                true); // the panel of txt_NuevoPrecio, as a product's click shows it
            TextBox *t = e.control<TextBox>(caja);
            TextBox *o = e.control<TextBox>(otra);
            QVERIFY(e.estado.colorConFoco != e.estado.colorSinFoco);
            QCOMPARE(t->BackColor(), e.estado.colorSinFoco.toInt());
            t->SetFocus();
            QTRY_COMPARE(t->BackColor(), e.estado.colorConFoco.toInt());
            o->SetFocus();
            QTRY_COMPARE(t->BackColor(), e.estado.colorSinFoco.toInt());
            QCOMPARE(o->BackColor(), e.estado.colorConFoco.toInt());
            comprobado = true;
        }));
        QVERIFY(comprobado);
    }

    void traspaso_data() {
        QTest::addColumn<QString>("tipoNegocio");
        QTest::newRow("llano") << QString();
        QTest::newRow("textil") << TallaColor;
    }
    void traspaso() {
        QFETCH(QString, tipoNegocio);
        TiendaPrueba tienda(tipoNegocio);
        tienda.Producto(1, "C1", "Camisa", 12.5);
        tienda.Producto(2, "C2", "Pantalon", 30);
        tienda.Lista(7, "Rebajas", QDate(2026, 3, 1), QDate(2026, 4, 15));
        tienda.Lista(8, "Otra", QDate(2026, 1, 1), QDate(2026, 12, 31));
        tienda.Precio(7, 1, 9);
        tienda.Precio(8, 2, 25);
        bool visto = false;
        QVERIFY(tienda.AbrirEditor(7, [&](FrmTarifas &e) {
            QCOMPARE(e.lblCodigo->Caption(), QStringLiteral("7"));
            QCOMPARE(e.Label5->Caption(), QStringLiteral("Rebajas"));
            // The dates' regional text form, as the date controls' handlers compare them.
            QCOMPARE(e.lblDesde->Caption(), FechaATexto(QDate(2026, 3, 1)));
            QCOMPARE(e.lblHasta->Caption(), FechaATexto(QDate(2026, 4, 15)));
            QCOMPARE(e.desde->Value(), QDate(2026, 3, 1));
            QCOMPARE(e.hasta->Value(), QDate(2026, 4, 15));
            // The listing ran before the editor's label held the code, on the register's.
            QCOMPARE(e.grid_Pseleccionados->Rows(), 2);
            QCOMPARE(e.grid_Pseleccionados->TextMatrix(1, 1), QStringLiteral("Camisa"));
            // The state labels as designed, hidden; the product's name is the one that shows
            // (inside the panel, hidden until a product is picked).
            const QList<std::pair<Label *, QString>> estado{{e.lblCodProducto, "codigo"},
                                                            {e.lblCodCliente, "codCliente"},
                                                            {e.lblCodProdTextil, "CodProdTextil"},
                                                            {e.lblTalla, "Talla"},
                                                            {e.lblColor, "Color"}};
            for (const auto &[etiqueta, texto] : estado) {
                QCOMPARE(etiqueta->Caption(), texto);
                QVERIFY(!etiqueta->Visible());
            }
            QCOMPARE(e.lblNomProd->Caption(), QStringLiteral("Label3"));
            QVERIFY(e.lblNomProd->Visible());
            QVERIFY(!e.lblCodigo->Visible());
            visto = true;
        }));
        QVERIFY(visto);
        QVERIFY(!frmTarifas().Loaded());
    }

    void refrescoRegistro_data() {
        QTest::addColumn<bool>("renombrar");
        QTest::addColumn<bool>("cierreVentana");
        QTest::addColumn<QString>("nombreFinal");
        QTest::newRow("sin cambios, cmdSalir") << false << false << QStringLiteral("General");
        QTest::newRow("sin cambios, aspa") << false << true << QStringLiteral("General");
        QTest::newRow("lista renombrada, cmdSalir") << true << false << QStringLiteral("Verano");
        QTest::newRow("lista renombrada, aspa") << true << true << QStringLiteral("Verano");
    }
    void refrescoRegistro() {
        QFETCH(bool, renombrar);
        QFETCH(bool, cierreVentana);
        QFETCH(QString, nombreFinal);
        TiendaPrueba tienda;
        tienda.Lista(1, "General");
        FrmListas &registro = tienda.Registro();
        QVERIFY(tienda.AbrirEditor(
            1,
            [&](FrmTarifas &) {
                // A cell gone stale shows whether the register lists its grid again.
                registro.grid_precios->setTextMatrix(1, 0, QStringLiteral("viejo"));
                if (renombrar)
                    tienda.Ejecutar(
                        QStringLiteral("update cabecera_precio set descripcion = 'Verano'"));
            },
            cierreVentana ? TiendaPrueba::Salida::CierreVentana : TiendaPrueba::Salida::cmdSalir));
        QVERIFY(!frmTarifas().Loaded());
        QCOMPARE(registro.grid_precios->Rows(), 2);
        QCOMPARE(registro.grid_precios->TextMatrix(1, 0), nombreFinal);
        QCOMPARE(registro.lblCodigo->Caption(), QStringLiteral("1"));
    }

    void cargaNueva() {
        // The second opening loads again: design texts, fresh colours, lists from the database.
        TiendaPrueba tienda;
        tienda.Producto(1, "C1", "Camisa", 12.5);
        tienda.Producto(2, "C2", "Abrigo", 40);
        tienda.Lista(1, "General");
        tienda.Precio(1, 1, 10);
        const QString foco = Principal::svcAspecto().ColorFoco(*SesionSuite.Conexion, 0);
        QVERIFY(tienda.AbrirEditor(1, [&](FrmTarifas &e) {
            e.lblCodProducto->setCaption(QStringLiteral("1"));
            e.lblCodCliente->setCaption(QStringLiteral("C1"));
            e.lblNomProd->setCaption(QStringLiteral("Camisa"));
            e.lblTalla->setCaption(QStringLiteral("M"));
            e.estado.colorConFoco = QStringLiteral("0");
            e.estado.colorSinFoco = QStringLiteral("0");
            QTRY_COMPARE(e.grid_productos->Left(), e.Frame2->Left());
        }));
        tienda.Precio(1, 2, 35);
        bool visto = false;
        QVERIFY(tienda.AbrirEditor(1, [&](FrmTarifas &e) {
            QCOMPARE(e.lblCodProducto->Caption(), QStringLiteral("codigo"));
            QCOMPARE(e.lblCodCliente->Caption(), QStringLiteral("codCliente"));
            QCOMPARE(e.lblNomProd->Caption(), QStringLiteral("Label3"));
            QCOMPARE(e.lblTalla->Caption(), QStringLiteral("Talla"));
            QCOMPARE(e.estado.colorConFoco, foco);
            QCOMPARE(e.estado.colorSinFoco, QString::number(RGB(255, 255, 255)));
            QCOMPARE(e.grid_Pseleccionados->Rows(), 3);
            QCOMPARE(e.grid_Pseleccionados->TextMatrix(1, 1), QStringLiteral("Abrigo"));
            QTRY_COMPARE(e.grid_productos->Left(), e.Frame2->Left());
            visto = true;
        }));
        QVERIFY(visto);
    }

    void captions() {
        // The hidden button collects the screen's captions for the translators.
        TiendaPrueba tienda;
        tienda.Lista(1, "General");
        FrmTarifas &e = tienda.CargarEditor(1);
        QVERIFY(!e.Command1->Visible());
        QCOMPARE(tienda.db().Valor("select count(*) from traducciones").toInt(), 0);
        QVERIFY(QMetaObject::invokeMethod(e.Command1, "Click"));
        QCOMPARE(tienda.db()
                     .Valor("select texto from traducciones where formulario = 'frmTarifas' and "
                            "control = 'Label1'")
                     .toString(),
                 QStringLiteral("Lista de Productos"));
        QCOMPARE(tienda.db()
                     .Valor("select texto from traducciones where formulario = 'frmTarifas' and "
                            "control = ''")
                     .toString(),
                 QStringLiteral("Gestion de Tarifas"));
    }

    void codigoInservible_data() {
        QTest::addColumn<QString>("codigo");
        QTest::newRow("texto de diseno") << QStringLiteral("lblCodigo");
        QTest::newRow("vacio") << QString();
        QTest::newRow("codigo con condicion") << QStringLiteral("1 or 1=1");
        QTest::newRow("codigo con sentencia") << QStringLiteral("1; delete from detalle_precio");
        QTest::newRow("decimal") << QStringLiteral("1.5");
        QTest::newRow("blanco detras") << QStringLiteral("1 ");
    }
    void codigoInservible() {
        // A code that no list can bear runs no statement: the editor opens with the
        // catalogue and an empty list, and the database is as it was.
        QFETCH(QString, codigo);
        TiendaPrueba tienda;
        tienda.Producto(1, "C1", "Camisa", 12.5);
        tienda.Lista(1, "General");
        tienda.Precio(1, 1, 10);
        frmListas().Load();
        frmListas().lblCodigo->setCaption(codigo);
        frmTarifas().Load();
        FrmTarifas &e = frmTarifas();
        QCOMPARE(e.grid_productos->Rows(), 2);
        QCOMPARE(e.grid_productos->TextMatrix(1, 1), QStringLiteral("Camisa"));
        QCOMPARE(e.grid_Pseleccionados->Rows(), 2);
        QCOMPARE(e.grid_Pseleccionados->TextMatrix(1, 1), QString());
        QCOMPARE(tienda.db().Valor("select count(*) from detalle_precio").toInt(), 1);
    }

    void sinRegistro() {
        // Only the register knows which list is open; without it the list shows empty.
        TiendaPrueba tienda;
        tienda.Lista(1, "General");
        tienda.Precio(1, 1, 10);
        QVERIFY(!frmListas().Loaded());
        frmTarifas().Load();
        QCOMPARE(frmTarifas().grid_Pseleccionados->Rows(), 2);
        QCOMPARE(frmTarifas().grid_Pseleccionados->TextMatrix(1, 3), QString());
    }

    void cargaFallida() {
        // A failing database leaves no half-built editor and says what failed.
        TiendaPrueba tienda;
        tienda.Lista(1, "General");
        tienda.Ejecutar(QStringLiteral("drop table productos"));
        frmListas().Load();
        frmListas().lblCodigo->setCaption(QStringLiteral("1"));
        QString texto;
        try {
            frmTarifas().Load();
        } catch (const ErrorCarga &error) {
            texto = QString::fromUtf8(error.what());
        }
        QVERIFY2(texto.contains(QLatin1String("productos")), qPrintable(texto));
        QVERIFY(!frmTarifas().Loaded());
    }
};

TARIFAS_PRUEBAS(TstEditorCarga)
#include "tst_editorcarga.moc"
