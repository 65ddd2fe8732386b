// The editor's listings: the catalogue of either mode (a row per live product by name, or per
// variant and per product without variants), the prices the open list holds, and the size and
// colour of a stored variant.
#include "apoyo/ejecucion.h"
#include "apoyo/tiendaprueba.h"
#include "editor/frmtarifas.h"

#include <QStandardPaths>
#include <QtTest>

namespace {

/// Each data row of `g`, its cells joined by "|".
QStringList Filas(const Grid &g) {
    QStringList filas;
    for (int f = 1; f < g.Rows(); ++f)
        filas << Fila(g, f).join(QLatin1Char('|'));
    return filas;
}

/// A catalogue whose every product and variant tells what it tests; `soloBorrados`: only the
/// deleted ones.
void Catalogo(TiendaPrueba &t, bool soloBorrados) {
    t.Talla(1, "M");
    t.Talla(2, "XL");
    t.Color(1, "Rojo");
    t.Color(2, "Azul marino");
    t.Producto(3, "P3", "Borrado", 9, "S3", 1); // none of its variants shows
    t.Variante(3, "B1", 1, 1, "V-B1", 8);
    t.Producto(4, "P4", "Gorro borrado", 7, "S4", -1); // deleted with another mark
    t.Lista(1, "General");
    t.Precio(1, 3, 4); // a price in the open list brings no deleted product back
    if (soloBorrados)
        return;
    t.Producto(1, "P1", "Calcetin", 4.5, "S1"); // no variants
    t.Producto(2, "P2", "Camisa", 20, "S2");
    t.Variante(2, "PROPIO", 1, 1, "V-PROPIO", 25.75);
    t.Variante(2, "NULOS", 2, 2, QVariant(), QVariant());
    // A server's numeric column holds no empty text, only Null.
    t.Variante(2, "VACIOS", 1, 2, "", BaseDatosPrueba::EnPostgreSQL() ? QVariant() : "");
    t.Variante(2, "CERO", 2, 1, QVariant(), 0);
    t.Variante(2, "SINTALLA", 99, 1);
    t.Variante(2, "SINCOLOR", 1, 99);
    t.Variante(2, "O'NEIL", QVariant(), QVariant());
    t.Producto(5, QVariant(), QVariant(), QVariant(), QVariant());
    t.Producto(6, " 07 ", "Zapato 'Oxford' ", 1.125, " x");
}

/// List 1 holds prices of every kind, each unique; list 2 one that must never show in list 1.
void TiendaConLista(TiendaPrueba &t) {
    t.Talla(1, "M");
    t.Talla(2, "L");
    t.Color(1, "Rojo");
    t.Color(2, "Azul");
    t.Producto(1, "Z1", "Zeta", 50);
    t.Producto(2, "A2", "Alfa", 20);
    t.Producto(3, "B3", "Borrado", 9, "S", 1);
    t.Producto(5, QVariant(), QVariant(), QVariant(), QVariant());
    t.Variante(1, "1M", 1, 1, "Z1M");
    t.Variante(1, "1L", 2, 2, QVariant());
    t.Variante(1, "1X", 99, 1, "Z1X"); // its size is gone: the variant is not found
    t.Variante(1, "1C", 1, 77);        // its colour is gone
    t.Variante(1, "O'1", 1, 2, "Z1O");
    t.Variante(3, "3M", 1, 1);
    t.Producto(4, "P4", "Gorro", 5);
    t.Variante(4, "", 2, 1, "V4");
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
    t.Precio(1, 5, QVariant(), "-1");
    t.Precio(2, 2, 99);
}

} // namespace

class TstEditorListados : public QObject {
    Q_OBJECT

  private slots:
    void initTestCase() {
        QStandardPaths::setTestModeEnabled(true);
        QLocale::setDefault(QLocale(QLocale::Spanish, QLocale::Spain));
    }

    void catalogo_data() {
        QTest::addColumn<QString>("tipoNegocio");
        QTest::addColumn<bool>("soloBorrados");
        QTest::addColumn<QStringList>("filas");
        QTest::newRow("llano, por nombre")
            << QString() << false
            << QStringList{"||5||", "P1|Calcetin|1|4,5|S1", "P2|Camisa|2|20|S2",
                           " 07 |Zapato 'Oxford' |6|1,125| x"};
        QTest::newRow("llano, solo borrados") << QString() << true << QStringList{"||||"};
        // Without an order asked for: compared sorted. A variant's own code and price, or else
        // its product's; a size or colour without its row shows empty.
        QTest::newRow("textil") << TallaColor << false
                                << QStringList{"P1|Calcetin|1|-1|||4,5|S1",
                                               "V-PROPIO|Camisa|2|PROPIO|M|Rojo|25,75|S2",
                                               "P2|Camisa|2|NULOS|XL|Azul marino|20|S2",
                                               "P2|Camisa|2|VACIOS|M|Azul marino|20|S2",
                                               "P2|Camisa|2|CERO|XL|Rojo|0|S2",
                                               "P2|Camisa|2|SINTALLA||Rojo|20|S2",
                                               "P2|Camisa|2|SINCOLOR|M||20|S2",
                                               "P2|Camisa|2|O'NEIL|||20|S2",
                                               "||5|-1||||",
                                               " 07 |Zapato 'Oxford' |6|-1|||1,125| x"};
        QTest::newRow("textil, solo borrados") << TallaColor << true << QStringList{"|||||||"};
    }
    void catalogo() {
        QFETCH(QString, tipoNegocio);
        QFETCH(bool, soloBorrados);
        QFETCH(QStringList, filas);
        TiendaPrueba tienda(tipoNegocio);
        Catalogo(tienda, soloBorrados);
        FrmTarifas &e = tienda.CargarEditor(1);
        QStringList vistas =
            Filas(tipoNegocio.isEmpty() ? *e.grid_productos : *e.grid_productos_textil);
        if (!tipoNegocio.isEmpty()) {
            vistas.sort();
            filas.sort();
        }
        QCOMPARE(vistas, filas);
    }

    void seleccionados_data() {
        QTest::addColumn<QString>("tipoNegocio");
        QTest::addColumn<QStringList>("extra"); // run on the shop before the load
        QTest::addColumn<QString>("precio");    // names the row
        QTest::addColumn<QString>("fila");
        const auto textil = [](const char *nombre, const QString &precio, const QString &fila,
                               const QStringList &extra = {}) {
            QTest::addRow("textil, %s", nombre) << TallaColor << extra << precio << fila;
        };
        textil("con codigo propio", "55", "Z1M|Zeta|1|1M|M|Rojo|55|");
        textil("sin codigo propio", "56", "Z1|Zeta|1|1L|L|Azul|56|");
        textil("talla desaparecida", "57", "Z1|Zeta|1|1X|||57|");
        textil("variante borrada", "58", "Z1|Zeta|1|1G|||58|");
        textil("apostrofo", "59", "Z1O|Zeta|1|O'1|M|Azul|59|");
        textil("sin variantes (-1)", "21", "A2|Alfa|2|-1|||21|");
        textil("guardada en modo llano (nulo)", "22,5", "A2|Alfa|2||||22,5|");
        textil("producto borrado: sigue", "9,5", "B3|Borrado|3|3M|M|Rojo|9,5|");
        textil("campos nulos", "", "||5|-1||||");
        // A variant record without a code is no variant of a row saved without one.
        textil("variante de codigo nulo", "22,5", "A2|Alfa|2||||22,5|",
               {"insert into productostextil (codigopadre, codigohijo, talla, color, codcliente) "
                "values (2, null, 1, 1, 'N2')"});
        // A parent code stored as 2.5 belongs to no product, not to product 2.
        textil("padre fraccionario (SQLite)", "21", "A2|Alfa|2|-1|||21|",
               {"insert into productostextil (codigopadre, codigohijo, talla, color, codcliente) "
                "values (2.5, '-1', 1, 1, 'F2')",
                "insert into detalle_precio (identificador, producto, precio, codproductotextil) "
                "values (1, 2.5, 1, '-1')"});
        QTest::newRow("llano, sin variantes") << QString() << QStringList() << "21"
                                              << "A2|Alfa|2|21|";
        QTest::newRow("llano, fila de una variante") << QString() << QStringList() << "59"
                                                     << "Z1|Zeta|1|59|";
        QTest::newRow("llano, campos nulos") << QString() << QStringList() << ""
                                             << "||5||";
    }
    void seleccionados() {
        QFETCH(QString, tipoNegocio);
        QFETCH(QStringList, extra);
        QFETCH(QString, precio);
        QFETCH(QString, fila);
        if (QByteArray(QTest::currentDataTag()).contains("SQLite"))
            SOLO_SQLITE("a server's whole-number column holds no fraction");
        const bool textil = !tipoNegocio.isEmpty();
        TiendaPrueba tienda(tipoNegocio);
        TiendaConLista(tienda);
        for (const QString &sql : extra)
            tienda.Ejecutar(sql);
        const Grid &g = *tienda.CargarEditor(1).grid_Pseleccionados;
        // Every price of the list, and only of it; the plain mode leaves the deleted product
        // out and sorts by name.
        QCOMPARE(g.Rows(), textil ? 10 : 9);
        if (!textil) {
            QStringList nombres;
            for (int f = 1; f < g.Rows(); ++f)
                nombres << g.TextMatrix(f, 1);
            QCOMPARE(nombres,
                     (QStringList{"", "Alfa", "Alfa", "Zeta", "Zeta", "Zeta", "Zeta", "Zeta"}));
        }
        const QList<int> filas = FilasCon(g, textil ? 6 : 3, precio);
        QCOMPARE(filas.size(), 1);
        QCOMPARE(Fila(g, filas.first()).join(QLatin1Char('|')), fila);
    }

    void vacia_data() {
        // A list with nothing to show keeps the design rows: the titles and one empty row.
        QTest::addColumn<QString>("tipoNegocio");
        QTest::addColumn<int>("precioEn"); // the list of the one price stored
        QTest::addColumn<int>("producto");
        QTest::newRow("llano, precio de otra lista") << QString() << 2 << 1;
        QTest::newRow("llano, producto borrado") << QString() << 1 << 3;
        QTest::newRow("textil, precio de otra lista") << TallaColor << 2 << 1;
    }
    void vacia() {
        QFETCH(QString, tipoNegocio);
        QFETCH(int, precioEn);
        QFETCH(int, producto);
        TiendaPrueba tienda(tipoNegocio);
        tienda.Producto(1, "Z1", "Zeta", 50);
        tienda.Producto(3, "B3", "Borrado", 9, "S", 1);
        tienda.Lista(1, "Nueva");
        tienda.Lista(2, "Otra");
        tienda.Precio(precioEn, producto, 45);
        const Grid &g = *tienda.CargarEditor(1).grid_Pseleccionados;
        QCOMPARE(g.Rows(), 2);
        QCOMPARE(Fila(g, 1), QStringList(g.Cols(), QString()));
    }

    void tallaYColor_data() {
        QTest::addColumn<QString>("codProd");
        QTest::addColumn<QString>("codHijo");
        QTest::addColumn<QString>("esperado"); // size|colour|shop code
        QTest::newRow("encontrada") << "1"
                                    << "1M"
                                    << "M|Rojo|Z1M";
        QTest::newRow("sin codigo propio") << "1"
                                           << "1L"
                                           << "L|Azul|";
        QTest::newRow("de otro producto") << "2"
                                          << "1M"
                                          << "||";
        QTest::newRow("mayusculas cuentan") << "1"
                                            << "1m"
                                            << "||";
        QTest::newRow("talla desaparecida") << "1"
                                            << "1X"
                                            << "||";
        QTest::newRow("color desaparecido") << "1"
                                            << "1C"
                                            << "||";
        QTest::newRow("-1") << "2"
                            << "-1"
                            << "||";
        QTest::newRow("vacio: la de codigo vacio") << "4"
                                                   << ""
                                                   << "L|Rojo|V4";
        QTest::newRow("apostrofo") << "1"
                                   << "O'1"
                                   << "M|Azul|Z1O";
        QTest::newRow("apostrofo y condicion") << "1"
                                               << "x' or '1'='1"
                                               << "||";
        QTest::newRow("producto no numerico") << "uno"
                                              << "1M"
                                              << "||";
        QTest::newRow("producto con condicion") << "1 or 1=1"
                                                << "1M"
                                                << "||";
    }
    void tallaYColor() {
        QFETCH(QString, codProd);
        QFETCH(QString, codHijo);
        QFETCH(QString, esperado);
        TiendaPrueba tienda(TallaColor);
        TiendaConLista(tienda);
        FrmTarifas &e = tienda.CargarEditor(2);
        QString color = QStringLiteral("previo"), codCliente = QStringLiteral("previo");
        const QString talla = e.obtenerTallaYColor(codProd, codHijo, color, codCliente);
        QCOMPARE((QStringList{talla, color, codCliente}).join(QLatin1Char('|')), esperado);
    }

    void listadoComoConsulta() {
        // A listing reads the list's variants once; each row must show what the one-variant
        // query gives for it.
        TiendaPrueba tienda(TallaColor);
        TiendaConLista(tienda);
        tienda.Variante(4, "7", 1, 1, "V47");
        tienda.Variante(4, "7", 2, 2, "V47-otra"); // the same code twice: the first answers
        tienda.Variante(4, "07", 2, 2, "V407");
        tienda.Variante(4, "7 ", 1, 2, "V47b");
        tienda.Variante(6, QVariant(), 1, 1, "V6");
        tienda.Producto(6, "P6", "Bota", 5);
        for (const auto &[precio, hijo] :
             {std::pair{1, QVariant()}, {2, "7"}, {3, "07"}, {4, "7 "}, {5, ""}})
            tienda.Precio(1, 4, precio, hijo);
        tienda.Precio(1, 6, 6, QVariant());
        FrmTarifas &e = tienda.CargarEditor(1);
        const Grid &g = *e.grid_Pseleccionados;
        QCOMPARE(g.Rows(), 10 + 6);
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
        // 1M, 1L, O'1, 3M, and for product 4 the Null and "" rows (the '' variant), 7, 07, "7 ";
        // none for product 6, whose one variant has a Null code.
        QCOMPARE(conTalla, 4 + 5);
        QCOMPARE(Fila(g, FilasCon(g, 6, "2").first()).join(QLatin1Char('|')),
                 QStringLiteral("V47|Gorro|4|7|M|Rojo|2|"));
    }
};

TARIFAS_PRUEBAS(TstEditorListados)
#include "tst_editorlistados.moc"
