// Finding a product in the editor: by a code (shop code or extra code, typed text always bound)
// and by the start of its name, which hides the other rows of the catalogue; in both modes.
#include "apoyo/ejecucion.h"
#include "apoyo/tiendaprueba.h"
#include "editor/frmtarifas.h"
#include "platform/ui/controles.h"
#include "session/sesionsuite.h"

#include <QRandomGenerator>
#include <QStandardPaths>
#include <QTableView>
#include <QtTest>

#include <algorithm>

namespace {

/// The names of the catalogue's rows that show, in the grid's order.
QStringList AlaVista(const Grid &g) {
    QStringList nombres;
    for (int f = 1; f < g.Rows(); ++f)
        if (g.RowHeight(f) > 0)
            nombres << g.TextMatrix(f, 1);
    return nombres;
}

void Enter(TextBox *caja) {
    QTest::keyClick(caja->widget(), Qt::Key_Return);
}

} // namespace

class TstEditorBusqueda : public QObject {
    Q_OBJECT

  private slots:
    void initTestCase() {
        QStandardPaths::setTestModeEnabled(true);
        QLocale::setDefault(QLocale(QLocale::Spanish, QLocale::Spain));
    }

    // ---- by code ----

    void codigo_data() {
        QTest::addColumn<QString>("texto");
        QTest::addColumn<QList<qint64>>("admitidos"); // any of them may answer; {-1}: none
        QTest::newRow("código de tienda") << "C1" << QList<qint64>{1};
        QTest::newRow("código extra") << "E10" << QList<qint64>{10};
        QTest::newRow("extra sin distinguir mayúsculas") << "e10" << QList<qint64>{10};
        QTest::newRow("borrado: su código de tienda no") << "B3" << QList<qint64>{-1};
        QTest::newRow("borrado: su código extra sí") << "E3" << QList<qint64>{3};
        QTest::newRow("de tienda de uno y extra de otro") << "DOS" << QList<qint64>{6, 7};
        QTest::newRow("texto vacío halla un código vacío") << "" << QList<qint64>{5};
        QTest::newRow("comodín en un código extra") << "AB%" << QList<qint64>{8};
        QTest::newRow("comodín que no casa") << "AC%" << QList<qint64>{-1};
        QTest::newRow("% en el código de tienda es una letra") << "P%" << QList<qint64>{-1};
        QTest::newRow("apóstrofo") << "X'2" << QList<qint64>{2};
        QTest::newRow("barra invertida") << "A\\B" << QList<qint64>{9};
        QTest::newRow("200 caracteres") << QString(200, u'Z') << QList<qint64>{-1};
        QTest::newRow("código interno mayor que 32767") << "BIG" << QList<qint64>{40000};
        QTest::newRow("no existe") << "NADA" << QList<qint64>{-1};
    }
    void codigo() {
        QFETCH(QString, texto);
        QFETCH(QList<qint64>, admitidos);
        TiendaPrueba t;
        t.Producto(1, "C1", "Uno", 1);
        t.Producto(2, "X'2", "Dos", 2);
        t.Producto(3, "B3", "Borrado", 3, "S", 1);
        t.Producto(5, "", "Sin código", 5);
        t.Producto(6, "DOS", "Seis", 6);
        t.Producto(7, "C7", "Siete", 7);
        t.Producto(8, "C8", "Ocho", 8);
        t.Producto(9, "C9", "Nueve", 9);
        t.Producto(10, "C10", "Diez", 10);
        t.Producto(40000, "BIG", "Grande", 4);
        t.Producto(11, "PX", "Once", 11);
        const QList<QPair<int, QString>> extras = {{10, "E10"},  {3, "E3"},   {7, "DOS"},
                                                   {8, "ABXCD"}, {9, "A\\B"}, {1, "Q'1"}};
        for (const auto &[codigo, extra] : extras)
            t.Ejecutar(QStringLiteral("insert into productos_codigosextra (codigo, codigo_extra) "
                                      "values (?, ?)"),
                       {codigo, extra});
        t.Lista(1, "General");
        FrmTarifas &e = t.CargarEditor(1);
        const qint64 hallado = e.iBuscarCodInternoItem(texto);
        QVERIFY2(admitidos.contains(hallado), qPrintable(QString::number(hallado)));
    }

    void codigoConEnter() {
        TiendaPrueba t;
        t.Producto(40000, "BIG", "Grande", 4.5);
        t.Lista(1, "General");
        FrmTarifas &e = t.Abierto();
        // Not found: the text stays, selected for typing over; nothing opens.
        e.ct_buscar_c->SetFocus();
        QTest::keyClicks(e.ct_buscar_c->widget(), "BIGX");
        Enter(e.ct_buscar_c);
        QVERIFY(!e.frCambio->Visible());
        QCOMPARE(e.ct_buscar_c->Text(), QStringLiteral("BIGX"));
        QCOMPARE(e.ct_buscar_c->SelLength(), 4);
        // Typed over and found: the panel opens on it and the box empties.
        QTest::keyClicks(e.ct_buscar_c->widget(), "BIG");
        Enter(e.ct_buscar_c);
        QVERIFY(e.frCambio->Visible());
        QCOMPARE(e.ct_buscar_c->Text(), QString());
        QCOMPARE(e.lblCodProducto->Caption(), QStringLiteral("40000"));
        QCOMPARE(e.lblNomProd->Caption(), QStringLiteral("Grande"));
        QCOMPARE(e.txt_precio->Text(), QStringLiteral("4,5"));
        QTest::keyClicks(e.txt_NuevoPrecio->widget(), "3");
        Enter(e.txt_NuevoPrecio);
        QCOMPARE(t.Valor("select producto from detalle_precio").toInt(), 40000);
    }

    // ---- by name ----

    void nombre_data() {
        QTest::addColumn<QStringList>("textos"); // typed in turn into ct_buscar_n
        QTest::addColumn<QStringList>("aLaVista");
        QTest::newRow("nombre más corto que el texto")
            << QStringList{"camis"} << QStringList{"CAMISA AZUL", "Camiseta", "camisa roja"};
        QTest::newRow("sin distinguir mayúsculas")
            << QStringList{"cAmIsA "} << QStringList{"CAMISA AZUL", "camisa roja"};
        QTest::newRow("en medio del nombre no")
            << QStringList{"blusa c"} << QStringList{"Blusa camisa"};
        QTest::newRow("nombre vacío, oculto") << QStringList{"x"} << QStringList{};
        QTest::newRow("acortar el texto trae filas")
            << QStringList{"camis", "ca"}
            << QStringList{"Ca", "calcetin", "CAMISA AZUL", "camisa roja", "Camiseta"};
        QTest::newRow("vaciar la caja muestra todo")
            << QStringList{"pan", ""} << QStringList{"",         "Blusa camisa", "Ca",
                                                     "calcetin", "CAMISA AZUL",  "camisa roja",
                                                     "Camiseta", "Pantalon",     "50% d'algodón"};
        QTest::newRow("comodines y apóstrofo son letras")
            << QStringList{"50%"} << QStringList{"50% d'algodón"};
    }
    void nombre() {
        QFETCH(QStringList, textos);
        QFETCH(QStringList, aLaVista);
        for (const bool textil : {false, true}) {
            TiendaPrueba t(textil ? TallaColor : QString());
            const QStringList nombres = {
                "CAMISA AZUL", "Camiseta",     "calcetin",    "Pantalon",     "",
                "Ca",          "Blusa camisa", "camisa roja", "50% d'algodón"};
            for (int i = 0; i < nombres.size(); ++i)
                t.Producto(i + 1, QStringLiteral("C%1").arg(i + 1), nombres[i], 1);
            t.Lista(1, "General");
            FrmTarifas &e = t.CargarEditor(1);
            Grid &g = textil ? *e.grid_productos_textil : *e.grid_productos;
            for (const QString &texto : textos)
                e.ct_buscar_n->setText(texto);
            QStringList vistos = AlaVista(g);
            QStringList esperados = aLaVista;
            std::sort(vistos.begin(), vistos.end());
            std::sort(esperados.begin(), esperados.end());
            QCOMPARE(vistos, esperados);
        }
    }

    void clicTrasFiltrar() {
        // Matches scattered through a shuffled catalogue: a click on the k-th row shown opens
        // the product the operator sees there, and the keys move over shown rows only.
        TiendaPrueba t;
        QStringList nombres;
        for (int i = 0; i < 60; ++i)
            nombres << QStringLiteral("%1 %2").arg(i % 7 == 0 ? "Zueco" : "Bota").arg(i);
        std::shuffle(nombres.begin(), nombres.end(), *QRandomGenerator::global());
        for (int i = 0; i < nombres.size(); ++i)
            t.Producto(i + 1, QStringLiteral("C%1").arg(i + 1), nombres[i], i);
        t.Lista(1, "General");
        FrmTarifas &e = t.Abierto();
        e.ct_buscar_n->setText(QStringLiteral("zUE"));
        QTableView *v = e.grid_productos->vista();
        QCOMPARE(v->model()->rowCount(), 9);
        for (int r : {0, 5, 8}) {
            v->scrollTo(v->model()->index(r, 1));
            const QString visto = v->model()->index(r, 1).data().toString();
            QTest::mouseClick(v->viewport(), Qt::LeftButton, {},
                              v->visualRect(v->model()->index(r, 1)).center());
            QCOMPARE(e.lblNomProd->Caption(), visto);
            QVERIFY(visto.startsWith(QLatin1String("Zueco")));
        }
        v->setFocus();
        for (int i = 0; i < 3; ++i) {
            QTest::keyClick(v, Qt::Key_Down);
            QVERIFY(e.grid_productos->TextMatrix(e.grid_productos->Row(), 1)
                        .startsWith(QLatin1String("Zueco")));
        }
        QVERIFY(e.grid_productos->RowHeight(e.grid_productos->Row()) > 0);
    }

    // ---- size and colour ----

    void codigoTextil_data() {
        QTest::addColumn<QString>("texto");
        QTest::addColumn<bool>("panel");
        QTest::addColumn<QString>("variante"); // lblCodProdTextil when the panel opens
        QTest::addColumn<int>("filasALaVista");
        QTest::newRow("código propio de una variante") << "V-ROJA" << true << "H2" << 4;
        QTest::newRow("producto sin variantes") << "P1" << true << "-1" << 4;
        QTest::newRow("producto con variantes: elegir una") << "P2" << false << "" << 3;
        QTest::newRow("extra de un producto con variantes") << "EXTRA2" << false << "" << 3;
        QTest::newRow("no existe") << "NADA" << false << "" << 4;
    }
    void codigoTextil() {
        QFETCH(QString, texto);
        QFETCH(bool, panel);
        QFETCH(QString, variante);
        QFETCH(int, filasALaVista);
        TiendaPrueba t(TallaColor);
        t.Talla(1, "M");
        t.Color(1, "Rojo");
        t.Producto(1, "P1", "Calcetin", 4);
        t.Producto(2, "P2", "Camisa", 20);
        t.Variante(2, "H1", 1, 1);
        t.Variante(2, "H2", 1, 1, "V-ROJA", 22);
        t.Variante(2, "H3", 1, 1);
        t.Ejecutar(QStringLiteral("insert into productos_codigosextra values (2, 'EXTRA2')"));
        t.Lista(1, "General");
        FrmTarifas &e = t.Abierto();
        e.ct_buscar_c->setText(texto);
        Enter(e.ct_buscar_c);
        QCOMPARE(e.frCambio->Visible(), panel);
        QCOMPARE(e.grid_productos_textil->vista()->model()->rowCount(), filasALaVista);
        if (panel) {
            QCOMPARE(e.lblCodProdTextil->Caption(), variante);
            QCOMPARE(e.ct_buscar_c->Text(), QString());
            QTest::keyClicks(e.txt_NuevoPrecio->widget(), "9");
            Enter(e.txt_NuevoPrecio);
            QCOMPARE(t.Valor("select codproductotextil from detalle_precio").toString(), variante);
        } else if (filasALaVista < 4) {
            // Only the product's variants show; a click opens one, and an emptied box shows
            // every row again.
            for (int f = 1; f < e.grid_productos_textil->Rows(); ++f)
                QCOMPARE(e.grid_productos_textil->RowHeight(f) > 0,
                         e.grid_productos_textil->TextMatrix(f, 2) == QLatin1String("2"));
            e.ct_buscar_c->setText(QString());
            QCOMPARE(e.grid_productos_textil->vista()->model()->rowCount(), 4);
        }
        QCOMPARE(t.Valor("select count(*) from detalle_precio where codproductotextil in "
                         "('CodProdTextil', '')")
                     .toInt(),
                 0);
    }
};

TARIFAS_PRUEBAS(TstEditorBusqueda)
#include "tst_editorbusqueda.moc"
