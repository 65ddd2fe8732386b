// Setting a price in the editor: the click that opens the panel, the typed price, the save
// (one unit: the old price survives a failed insert), the row it takes in the list, the prices
// the record writer can't read, and variant codes with awkward characters.
#include "apoyo/ejecucion.h"
#include "apoyo/tiendaprueba.h"
#include "editor/frmtarifas.h"
#include "platform/ui/controles.h"
#include "platform/ui/mensajes.h"
#include "session/sesionsuite.h"

#include <QHeaderView>
#include <QStandardPaths>
#include <QTableView>
#include <QtTest>

namespace {

double Guardado(TiendaPrueba &t, int producto) {
    return t
        .Valor("select precio from detalle_precio where identificador = 1 and producto = ?",
               {producto})
        .toDouble();
}

int Filas(TiendaPrueba &t) {
    return t.Valor("select count(*) from detalle_precio").toInt();
}

} // namespace

class TstEditorPrecio : public QObject {
    Q_OBJECT

  private slots:
    void initTestCase() {
        QStandardPaths::setTestModeEnabled(true);
        QLocale::setDefault(QLocale(QLocale::Spanish, QLocale::Spain));
    }

    void entrada_data() {
        QTest::addColumn<QString>("tipoNegocio");
        QTest::newRow("llano") << QString();
        QTest::newRow("talla y color") << TallaColor;
    }
    void entrada() {
        QFETCH(QString, tipoNegocio);
        const bool textil = tipoNegocio == TallaColor;
        TiendaPrueba t(tipoNegocio);
        t.Talla(1, "M");
        t.Color(1, "Rojo");
        t.Producto(1, "A1", "Abrigo", 30);
        t.Producto(2, "B2", "Bufanda", 8.5);
        t.Variante(2, "H1", 1, 1, "V1", 9);
        t.Lista(1, "General");
        t.Precio(1, 1, 25, textil ? QVariant("-1") : QVariant());
        FrmTarifas &e = t.Abierto();
        const QString hijo = textil ? QStringLiteral("H1") : QString();

        // The click opens the panel on the product with its standard price.
        QVERIFY(ClicProducto(e, "2", hijo));
        QVERIFY(e.frCambio->Visible() && !e.Frame1->Visible());
        QCOMPARE(e.lblNomProd->Caption(), QStringLiteral("Bufanda"));
        QCOMPARE(e.txt_precio->Text(), textil ? QStringLiteral("9") : QStringLiteral("8,5"));
        QTRY_VERIFY(e.txt_NuevoPrecio->widget()->hasFocus());
        // Letters are dropped by the key filter; Enter saves and goes back to the list.
        Teclear(e, "1x2,5");
        QVERIFY(!e.frCambio->Visible() && e.Frame1->Visible());
        QCOMPARE(Guardado(t, 2), 12.5);
        QCOMPARE(e.grid_Pseleccionados->Rows(), 3);
        QCOMPARE(Fila(*e.grid_Pseleccionados, 2),
                 (textil ? QStringList{"V1", "Bufanda", "2", "H1", "M", "Rojo", "12,5", ""}
                         : QStringList{"B2", "Bufanda", "2", "12,5", ""}));

        // A second price replaces the first, in place: one stored row, no new grid row.
        QVERIFY(ClicProducto(e, "2", hijo));
        QCOMPARE(e.txt_NuevoPrecio->Text(), QString()); // the box starts empty
        Teclear(e, "7");
        QCOMPARE(Guardado(t, 2), 7.0);
        QCOMPARE(Filas(t), 2);
        QCOMPARE(e.grid_Pseleccionados->Rows(), 3);
        QCOMPARE(e.grid_Pseleccionados->TextMatrix(2, textil ? 6 : 3), QStringLiteral("7"));

        // Cancel saves nothing; Enter on an empty box saves nothing either.
        QVERIFY(ClicProducto(e, "1", textil ? "-1" : ""));
        QTest::keyClicks(e.txt_NuevoPrecio->widget(), "99");
        QTest::mouseClick(e.cmdCancelar->widget(), Qt::LeftButton);
        QVERIFY(!e.frCambio->Visible());
        QVERIFY(ClicProducto(e, "1", textil ? "-1" : ""));
        Teclear(e, "");
        QVERIFY(!e.frCambio->Visible());
        QCOMPARE(Guardado(t, 1), 25.0);
        QCOMPARE(Filas(t), 2);
    }

    void clicSinProducto_data() {
        QTest::addColumn<int>("donde"); // 0 title row, -1 below the rows, 1 the empty row
        QTest::newRow("fila de titulos") << 0;
        QTest::newRow("debajo de las filas") << -1;
        QTest::newRow("fila vacia") << 1;
    }
    void clicSinProducto() {
        QFETCH(int, donde);
        TiendaPrueba t;
        t.Lista(1, "General");
        if (donde != 1)
            t.Producto(1, "A1", "Abrigo", 30);
        FrmTarifas &e = t.Abierto();
        QTableView *v = e.grid_productos->vista();
        QHeaderView *titulos = v->horizontalHeader();
        if (donde == 0)
            QTest::mouseClick(titulos->viewport(), Qt::LeftButton, {},
                              QPoint(20, titulos->height() / 2));
        else
            QTest::mouseClick(v->viewport(), Qt::LeftButton, {},
                              donde < 0 ? QPoint(20, v->viewport()->height() - 3)
                                        : v->visualRect(v->model()->index(0, 1)).center());
        QVERIFY(!e.frCambio->Visible());
        QCOMPARE(e.lblCodProducto->Caption(), QStringLiteral("codigo"));
    }

    void obtenerFila_data() {
        // The row a save takes: the product's (and variant's) own, else the first empty one,
        // else a new one.
        QTest::addColumn<bool>("textil");
        QTest::addColumn<QStringList>("filas"); // column 2 "|" column 3 of each data row
        QTest::addColumn<QString>("producto");
        QTest::addColumn<QString>("hijo");
        QTest::addColumn<int>("esperada");
        const auto caso = [](const char *nombre, bool textil, const QStringList &filas,
                             const char *producto, const char *hijo, int esperada) {
            QTest::newRow(nombre) << textil << filas << producto << hijo << esperada;
        };
        caso("lista vacia: la fila vacia", false, {"|"}, "7", "", 1);
        caso("hallada", false, {"5|", "7|"}, "7", "", 2);
        caso("no hallada", false, {"1|", "2|", "3|", "4|"}, "9", "", 6);
        caso("la columna 2 vacia gana", false, {"5|", "|", "9|"}, "9", "", 2);
        caso("textil, lista vacia: fila nueva", true, {"|"}, "7", "H", 3);
        caso("textil, \"\" no es -1", true, {"5|"}, "5", "-1", 3);
        caso("textil, la segunda variante", true, {"5|A", "5|B"}, "5", "B", 2);
        caso("textil, vacia con la variante", true, {"|B", "5|B"}, "5", "B", 1);
        caso("textil, otro producto", true, {"6|B", "5|C"}, "5", "B", 4);
    }
    void obtenerFila() {
        QFETCH(bool, textil);
        QFETCH(QStringList, filas);
        QFETCH(QString, producto);
        QFETCH(QString, hijo);
        QFETCH(int, esperada);
        TiendaPrueba t(textil ? TallaColor : QString());
        t.Lista(1, "General");
        FrmTarifas &e = t.CargarEditor(1);
        Grid &g = *e.grid_Pseleccionados;
        g.setRows(int(filas.size()) + 1);
        for (int f = 1; f <= filas.size(); ++f) {
            g.setTextMatrix(f, 2, filas[f - 1].section('|', 0, 0));
            g.setTextMatrix(f, 3, filas[f - 1].section('|', 1));
        }
        QCOMPARE(textil ? e.ObtenerFila_textil(producto, hijo) : e.ObtenerFila(producto), esperada);
        // The save writes that row, or appends one when none was found.
        e.lblCodProducto->setCaption(producto);
        e.lblCodProdTextil->setCaption(hijo);
        e.txt_NuevoPrecio->setText(QStringLiteral("3"));
        textil ? e.AñadirGridProd_textil() : e.AñadirGridProd();
        const int escrita = std::min(esperada, int(filas.size()) + 1);
        QCOMPARE(g.Rows(), std::max(int(filas.size()) + 1, escrita + 1));
        QCOMPARE(g.TextMatrix(escrita, 2), producto);
        QCOMPARE(g.TextMatrix(escrita, textil ? 6 : 3), QStringLiteral("3"));
    }

    void precio_data() {
        QTest::addColumn<QString>("tecleado");
        QTest::addColumn<QVariant>("guardado"); // invalid: refused, the old 5 stays
        QTest::newRow("coma") << "12,5" << QVariant(12.5);
        QTest::newRow("punto") << "12.5" << QVariant(12.5);
        QTest::newRow("cero") << "0" << QVariant(0.0);
        QTest::newRow("solo decimales") << ",05" << QVariant(0.05);
        QTest::newRow("negativo") << "-3" << QVariant(-3.0);
        QTest::newRow("15 cifras") << "999999999999999" << QVariant(999999999999999.0);
        QTest::newRow("15 cifras con decimales")
            << "1234567,89012345" << QVariant(1234567.89012345);
        QTest::newRow("16 cifras") << "9999999999999999" << QVariant();
        QTest::newRow("exponente") << "1e308" << QVariant();
        QTest::newRow("infinito") << "inf" << QVariant();
        QTest::newRow("separador solo") << "," << QVariant();
        QTest::newRow("signo solo") << "-" << QVariant();
        QTest::newRow("dos separadores") << "1.234,5" << QVariant();
        QTest::newRow("barra vertical") << "12|precio=1" << QVariant();
        QTest::newRow("apostrofo") << "12'5" << QVariant();
    }
    void precio() {
        QFETCH(QString, tecleado);
        QFETCH(QVariant, guardado);
        TiendaPrueba t;
        t.Producto(1, "A1", "Abrigo", 30);
        t.Lista(1, "General");
        t.Precio(1, 1, 5);
        FrmTarifas &e = t.Abierto();
        RespuestasMensajes cajas;
        QVERIFY(ClicProducto(e, "1"));
        e.txt_NuevoPrecio->setText(tecleado);
        QTest::mouseClick(e.cmdAceptar->widget(), Qt::LeftButton);
        QVERIFY(e.Loaded());
        QCOMPARE(Filas(t), 1);
        if (guardado.isValid()) {
            QCOMPARE(cajas.Mostrados(), QStringList());
            QCOMPARE(Guardado(t, 1), guardado.toDouble());
            QCOMPARE(e.grid_Pseleccionados->TextMatrix(1, 3), tecleado); // as typed
            QVERIFY(!e.frCambio->Visible());
        } else {
            // Told, and nothing lost: the old price in the database and in the grid, and the
            // panel still open with the text to mend.
            QCOMPARE(cajas.Mostrados().size(), 1);
            QVERIFY2(cajas.Mostrados().at(0).contains(tecleado), qPrintable(cajas.Mostrados()[0]));
            QCOMPARE(Guardado(t, 1), 5.0);
            QCOMPARE(e.grid_Pseleccionados->TextMatrix(1, 3), QStringLiteral("5"));
            QVERIFY(e.frCambio->Visible());
            QCOMPARE(e.txt_NuevoPrecio->Text(), tecleado);
        }
    }

    void variante_data() {
        QTest::addColumn<QString>("hijo");
        QTest::addColumn<bool>("vale");
        QTest::newRow("apostrofo") << "O'1" << true;
        QTest::newRow("apostrofo y condicion") << "x' or '1'='1" << true;
        // The record writer can't carry a "|" in a value: the variant is refused, by name, and
        // the price typed for it is not blamed.
        QTest::newRow("barra en medio") << "H|1" << false;
    }
    void variante() {
        QFETCH(QString, hijo);
        QFETCH(bool, vale);
        TiendaPrueba t(TallaColor);
        t.Talla(1, "M");
        t.Color(1, "Rojo");
        t.Producto(1, "A1", "Abrigo", 30);
        t.Variante(1, hijo, 1, 1, "V1", 31);
        t.Variante(1, "O", 1, 1, "V2", 32);
        t.Lista(1, "General");
        t.Precio(1, 1, 5, "O"); // another variant's price, which the save must not touch
        FrmTarifas &e = t.Abierto();
        RespuestasMensajes cajas;
        QVERIFY(ClicProducto(e, "1", hijo));
        Teclear(e, "12");
        const QString sql = "select precio from detalle_precio where codproductotextil = ?";
        QCOMPARE(t.Valor(sql, {"O"}).toDouble(), 5.0);
        if (vale) {
            QCOMPARE(cajas.Mostrados(), QStringList());
            QCOMPARE(t.Valor(sql, {hijo}).toDouble(), 12.0);
            QCOMPARE(Filas(t), 2);
        } else {
            QCOMPARE(cajas.Mostrados().size(), 1);
            QVERIFY2(cajas.Mostrados().at(0).contains("\"" + hijo + "\"") &&
                         !cajas.Mostrados().at(0).contains(QLatin1String("precio")),
                     qPrintable(cajas.Mostrados().at(0)));
            QCOMPARE(Filas(t), 1);
            QVERIFY(e.frCambio->Visible());
        }
    }

    void guardadoAtomico() {
        // The database refuses the insert after the delete has run: the unit is undone.
        TiendaPrueba t;
        t.Producto(1, "A1", "Abrigo", 30);
        t.Lista(1, "General");
        t.Precio(1, 1, 5);
        t.Rechazar("before insert on detalle_precio", "precio no admitido", "new.precio = 99");
        FrmTarifas &e = t.Abierto();
        RespuestasMensajes cajas;
        QVERIFY(ClicProducto(e, "1"));
        Teclear(e, "99");
        QVERIFY(e.Loaded());
        QCOMPARE(cajas.Mostrados().size(), 1); // the error report, with the database's text
        QVERIFY2(cajas.Mostrados().at(0).contains(QLatin1String("precio no admitido")),
                 qPrintable(cajas.Mostrados().at(0)));
        QCOMPARE(Filas(t), 1);
        QCOMPARE(Guardado(t, 1), 5.0);
        QCOMPARE(e.grid_Pseleccionados->TextMatrix(1, 3), QStringLiteral("5"));
        // The next price goes through as usual.
        e.txt_NuevoPrecio->setText(QString());
        Teclear(e, QStringLiteral("8"));
        QCOMPARE(Guardado(t, 1), 8.0);
    }
};

TARIFAS_PRUEBAS(TstEditorPrecio)
#include "tst_editorprecio.moc"
