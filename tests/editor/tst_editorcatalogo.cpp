// The two catalogues of the editor: the plain one (a row per live product, by name) and the
// size-and-colour one (a row per variant, and per product without variants).
#include "apoyo/ejecucion.h"
#include "apoyo/tiendaprueba.h"
#include "editor/frmtarifas.h"

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

/// The shop of the size-and-colour cases: each variant tells in its code what it tests.
void TiendaTextil(TiendaPrueba &t) {
    t.Talla(1, "M");
    t.Talla(2, "XL");
    t.Color(1, "Rojo");
    t.Color(2, "Azul marino");
    t.Producto(1, "P1", "Calcetin", 4.5, "S1");           // no variants
    t.Producto(2, "P2", "Camisa", 20, "S2");              // variants of every kind
    t.Variante(2, "PROPIO", 1, 1, "V-PROPIO", 25.75);     // own shop code and price
    t.Variante(2, "NULOS", 2, 2, QVariant(), QVariant()); // Null code and price
    // Empty code and price; a server's numeric column holds no empty text, only Null.
    t.Variante(2, "VACIOS", 1, 2, "", BaseDatosPrueba::EnPostgreSQL() ? QVariant() : "");
    t.Variante(2, "CERO", 2, 1, QVariant(), 0);           // a price of 0 is a price
    t.Variante(2, "SINTALLA", 99, 1);                     // its size has no row
    t.Variante(2, "SINCOLOR", 1, 99);                     // its colour has no row
    t.Variante(2, "NADA", QVariant(), QVariant());        // neither size nor colour
    t.Variante(2, "O'NEIL", 1, 1);                        // an apostrophe in the code
    t.Producto(3, "P3", "Borrado", 9, "S3", 1);           // deleted: none of its variants
    t.Variante(3, "B1", 1, 1, "V-B1", 8);
    t.Variante(3, "B2", 2, 2);
    t.Producto(4, "P4", "Gorro borrado", 7, "S4", -1);             // deleted with another mark
    t.Producto(5, QVariant(), QVariant(), QVariant(), QVariant()); // every field Null
}

} // namespace

class TstEditorCatalogo : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        QStandardPaths::setTestModeEnabled(true);
        QLocale::setDefault(QLocale(QLocale::Spanish, QLocale::Spain));
    }

    void llano_data() {
        QTest::addColumn<int>("fila");
        QTest::addColumn<QStringList>("esperada");
        // By name; the deleted ones are missing; a Null shows as an empty cell.
        QTest::newRow("campos nulos, primero por nombre") << 1 << QStringList{"", "", "8", "", ""};
        QTest::newRow("sin codigo de tienda") << 2 << QStringList{"", "Abrigo", "2", "30", "S2"};
        QTest::newRow("precio con decimales")
            << 3 << QStringList{"A1", "Camisa", "1", "12,5", "S1"};
        QTest::newRow("precio cero") << 4 << QStringList{"D4", "Zapato", "4", "0", "S3"};
        QTest::newRow("texto tal cual")
            << 5 << QStringList{" 07 ", "Zapato 'Oxford' ", "6", "1,125", " x"};
    }
    void llano() {
        QFETCH(int, fila);
        QFETCH(QStringList, esperada);
        TiendaPrueba tienda;
        tienda.Producto(1, "A1", "Camisa", 12.5, "S1");
        tienda.Producto(2, "", "Abrigo", 30, "S2");
        tienda.Producto(3, "B3", "Borrado", 5, "S1", 1);
        tienda.Producto(4, "D4", "Zapato", 0, "S3");
        tienda.Producto(5, "E5", "Anorak borrado", 5, "S1", -1);
        tienda.Producto(6, " 07 ", "Zapato 'Oxford' ", 1.125, " x");
        tienda.Producto(8, QVariant(), QVariant(), QVariant(), QVariant());
        // A price in the open list doesn't bring a deleted product back.
        tienda.Lista(1, "General");
        tienda.Precio(1, 3, 4);
        FrmTarifas &e = tienda.CargarEditor(1);
        QCOMPARE(e.grid_productos->Rows(), 6);
        QCOMPARE(Fila(*e.grid_productos, fila), esperada);
    }

    void llanoVacio_data() {
        QTest::addColumn<bool>("conProductosBorrados");
        QTest::newRow("sin productos") << false;
        QTest::newRow("todos borrados") << true;
    }
    void llanoVacio() {
        // Nothing to list leaves the grid as formatted: its titles and one empty row.
        QFETCH(bool, conProductosBorrados);
        TiendaPrueba tienda;
        if (conProductosBorrados) {
            tienda.Producto(1, "A1", "Camisa", 12.5, "S1", 1);
            tienda.Producto(2, "A2", "Abrigo", 30, "S1", -1);
        }
        tienda.Lista(1, "General");
        FrmTarifas &e = tienda.CargarEditor(1);
        QCOMPARE(e.grid_productos->Rows(), 2);
        QCOMPARE(Fila(*e.grid_productos, 0),
                 (QStringList{"Codigo", "Producto", "codigo", "precio", "seccion"}));
        QCOMPARE(Fila(*e.grid_productos, 1), QStringList(5, QString()));
    }

    void textil_data() {
        QTest::addColumn<QString>("producto");
        QTest::addColumn<QString>("variante");
        QTest::addColumn<QStringList>("esperada");
        QTest::newRow("producto sin variantes")
            << "1"
            << "-1" << QStringList{"P1", "Calcetin", "1", "-1", "", "", "4,5", "S1"};
        QTest::newRow("codigo y precio propios")
            << "2"
            << "PROPIO"
            << QStringList{"V-PROPIO", "Camisa", "2", "PROPIO", "M", "Rojo", "25,75", "S2"};
        QTest::newRow("codigo y precio nulos: los del padre")
            << "2"
            << "NULOS"
            << QStringList{"P2", "Camisa", "2", "NULOS", "XL", "Azul marino", "20", "S2"};
        QTest::newRow("codigo y precio vacios: los del padre")
            << "2"
            << "VACIOS"
            << QStringList{"P2", "Camisa", "2", "VACIOS", "M", "Azul marino", "20", "S2"};
        QTest::newRow("precio cero")
            << "2"
            << "CERO" << QStringList{"P2", "Camisa", "2", "CERO", "XL", "Rojo", "0", "S2"};
        QTest::newRow("talla sin fila")
            << "2"
            << "SINTALLA" << QStringList{"P2", "Camisa", "2", "SINTALLA", "", "Rojo", "20", "S2"};
        QTest::newRow("color sin fila")
            << "2"
            << "SINCOLOR" << QStringList{"P2", "Camisa", "2", "SINCOLOR", "M", "", "20", "S2"};
        QTest::newRow("sin talla ni color")
            << "2"
            << "NADA" << QStringList{"P2", "Camisa", "2", "NADA", "", "", "20", "S2"};
        QTest::newRow("apostrofo en el codigo")
            << "2"
            << "O'NEIL" << QStringList{"P2", "Camisa", "2", "O'NEIL", "M", "Rojo", "20", "S2"};
        QTest::newRow("campos nulos") << "5"
                                      << "-1" << QStringList{"", "", "5", "-1", "", "", "", ""};
    }
    void textil() {
        QFETCH(QString, producto);
        QFETCH(QString, variante);
        QFETCH(QStringList, esperada);
        TiendaPrueba tienda(TallaColor);
        TiendaTextil(tienda);
        tienda.Lista(1, "General");
        FrmTarifas &e = tienda.CargarEditor(1);
        const Grid &g = *e.grid_productos_textil;
        QList<int> filas;
        for (int f = 1; f < g.Rows(); ++f)
            if (g.TextMatrix(f, 2) == producto && g.TextMatrix(f, 3) == variante)
                filas << f;
        QCOMPARE(filas.size(), 1);
        QCOMPARE(Fila(g, filas.first()), esperada);
    }

    void textilFilas() {
        // One row per variant of a live parent and per live product without variants; no row
        // for a parent with variants, none for anything of a deleted parent.
        TiendaPrueba tienda(TallaColor);
        TiendaTextil(tienda);
        tienda.Lista(1, "General");
        FrmTarifas &e = tienda.CargarEditor(1);
        const Grid &g = *e.grid_productos_textil;
        QCOMPARE(g.Rows(), 1 + 1 + 8 + 1);
        QMap<QString, int> porProducto;
        for (int f = 1; f < g.Rows(); ++f)
            ++porProducto[g.TextMatrix(f, 2)];
        QCOMPARE(porProducto, (QMap<QString, int>{{"1", 1}, {"2", 8}, {"5", 1}}));
        for (int f = 1; f < g.Rows(); ++f)
            QVERIFY(g.TextMatrix(f, 2) != "2" || g.TextMatrix(f, 3) != "-1");
        // The plain catalogue stays out of it.
        QCOMPARE(e.grid_productos->Rows(), 2);
        QCOMPARE(e.grid_productos->TextMatrix(1, 1), QString());
    }

    void textilOrden() {
        // No order is asked for: the rows come as the database gives them, here the order in
        // which the products were stored, not their names' order.
        SOLO_SQLITE("A server gives the rows of a join in an order of its own");
        TiendaPrueba tienda(TallaColor);
        tienda.Producto(10, "Z", "Zapato", 50);
        tienda.Producto(11, "A", "Abrigo", 80);
        tienda.Producto(12, "M", "Media", 3);
        tienda.Lista(1, "General");
        FrmTarifas &e = tienda.CargarEditor(1);
        const Grid &g = *e.grid_productos_textil;
        QCOMPARE(g.Rows(), 4);
        QCOMPARE((QStringList{g.TextMatrix(1, 1), g.TextMatrix(2, 1), g.TextMatrix(3, 1)}),
                 (QStringList{"Zapato", "Abrigo", "Media"}));
    }

    void textilVacio_data() {
        QTest::addColumn<bool>("conProductosBorrados");
        QTest::newRow("sin productos") << false;
        QTest::newRow("todos borrados") << true;
    }
    void textilVacio() {
        QFETCH(bool, conProductosBorrados);
        TiendaPrueba tienda(TallaColor);
        if (conProductosBorrados) {
            tienda.Producto(3, "P3", "Borrado", 9, "S3", 1);
            tienda.Variante(3, "B1", 1, 1, "V-B1", 8);
        }
        tienda.Lista(1, "General");
        FrmTarifas &e = tienda.CargarEditor(1);
        QCOMPARE(e.grid_productos_textil->Rows(), 2);
        QCOMPARE(e.grid_productos_textil->Cols(), 8);
        QCOMPARE(Fila(*e.grid_productos_textil, 1), QStringList(8, QString()));
        // The sliding entry starts all the same.
        QVERIFY(e.tmrRegresaLista->Enabled());
    }

    void catalogoGrande_data() {
        QTest::addColumn<QString>("tipoNegocio");
        QTest::newRow("llano") << QString();
        QTest::newRow("textil") << TallaColor;
    }
    void catalogoGrande() {
        // Far beyond what a 16-bit counter bears: every product gets its row.
        QFETCH(QString, tipoNegocio);
        constexpr int n = 100000;
        TiendaPrueba tienda(tipoNegocio);
        tienda.Catalogo(n);
        tienda.Lista(1, "General");
        FrmTarifas &e = tienda.CargarEditor(1);
        const Grid &g = tipoNegocio == TallaColor ? *e.grid_productos_textil : *e.grid_productos;
        QCOMPARE(g.Rows(), n + 1);
        qint64 suma = 0;
        for (int f = 1; f < g.Rows(); ++f)
            suma += g.TextMatrix(f, 2).toLongLong();
        QCOMPARE(suma, qint64(n) * (n + 1) / 2);
        // The last row, far past 32767, holds one product whole (which one depends on the
        // database when no order is asked for).
        const QString codigo = g.TextMatrix(n, 2);
        QCOMPARE(g.TextMatrix(n, 0), QStringLiteral("C") + codigo);
        QCOMPARE(g.TextMatrix(n, 1),
                 QStringLiteral("Producto ") + codigo.rightJustified(6, QLatin1Char('0')));
        QCOMPARE(g.TextMatrix(n, tipoNegocio == TallaColor ? 6 : 3), codigo + QStringLiteral(",5"));
        if (tipoNegocio.isEmpty())
            QCOMPARE(codigo, QStringLiteral("100000")); // by name, the last one
    }
};

TARIFAS_PRUEBAS(TstEditorCatalogo)
#include "tst_editorcatalogo.moc"
