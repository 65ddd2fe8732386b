// The selected products: the prices the open list holds, in the plain mode and in the
// size-and-colour mode, and the size and colour of a stored variant.
#include "apoyo/ejecucion.h"
#include "apoyo/tiendaprueba.h"
#include "editor/frmtarifas.h"
#include "platform/datos/recordset.h"
#include "session/sesionsuite.h"

#include <QStandardPaths>
#include <QtTest>

namespace {

const QString TallaColor = QStringLiteral("TALLACOLOR");

QStringList Fila(const Grid &g, int fila) {
    QStringList t;
    for (int c = 0; c < g.Cols(); ++c)
        t << g.TextMatrix(fila, c);
    return t;
}

/// The rows of `g` whose column `columna` holds `valor`.
QList<int> FilasCon(const Grid &g, int columna, const QString &valor) {
    QList<int> filas;
    for (int f = 1; f < g.Rows(); ++f)
        if (g.TextMatrix(f, columna) == valor)
            filas << f;
    return filas;
}

/// A shop with list 1 holding prices of every kind; each price is unique and names its row.
/// List 2 holds a price that must never show in list 1.
void TiendaConLista(TiendaPrueba &t) {
    t.Talla(1, "M");
    t.Talla(2, "L");
    t.Color(1, "Rojo");
    t.Color(2, "Azul");
    t.Producto(1, "Z1", "Zeta", 50);
    t.Producto(2, "A2", "Alfa", 20);
    t.Producto(3, "B3", "Borrado", 9, "S", 1);
    t.Variante(1, "1M", 1, 1, "Z1M");
    t.Variante(1, "1L", 2, 2, QVariant());
    t.Variante(1, "1X", 99, 1, "Z1X"); // its size is gone: the variant is not found
    t.Variante(1, "O'1", 1, 2, "Z1O");
    t.Variante(3, "3M", 1, 1);
    t.Lista(1, "General");
    t.Lista(2, "Otra");
    t.Precio(1, 1, 55, "1M");
    t.Precio(1, 1, 56, "1L");
    t.Precio(1, 1, 57, "1X");
    t.Precio(1, 1, 58, "1G"); // a variant deleted after it was priced
    t.Precio(1, 1, 59, "O'1");
    t.Precio(1, 2, 21, "-1");
    t.Precio(1, 2, 22.5, QVariant()); // stored in the plain mode
    t.Precio(1, 3, 9.5, "3M");        // a product deleted after it was priced
    t.Precio(2, 2, 99);
}

} // namespace

class TstEditorSeleccionados : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        QStandardPaths::setTestModeEnabled(true);
        QLocale::setDefault(QLocale(QLocale::Spanish, QLocale::Spain));
    }

    void textil_data() {
        QTest::addColumn<QString>("precio");
        QTest::addColumn<QStringList>("esperada");
        QTest::newRow("variante con codigo propio")
            << "55" << QStringList{"Z1M", "Zeta", "1", "1M", "M", "Rojo", "55", ""};
        QTest::newRow("variante sin codigo propio")
            << "56" << QStringList{"Z1", "Zeta", "1", "1L", "L", "Azul", "56", ""};
        QTest::newRow("talla desaparecida: no encontrada")
            << "57" << QStringList{"Z1", "Zeta", "1", "1X", "", "", "57", ""};
        QTest::newRow("variante borrada")
            << "58" << QStringList{"Z1", "Zeta", "1", "1G", "", "", "58", ""};
        QTest::newRow("apostrofo en la variante")
            << "59" << QStringList{"Z1O", "Zeta", "1", "O'1", "M", "Azul", "59", ""};
        QTest::newRow("producto sin variantes (-1)")
            << "21" << QStringList{"A2", "Alfa", "2", "-1", "", "", "21", ""};
        QTest::newRow("guardada en modo llano (nulo)")
            << "22,5" << QStringList{"A2", "Alfa", "2", "", "", "", "22,5", ""};
        QTest::newRow("producto borrado: sigue")
            << "9,5" << QStringList{"B3", "Borrado", "3", "3M", "M", "Rojo", "9,5", ""};
    }
    void textil() {
        QFETCH(QString, precio);
        QFETCH(QStringList, esperada);
        TiendaPrueba tienda(TallaColor);
        TiendaConLista(tienda);
        FrmTarifas &e = tienda.CargarEditor(1);
        const Grid &g = *e.grid_Pseleccionados;
        QCOMPARE(g.Rows(), 9);
        const QList<int> filas = FilasCon(g, 6, precio);
        QCOMPARE(filas.size(), 1);
        QCOMPARE(Fila(g, filas.first()), esperada);
        QVERIFY(FilasCon(g, 6, "99").isEmpty());
    }

    void llano_data() {
        QTest::addColumn<QString>("precio");
        QTest::addColumn<QStringList>("esperada");
        QTest::addColumn<QList<int>>("filasPosibles");
        // By name: Alfa's two rows first, then Zeta's five; the deleted product is left out.
        // A list stored in the size-and-colour mode shows one row per stored variant, with
        // the product's own code and no size or colour.
        QTest::newRow("producto sin variantes")
            << "21" << QStringList{"A2", "Alfa", "2", "21", ""} << QList<int>{1, 2};
        QTest::newRow("fila sin variante")
            << "22,5" << QStringList{"A2", "Alfa", "2", "22,5", ""} << QList<int>{1, 2};
        QTest::newRow("variante con codigo propio")
            << "55" << QStringList{"Z1", "Zeta", "1", "55", ""} << QList<int>{3, 4, 5, 6, 7};
        QTest::newRow("variante borrada")
            << "58" << QStringList{"Z1", "Zeta", "1", "58", ""} << QList<int>{3, 4, 5, 6, 7};
        QTest::newRow("apostrofo")
            << "59" << QStringList{"Z1", "Zeta", "1", "59", ""} << QList<int>{3, 4, 5, 6, 7};
    }
    void llano() {
        QFETCH(QString, precio);
        QFETCH(QStringList, esperada);
        QFETCH(QList<int>, filasPosibles);
        TiendaPrueba tienda;
        TiendaConLista(tienda);
        FrmTarifas &e = tienda.CargarEditor(1);
        const Grid &g = *e.grid_Pseleccionados;
        QCOMPARE(g.Rows(), 8);
        QCOMPARE(FilasCon(g, 2, "1").size(), 5);
        QVERIFY(FilasCon(g, 2, "3").isEmpty());
        QVERIFY(FilasCon(g, 3, "99").isEmpty());
        const QList<int> filas = FilasCon(g, 3, precio);
        QCOMPARE(filas.size(), 1);
        QVERIFY2(filasPosibles.contains(filas.first()), qPrintable(QString::number(filas.first())));
        QCOMPARE(Fila(g, filas.first()), esperada);
    }

    void orden_data() {
        QTest::addColumn<QString>("tipoNegocio");
        QTest::addColumn<QStringList>("nombres");
        // The plain list sorts by name; the other keeps the database's order (here by product
        // code, the order of the list's index).
        QTest::newRow("llano, por nombre") << QString() << QStringList{"Alfa", "Media", "Zeta"};
        QTest::newRow("textil, como vienen") << TallaColor << QStringList{"Zeta", "Alfa", "Media"};
    }
    void orden() {
        QFETCH(QString, tipoNegocio);
        QFETCH(QStringList, nombres);
        TiendaPrueba tienda(tipoNegocio);
        tienda.Producto(1, "Z1", "Zeta", 50);
        tienda.Producto(2, "A2", "Alfa", 20);
        tienda.Producto(3, "M3", "Media", 3);
        tienda.Lista(4, "General");
        tienda.Precio(4, 1, 45);
        tienda.Precio(4, 2, 15);
        tienda.Precio(4, 3, 2);
        FrmTarifas &e = tienda.CargarEditor(4);
        const Grid &g = *e.grid_Pseleccionados;
        QCOMPARE(g.Rows(), 4);
        QCOMPARE((QStringList{g.TextMatrix(1, 1), g.TextMatrix(2, 1), g.TextMatrix(3, 1)}),
                 nombres);
    }

    void vacia_data() {
        QTest::addColumn<QString>("tipoNegocio");
        QTest::addColumn<int>("columnas");
        QTest::addColumn<bool>("preciosDeOtraLista");
        QTest::addColumn<bool>("soloBorrados");
        QTest::newRow("llano, lista nueva") << QString() << 5 << false << false;
        QTest::newRow("llano, precios de otra lista") << QString() << 5 << true << false;
        QTest::newRow("llano, solo productos borrados") << QString() << 5 << false << true;
        QTest::newRow("textil, lista nueva") << TallaColor << 8 << false << false;
        QTest::newRow("textil, precios de otra lista") << TallaColor << 8 << true << false;
    }
    void vacia() {
        // A list with nothing to show keeps the grid's design rows: the titles and one empty
        // row, which the first price saved takes.
        QFETCH(QString, tipoNegocio);
        QFETCH(int, columnas);
        QFETCH(bool, preciosDeOtraLista);
        QFETCH(bool, soloBorrados);
        TiendaPrueba tienda(tipoNegocio);
        tienda.Producto(1, "Z1", "Zeta", 50);
        tienda.Producto(3, "B3", "Borrado", 9, "S", 1);
        tienda.Lista(1, "Nueva");
        tienda.Lista(2, "Otra");
        if (preciosDeOtraLista)
            tienda.Precio(2, 1, 45);
        if (soloBorrados)
            tienda.Precio(1, 3, 8);
        FrmTarifas &e = tienda.CargarEditor(1);
        const Grid &g = *e.grid_Pseleccionados;
        QCOMPARE(g.Rows(), 2);
        QCOMPARE(g.Cols(), columnas);
        QCOMPARE(g.TextMatrix(0, 0), QStringLiteral("Codigo"));
        QCOMPARE(Fila(g, 1), QStringList(columnas, QString()));
    }

    void nulos_data() {
        QTest::addColumn<QString>("tipoNegocio");
        QTest::addColumn<QStringList>("esperada");
        // Fields read with no test for Null show as empty cells; the row is listed.
        QTest::newRow("llano") << QString() << QStringList{"", "", "5", "", ""};
        QTest::newRow("textil") << TallaColor << QStringList{"", "", "5", "-1", "", "", "", ""};
    }
    void nulos() {
        QFETCH(QString, tipoNegocio);
        QFETCH(QStringList, esperada);
        TiendaPrueba tienda(tipoNegocio);
        tienda.Producto(5, QVariant(), QVariant(), QVariant(), QVariant());
        tienda.Lista(1, "General");
        tienda.Precio(1, 5, QVariant(), "-1");
        FrmTarifas &e = tienda.CargarEditor(1);
        QCOMPARE(e.grid_Pseleccionados->Rows(), 2);
        QCOMPARE(Fila(*e.grid_Pseleccionados, 1), esperada);
    }

    void tallaYColor_data() {
        QTest::addColumn<QString>("codProd");
        QTest::addColumn<QString>("codHijo");
        QTest::addColumn<QStringList>("esperado"); // size, colour, shop code
        QTest::newRow("encontrada") << "1"
                                    << "1M" << QStringList{"M", "Rojo", "Z1M"};
        QTest::newRow("sin codigo propio") << "1"
                                           << "1L" << QStringList{"L", "Azul", ""};
        QTest::newRow("codigo de otro producto") << "2"
                                                 << "1M" << QStringList{"", "", ""};
        QTest::newRow("mayusculas cuentan") << "1"
                                            << "1m" << QStringList{"", "", ""};
        QTest::newRow("talla desaparecida") << "1"
                                            << "1X" << QStringList{"", "", ""};
        QTest::newRow("color desaparecido") << "1"
                                            << "1C" << QStringList{"", "", ""};
        QTest::newRow("variante borrada") << "1"
                                          << "1G" << QStringList{"", "", ""};
        QTest::newRow("-1") << "2"
                            << "-1" << QStringList{"", "", ""};
        QTest::newRow("vacio: la variante de codigo vacio") << "4"
                                                            << "" << QStringList{"L", "Rojo", "V4"};
        QTest::newRow("apostrofo") << "1"
                                   << "O'1" << QStringList{"M", "Azul", "Z1O"};
        QTest::newRow("apostrofo y condicion") << "1"
                                               << "x' or '1'='1" << QStringList{"", "", ""};
        QTest::newRow("producto no numerico") << "uno"
                                              << "1M" << QStringList{"", "", ""};
        QTest::newRow("producto vacio") << ""
                                        << "1M" << QStringList{"", "", ""};
        QTest::newRow("producto con condicion") << "1 or 1=1"
                                                << "1M" << QStringList{"", "", ""};
    }
    void tallaYColor() {
        QFETCH(QString, codProd);
        QFETCH(QString, codHijo);
        QFETCH(QStringList, esperado);
        TiendaPrueba tienda(TallaColor);
        TiendaConLista(tienda);
        tienda.Variante(1, "1C", 1, 77);
        tienda.Producto(4, "P4", "Gorro", 5);
        tienda.Variante(4, "", 2, 1, "V4");
        FrmTarifas &e = tienda.CargarEditor(2);
        QString color = QStringLiteral("previo"), codCliente = QStringLiteral("previo");
        const QString talla = e.obtenerTallaYColor(codProd, codHijo, color, codCliente);
        QCOMPARE((QStringList{talla, color, codCliente}), esperado);
    }

    void listadoComoConsulta() {
        // Within a listing the sizes and colours come from one read of the list's variants;
        // each row must show what the one-variant query gives for it.
        TiendaPrueba tienda(TallaColor);
        TiendaConLista(tienda);
        tienda.Producto(4, "P4", "Gorro", 5);
        tienda.Variante(4, "", 2, 1, "V4");
        tienda.Variante(4, "7", 1, 1, "V47");
        tienda.Variante(4, "7", 2, 2, "V47-otra"); // the same code twice: the first answers
        tienda.Variante(4, "07", 2, 2, "V407");
        tienda.Variante(4, "7 ", 1, 2, "V47b");
        tienda.Precio(1, 4, 1, QVariant());
        tienda.Precio(1, 4, 2, "7");
        tienda.Precio(1, 4, 3, "07");
        tienda.Precio(1, 4, 4, "7 ");
        tienda.Precio(1, 4, 5, "");
        FrmTarifas &e = tienda.CargarEditor(1);
        const Grid &g = *e.grid_Pseleccionados;
        QCOMPARE(g.Rows(), 9 + 5);
        int conTalla = 0;
        for (int f = 1; f < g.Rows(); ++f) {
            QString color, codCliente;
            const QString talla =
                e.obtenerTallaYColor(g.TextMatrix(f, 2), g.TextMatrix(f, 3), color, codCliente);
            QCOMPARE(g.TextMatrix(f, 4), talla);
            QCOMPARE(g.TextMatrix(f, 5), color);
            if (!codCliente.isEmpty())
                QCOMPARE(g.TextMatrix(f, 0), codCliente);
            conTalla += !talla.isEmpty();
        }
        // 1M, 1L, O'1, 3M, and for product 4 the Null and "" rows (the '' variant), 7, 07, "7 ".
        QCOMPARE(conTalla, 4 + 5);
        QCOMPARE(g.TextMatrix(FilasCon(g, 6, "3").first(), 0), QStringLiteral("V407"));
        QCOMPARE(g.TextMatrix(FilasCon(g, 6, "4").first(), 5), QStringLiteral("Azul"));
        QCOMPARE(Fila(g, FilasCon(g, 6, "2").first()),
                 (QStringList{"V47", "Gorro", "4", "7", "M", "Rojo", "2", ""}));
    }

    void listaGrande_data() {
        QTest::addColumn<QString>("tipoNegocio");
        QTest::newRow("llano") << QString();
        QTest::newRow("textil") << TallaColor;
    }
    void listaGrande() {
        // Beyond a 16-bit counter: 40,000 prices, in the other mode's case one per variant.
        QFETCH(QString, tipoNegocio);
        constexpr int n = 40000;
        TiendaPrueba tienda(tipoNegocio);
        tienda.Catalogo(n);
        tienda.Talla(1, "M");
        tienda.Color(1, "Rojo");
        tienda.Lista(1, "General");
        tienda.Ejecutar(QStringLiteral(
            "insert into productostextil (codigopadre, codigohijo, talla, color, codcliente, "
            "precio) "
            "select codigo, 'H' || codigo, 1, 1, 'V' || codigo, null from productos"));
        tienda.Ejecutar(QStringLiteral(
            "insert into detalle_precio (identificador, producto, precio, codproductotextil) "
            "select 1, codigo, codigo + 0.25, 'H' || codigo from productos"));
        FrmTarifas &e = tienda.CargarEditor(1);
        const Grid &g = *e.grid_Pseleccionados;
        QCOMPARE(g.Rows(), n + 1);
        const QList<int> filas = FilasCon(g, 2, QString::number(n));
        QCOMPARE(filas.size(), 1);
        QVERIFY(filas.first() > 32767);
        if (tipoNegocio == TallaColor) {
            QCOMPARE(Fila(g, filas.first()), (QStringList{"V40000", "Producto 040000", "40000",
                                                          "H40000", "M", "Rojo", "40000,25", ""}));
            QCOMPARE(FilasCon(g, 4, "M").size(), n);
        } else {
            QCOMPARE(Fila(g, filas.first()),
                     (QStringList{"C40000", "Producto 040000", "40000", "40000,25", ""}));
        }
    }
};

TARIFAS_PRUEBAS(TstEditorSeleccionados)
#include "tst_editorseleccionados.moc"
