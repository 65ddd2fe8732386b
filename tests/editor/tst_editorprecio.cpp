// Setting a price in the editor: the click that opens the panel, the typed price, the save
// (one unit: the old price survives a failed insert), the row it takes in the list, and the
// prices the record writer can't read.
#include "apoyo/ejecucion.h"
#include "apoyo/tiendaprueba.h"
#include "editor/frmtarifas.h"
#include "platform/ui/controles.h"
#include "platform/ui/modelogrid.h"
#include "session/sesionsuite.h"
#include "platform/ui/mensajes.h"

#include <QHeaderView>
#include <QStandardPaths>
#include <QTableView>
#include <QtTest>

namespace {

const QString TallaColor = QStringLiteral("TALLACOLOR");

/// The editor on list 1 of `t`, shown, with the catalogue slid into place.
FrmTarifas &Abierto(TiendaPrueba &t) {
    FrmTarifas &e = t.CargarEditor(1);
    e.lblCodigo->setCaption(QStringLiteral("1")); // as the register hands it over
    e.ventana()->show();
    if (!QTest::qWaitForWindowExposed(e.ventana()))
        qWarning("The editor was not exposed");
    if (!QTest::qWaitFor([&] { return !e.tmrRegresaLista->Enabled(); }, 5000))
        qWarning("The catalogue never slid into place");
    return e;
}

/// Clicks the catalogue's row that shows product `codigo` (and variant `hijo`).
bool ClicProducto(FrmTarifas &e, const QString &codigo, const QString &hijo = {}) {
    Grid &g = ModoTallaColor() ? *e.grid_productos_textil : *e.grid_productos;
    QTableView *v = g.vista();
    for (int r = 0; r < v->model()->rowCount(); ++r) {
        const int fila = g.modelo()->filaDeGrid(r);
        if (g.TextMatrix(fila, 2) == codigo && (hijo.isEmpty() || g.TextMatrix(fila, 3) == hijo)) {
            QTest::mouseClick(v->viewport(), Qt::LeftButton, {},
                              v->visualRect(v->model()->index(r, 1)).center());
            return true;
        }
    }
    return false;
}

void Teclear(FrmTarifas &e, const QString &texto) {
    QTest::keyClicks(e.txt_NuevoPrecio->widget(), texto);
    QTest::keyClick(e.txt_NuevoPrecio->widget(), Qt::Key_Return);
}

QStringList Fila(const Grid &g, int fila) {
    QStringList t;
    for (int c = 0; c < g.Cols(); ++c)
        t << g.TextMatrix(fila, c);
    return t;
}

double Guardado(TiendaPrueba &t, int producto) {
    return t.db()
        .Valor(QStringLiteral("select precio from detalle_precio where identificador = 1 and "
                              "producto = ?"),
               {producto})
        .toDouble();
}

int Filas(TiendaPrueba &t) {
    return t.db().Valor(QStringLiteral("select count(*) from detalle_precio")).toInt();
}

} // namespace

class TstEditorPrecio : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        QStandardPaths::setTestModeEnabled(true);
        QLocale::setDefault(QLocale(QLocale::Spanish, QLocale::Spain));
    }

    // ---- the whole entry through the widgets ----

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
        FrmTarifas &e = Abierto(t);
        const QString hijo = textil ? QStringLiteral("H1") : QString();

        // The click opens the panel on the product with its standard price.
        QVERIFY(ClicProducto(e, "2", hijo));
        QVERIFY(e.frCambio->Visible());
        QVERIFY(!e.Frame1->Visible() && !e.Label3->Visible());
        QCOMPARE(e.lblNomProd->Caption(), QStringLiteral("Bufanda"));
        QCOMPARE(e.txt_precio->Text(), textil ? QStringLiteral("9") : QStringLiteral("8,5"));
        QTRY_VERIFY(e.txt_NuevoPrecio->widget()->hasFocus());
        // Letters are dropped by the key filter; Enter saves and goes back to the list.
        Teclear(e, "1x2,5");
        QVERIFY(!e.frCambio->Visible());
        QVERIFY(e.Frame1->Visible() && e.Label3->Visible());
        QCOMPARE(Guardado(t, 2), 12.5);
        QCOMPARE(e.grid_Pseleccionados->Rows(), 3);
        const QStringList esperada =
            textil ? QStringList{"V1", "Bufanda", "2", "H1", "M", "Rojo", "12,5", ""}
                   : QStringList{"B2", "Bufanda", "2", "12,5", ""};
        QCOMPARE(Fila(*e.grid_Pseleccionados, 2), esperada);

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
        QTest::newRow("fila de títulos") << 0;
        QTest::newRow("debajo de las filas") << -1;
        QTest::newRow("fila vacía") << 1;
    }
    void clicSinProducto() {
        QFETCH(int, donde);
        TiendaPrueba t;
        t.Lista(1, "General");
        if (donde != 1)
            t.Producto(1, "A1", "Abrigo", 30);
        FrmTarifas &e = Abierto(t);
        QTableView *v = e.grid_productos->vista();
        QCOMPARE(e.grid_productos->Row(), 1);
        if (donde == 0)
            QTest::mouseClick(v->horizontalHeader()->viewport(), Qt::LeftButton, {},
                              QPoint(20, v->horizontalHeader()->height() / 2));
        else if (donde == -1)
            QTest::mouseClick(v->viewport(), Qt::LeftButton, {},
                              QPoint(20, v->viewport()->height() - 3));
        else
            QTest::mouseClick(v->viewport(), Qt::LeftButton, {},
                              v->visualRect(v->model()->index(0, 1)).center());
        QVERIFY(!e.frCambio->Visible());
        QCOMPARE(e.lblCodProducto->Caption(), QStringLiteral("codigo"));
    }

    // ---- the row a save takes ----

    void obtenerFila_data() {
        QTest::addColumn<bool>("textil");
        QTest::addColumn<QStringList>("filas"); // column 2 "|" column 3 of each data row
        QTest::addColumn<QString>("producto");
        QTest::addColumn<QString>("hijo");
        QTest::addColumn<int>("esperada");
        const QStringList vacia{"|"};
        QTest::newRow("lista vacía: la fila vacía") << false << vacia << "7" << "" << 1;
        QTest::newRow("hallada") << false << QStringList{"5|", "7|"} << "7" << "" << 2;
        QTest::newRow("no hallada, Rows 5")
            << false << QStringList{"1|", "2|", "3|", "4|"} << "9" << "" << 6;
        QTest::newRow("la columna 2 vacía gana")
            << false << QStringList{"5|", "|", "9|"} << "9" << "" << 2;
        QTest::newRow("talla y color, lista vacía: fila nueva") << true << vacia << "7" << "H" << 3;
        QTest::newRow("talla y color, \"\" no es -1") << true << QStringList{"5|"} << "5" << "-1"
                                                       << 3;
        QTest::newRow("talla y color, hallada")
            << true << QStringList{"5|A", "5|B"} << "5" << "B" << 2;
        QTest::newRow("talla y color, vacía con la variante")
            << true << QStringList{"|B", "5|B"} << "5" << "B" << 1;
        QTest::newRow("talla y color, otro producto")
            << true << QStringList{"6|B", "5|C"} << "5" << "B" << 4;
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
        e.lblCodigo->setCaption(QStringLiteral("1"));
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
        const int escrita = esperada > filas.size() + 1 ? int(filas.size()) + 1 : esperada;
        QCOMPARE(g.Rows(), std::max(int(filas.size()) + 1, escrita + 1));
        QCOMPARE(g.TextMatrix(escrita, 2), producto);
        QCOMPARE(g.TextMatrix(escrita, textil ? 6 : 3), QStringLiteral("3"));
    }

    // ---- what is stored, and what is refused ----

    void precio_data() {
        QTest::addColumn<QString>("tecleado");
        QTest::addColumn<QVariant>("guardado"); // invalid: refused, the old 5 stays
        QTest::newRow("coma") << "12,5" << QVariant(12.5);
        QTest::newRow("punto") << "12.5" << QVariant(12.5);
        QTest::newRow("cero") << "0" << QVariant(0.0);
        QTest::newRow("solo decimales") << ",5" << QVariant(0.5);
        QTest::newRow("negativo") << "-3" << QVariant(-3.0);
        QTest::newRow("separador solo") << "," << QVariant();
        QTest::newRow("signo solo") << "-" << QVariant();
        QTest::newRow("demasiadas cifras") << "1234567890123456" << QVariant();
        QTest::newRow("dos separadores") << "1,2,3" << QVariant();
    }
    void precio() {
        QFETCH(QString, tecleado);
        QFETCH(QVariant, guardado);
        TiendaPrueba t;
        t.Producto(1, "A1", "Abrigo", 30);
        t.Lista(1, "General");
        t.Precio(1, 1, 5);
        FrmTarifas &e = Abierto(t);
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

    void varianteConBarra() {
        // The record writer can't carry a "|" in a value: the variant is refused, by name,
        // and the price typed for it is not blamed.
        TiendaPrueba t(TallaColor);
        t.Talla(1, "M");
        t.Color(1, "Rojo");
        t.Producto(1, "A1", "Abrigo", 30);
        t.Variante(1, "H|1", 1, 1, "V1", 31);
        t.Lista(1, "General");
        FrmTarifas &e = Abierto(t);
        RespuestasMensajes cajas;
        QVERIFY(ClicProducto(e, "1", "H|1"));
        Teclear(e, "12");
        QCOMPARE(cajas.Mostrados().size(), 1);
        QVERIFY2(cajas.Mostrados().at(0).contains(QLatin1String("\"H|1\"")) &&
                     !cajas.Mostrados().at(0).contains(QLatin1String("precio")),
                 qPrintable(cajas.Mostrados().at(0)));
        QCOMPARE(Filas(t), 0);
        QVERIFY(e.frCambio->Visible());
    }

    void guardadoAtomico() {
        // The database refuses the insert after the delete has run: the unit is undone.
        TiendaPrueba t;
        t.Producto(1, "A1", "Abrigo", 30);
        t.Lista(1, "General");
        t.Precio(1, 1, 5);
        if (BaseDatosPrueba::EnPostgreSQL()) {
            t.Ejecutar(QStringLiteral(
                "create function rechazar() returns trigger language plpgsql as $$ begin if "
                "new.precio = 99 then raise exception 'precio no admitido'; end if; return new; "
                "end $$"));
            t.Ejecutar(QStringLiteral("create trigger rechazo before insert on detalle_precio for "
                                      "each row execute function rechazar()"));
        } else {
            t.Ejecutar(QStringLiteral("create trigger rechazo before insert on detalle_precio "
                                      "when new.precio = 99 begin select raise(abort, 'precio "
                                      "no admitido'); end"));
        }
        FrmTarifas &e = Abierto(t);
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
