// Setting a price in the editor: the click that opens the panel, the typed price, the save
// (one unit: the old price survives a failed insert), the row it takes in the list, the prices
// the record writer can't read, and variant codes with awkward characters. Finding a product:
// by a code (shop code or extra code, typed text always bound) and by the start of its name,
// which hides the other rows of the catalogue; in both modes.
#include "apoyo/ejecucion.h"
#include "apoyo/respuestas.h"
#include "apoyo/tiendaprueba.h"
#include "editor/columnas.h"

using namespace Pantalla;

namespace {

double Guardado(TiendaPrueba &t, int producto) {
    return t.Valor("select precio from detalle_precio where producto = ?", {producto}).toDouble();
}

int Filas(TiendaPrueba &t) {
    return t.Valor("select count(*) from detalle_precio").toInt();
}

/// The names of the catalogue's rows that show, sorted.
QStringList AlaVista(const Grid &g) {
    QStringList nombres;
    for (int f = 1; f < g.Rows(); ++f)
        if (g.RowHeight(f) > 0)
            nombres << g.TextMatrix(f, ColLlano::Nombre);
    nombres.sort();
    return nombres;
}

struct Fila_ {
    bool textil;
    QStringList filas;
    QString producto, hijo;
    int esperada;
};

} // namespace

Q_DECLARE_METATYPE(Fila_)

class TstEditorPrecio : public QObject {
    Q_OBJECT

  private slots:
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
        const QString otro = textil ? QStringLiteral("-1") : QString();

        // The click opens the panel on the product with its standard price.
        QVERIFY(ClicProducto(e, "2", hijo));
        QVERIFY(e.frCambio->Visible() && !e.Frame1->Visible());
        QCOMPARE(e.lblNomProd->Caption(), QStringLiteral("Bufanda"));
        QCOMPARE(e.txt_precio->Text(), textil ? QStringLiteral("9") : QStringLiteral("8,5"));
        QTRY_VERIFY(e.txt_NuevoPrecio->widget()->hasFocus());
        // Letters are dropped by the key filter; Enter saves and goes back to the list.
        Teclear(e.txt_NuevoPrecio, "1x2,5");
        QVERIFY(!e.frCambio->Visible() && e.Frame1->Visible());
        QCOMPARE(Guardado(t, 2), 12.5);
        QCOMPARE(Fila(*e.grid_Pseleccionados, 2).join('|'),
                 textil ? QStringLiteral("V1|Bufanda|2|H1|M|Rojo|12,5|")
                        : QStringLiteral("B2|Bufanda|2|12,5|"));
        // A second price replaces the first, in place: one stored row, no new grid row.
        QVERIFY(ClicProducto(e, "2", hijo));
        QCOMPARE(e.txt_NuevoPrecio->Text(), QString()); // the box starts empty
        Teclear(e.txt_NuevoPrecio, "7");
        QCOMPARE(Guardado(t, 2), 7.0);
        QCOMPARE(Filas(t), 2);
        QCOMPARE(e.grid_Pseleccionados->Rows(), 3);
        QCOMPARE(e.grid_Pseleccionados->TextMatrix(2, textil ? 6 : 3), QStringLiteral("7"));
        // Cancel saves nothing; Enter on an empty box saves nothing either.
        QVERIFY(ClicProducto(e, "1", otro));
        QTest::keyClicks(e.txt_NuevoPrecio->widget(), "99");
        QTest::mouseClick(e.cmdCancelar->widget(), Qt::LeftButton);
        QVERIFY(!e.frCambio->Visible());
        QVERIFY(ClicProducto(e, "1", otro));
        Teclear(e.txt_NuevoPrecio, "");
        QVERIFY(!e.frCambio->Visible());
        QCOMPARE(Guardado(t, 1), 25.0);
        QCOMPARE(Filas(t), 2);
    }

    void obtenerFila_data() {
        // The row a save takes: the product's (and variant's) own, else the first empty one,
        // else a new one. The rows hold column 2 "|" column 3.
        QTest::addColumn<Fila_>("caso");
        QTest::newRow("lista vacia: la fila vacia") << Fila_{false, {"|"}, "7", "", 1};
        QTest::newRow("hallada") << Fila_{false, {"5|", "7|"}, "7", "", 2};
        QTest::newRow("no hallada") << Fila_{false, {"1|", "2|", "3|", "4|"}, "9", "", 6};
        QTest::newRow("la columna 2 vacia gana") << Fila_{false, {"5|", "|", "9|"}, "9", "", 2};
        QTest::newRow("textil, lista vacia: fila nueva") << Fila_{true, {"|"}, "7", "H", 3};
        QTest::newRow("textil, \"\" no es -1") << Fila_{true, {"5|"}, "5", "-1", 3};
        QTest::newRow("textil, la segunda variante") << Fila_{true, {"5|A", "5|B"}, "5", "B", 2};
        QTest::newRow("textil, vacia con la variante") << Fila_{true, {"|B", "5|B"}, "5", "B", 1};
        QTest::newRow("textil, otro producto") << Fila_{true, {"6|B", "5|C"}, "5", "B", 4};
    }
    void obtenerFila() {
        QFETCH(Fila_, caso);
        TiendaPrueba t(caso.textil ? TallaColor : QString());
        t.Lista(1, "General");
        FrmTarifas &e = t.CargarEditor(1);
        Grid &g = *e.grid_Pseleccionados;
        const int n = int(caso.filas.size());
        g.setRows(n + 1);
        for (int f = 1; f <= n; ++f) {
            g.setTextMatrix(f, ColLlano::Codigo, caso.filas[f - 1].section('|', 0, 0));
            g.setTextMatrix(f, ColTallaColor::CodigoHijo, caso.filas[f - 1].section('|', 1));
        }
        QCOMPARE(caso.textil ? e.ObtenerFila_textil(caso.producto, caso.hijo)
                             : e.ObtenerFila(caso.producto),
                 caso.esperada);
        // The save writes that row, or appends one when none was found.
        e.lblCodProducto->setCaption(caso.producto);
        e.lblCodProdTextil->setCaption(caso.hijo);
        e.txt_NuevoPrecio->setText(QStringLiteral("3"));
        caso.textil ? e.AñadirGridProd_textil() : e.AñadirGridProd();
        const int escrita = std::min(caso.esperada, n + 1);
        QCOMPARE(g.Rows(), std::max(n + 1, escrita + 1));
        QCOMPARE(g.TextMatrix(escrita, ColLlano::Codigo) + '|' +
                     g.TextMatrix(escrita,
                                  caso.textil ? int(ColTallaColor::Precio) : int(ColLlano::Precio)),
                 caso.producto + "|3");
    }

    void precio_data() {
        // guardado: NaN: refused, the old 5 stays
        const auto caso = Pruebas::Tabla<QString, double>();
        const double no = qQNaN();
        // The reading of a typed price is the record writer's; here, what the operator sees.
        for (const auto &[texto, valor] : {std::pair{"12,5", 12.5},
                                           {"12.5", 12.5},
                                           {"-3", -3.0},
                                           {"9999999999999999", no},
                                           {",", no},
                                           {"12|precio=1", no}})
            caso(texto, QString::fromUtf8(texto), valor);
    }
    void precio() {
        const auto [tecleado, guardado] = Pruebas::Fila<QString, double>();
        const bool vale = !qIsNaN(guardado);
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
        QCOMPARE(Guardado(t, 1), vale ? guardado : 5.0);
        // Stored as typed; or told, with the text to mend still in the open panel, and the old
        // price kept in the grid.
        QCOMPARE(e.grid_Pseleccionados->TextMatrix(1, ColLlano::Precio), vale ? tecleado : "5");
        QCOMPARE(e.frCambio->Visible(), !vale);
        QCOMPARE(cajas.Mostrados().size(), vale ? 0 : 1);
        if (vale)
            return;
        QVERIFY(cajas.Mostrados().at(0).startsWith("El precio \"" + tecleado +
                                                   "\" no se puede guardar: escriba un número"));
        QCOMPARE(e.txt_NuevoPrecio->Text(), tecleado);
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
        Teclear(e.txt_NuevoPrecio, "99");
        QVERIFY(e.Loaded());
        QCOMPARE(cajas.Mostrados().size(), 1); // the error report, with the database's text
        QVERIFY2(cajas.Mostrados().at(0).contains("precio no admitido"),
                 qPrintable(cajas.Mostrados().at(0)));
        QCOMPARE(Filas(t), 1);
        QCOMPARE(Guardado(t, 1), 5.0);
        QCOMPARE(e.grid_Pseleccionados->TextMatrix(1, ColLlano::Precio), QStringLiteral("5"));
        // The next price goes through as usual.
        e.txt_NuevoPrecio->setText(QString());
        Teclear(e.txt_NuevoPrecio, "8");
        QCOMPARE(Guardado(t, 1), 8.0);
    }

    void codigo_data() {
        // admitidos: any of them may answer; {-1}: none
        const auto caso = Pruebas::Tabla<QString, QList<qint64>>();
        caso("código de tienda", "C1", QList<qint64>{1});
        caso("código extra", "E10", QList<qint64>{10});
        caso("extra sin distinguir mayúsculas", "e10", QList<qint64>{10});
        caso("borrado: su código de tienda no", "B3", QList<qint64>{-1});
        caso("borrado: su código extra sí", "E3", QList<qint64>{3});
        caso("de tienda de uno y extra de otro", "DOS", QList<qint64>{6, 7});
        caso("texto vacío halla un código vacío", "", QList<qint64>{5});
        caso("comodín en un código extra", "AB%", QList<qint64>{8});
        caso("comodín que no casa", "AC%", QList<qint64>{-1});
        caso("% en el código de tienda es una letra", "P%", QList<qint64>{-1});
        caso("apóstrofo", "X'2", QList<qint64>{2});
        caso("barra invertida", "A\\B", QList<qint64>{9});
        caso("código interno mayor que 32767", "BIG", QList<qint64>{40000});
        caso("no existe", "NADA", QList<qint64>{-1});
    }
    void codigo() {
        const auto [texto, admitidos] = Pruebas::Fila<QString, QList<qint64>>();
        TiendaPrueba t;
        t.Ejecutar(
            "insert into productos values (1, 'C1', 'a', 1, 'S', 0), "
            "(2, 'X''2', 'a', 1, 'S', 0), (3, 'B3', 'a', 1, 'S', 1), (5, '', 'a', 1, 'S', 0), "
            "(6, 'DOS', 'a', 1, 'S', 0), (7, 'C7', 'a', 1, 'S', 0), (8, 'C8', 'a', 1, 'S', 0), "
            "(9, 'C9', 'a', 1, 'S', 0), (10, 'C10', 'a', 1, 'S', 0), (11, 'PX', 'a', 1, 'S', 0), "
            "(40000, 'BIG', 'a', 1, 'S', 0)");
        t.Ejecutar("insert into productos_codigosextra values (10, 'E10'), (3, 'E3'), (7, 'DOS'), "
                   "(8, 'ABXCD'), (9, ?), (1, 'Q''1')",
                   {"A\\B"});
        t.Lista(1, "General");
        const qint64 hallado = t.CargarEditor(1).iBuscarCodInternoItem(texto);
        QVERIFY2(admitidos.contains(hallado), qPrintable(QString::number(hallado)));
    }

    void nombre_data() {
        // textos: typed in turn into ct_buscar_n, "/" between
        const auto caso = Pruebas::Tabla<QString, QString>();
        caso("nombre mas corto que el texto", "camis", "CAMISA AZUL/Camiseta/camisa roja");
        caso("sin distinguir mayusculas", "cAmIsA ", "CAMISA AZUL/camisa roja");
        caso("en medio del nombre no", "blusa c", "Blusa camisa");
        caso("nombre vacio, oculto", "x", "");
        caso("acortar el texto trae filas", "camis/ca",
             "Ca/calcetin/CAMISA AZUL/camisa roja/Camiseta");
        caso("vaciar la caja muestra todo", "pan/",
             "/Blusa camisa/Ca/calcetin/CAMISA AZUL/camisa roja/Camiseta/Pantalon/50% d'algodón");
        caso("comodines y apostrofo son letras", "50%", "50% d'algodón");
    }
    void nombre() {
        const auto [textos, aLaVista] = Pruebas::Fila<QString, QString>();
        QStringList esperados =
            aLaVista.split('/', aLaVista.isEmpty() ? Qt::SkipEmptyParts : Qt::KeepEmptyParts);
        esperados.sort();
        for (const bool textil : {false, true}) {
            TiendaPrueba t(textil ? TallaColor : QString());
            int codigo = 0;
            for (const char *nombre : {"CAMISA AZUL", "Camiseta", "calcetin", "Pantalon", "", "Ca",
                                       "Blusa camisa", "camisa roja", "50% d'algodón"})
                t.Producto(++codigo, "C", QString::fromUtf8(nombre), 1);
            t.Lista(1, "General");
            FrmTarifas &e = t.CargarEditor(1);
            for (const QString &texto : textos.split('/'))
                e.ct_buscar_n->setText(texto);
            QCOMPARE(AlaVista(textil ? *e.grid_productos_textil : *e.grid_productos), esperados);
        }
    }

    void codigoConEnter_data() {
        // variante: lblCodProdTextil when the panel opens, else ""
        const auto caso = Pruebas::Tabla<QString, QString, QString, int>();
        caso("llano, hallado", QString(), "BIG", "CodProdTextil", 1);
        caso("llano, no hallado", QString(), "BIGX", "", 1);
        caso("codigo propio de una variante", TallaColor, "V-ROJA", "H2", 4);
        caso("producto sin variantes", TallaColor, "BIG", "-1", 4);
        caso("producto con variantes: elegir una", TallaColor, "P2", "", 3);
        caso("extra de un producto con variantes", TallaColor, "EXTRA2", "", 3);
        caso("no existe", TallaColor, "NADA", "", 4);
    }
    void codigoConEnter() {
        const auto [tipoNegocio, texto, variante, filasALaVista] =
            Pruebas::Fila<QString, QString, QString, int>();
        TiendaPrueba t(tipoNegocio);
        t.Talla(1, "M");
        t.Color(1, "Rojo");
        t.Producto(40000, "BIG", "Grande", 4.5);
        if (!tipoNegocio.isEmpty()) {
            t.Producto(2, "P2", "Camisa", 20);
            t.Ejecutar("insert into productostextil values (2, 'H1', 1, 1, null, null), "
                       "(2, 'H2', 1, 1, 'V-ROJA', 22), (2, 'H3', 1, 1, null, null)");
            t.Ejecutar("insert into productos_codigosextra values (2, 'EXTRA2')");
        }
        t.Lista(1, "General");
        FrmTarifas &e = t.Abierto();
        Grid &g = tipoNegocio.isEmpty() ? *e.grid_productos : *e.grid_productos_textil;
        e.ct_buscar_c->SetFocus();
        Teclear(e.ct_buscar_c, texto);
        QCOMPARE(e.frCambio->Visible(), !variante.isEmpty());
        QCOMPARE(g.vista()->model()->rowCount(), filasALaVista);
        if (!variante.isEmpty()) {
            // The panel opens on it, and the box empties.
            QCOMPARE(e.lblCodProdTextil->Caption(), variante);
            QCOMPARE(e.ct_buscar_c->Text(), QString());
            Teclear(e.txt_NuevoPrecio, "9");
            QCOMPARE(t.Valor("select producto from detalle_precio").toInt(),
                     variante == "H2" ? 2 : 40000);
        } else if (filasALaVista < 4) {
            // Not found: the text stays, selected for typing over. Or only the product's
            // variants show, until the box is emptied.
            if (tipoNegocio.isEmpty())
                QCOMPARE(e.ct_buscar_c->SelLength(), texto.size());
            for (int f = 1; f < g.Rows(); ++f)
                QCOMPARE(g.RowHeight(f) > 0,
                         tipoNegocio.isEmpty() || g.TextMatrix(f, ColTallaColor::Codigo) == "2");
            e.ct_buscar_c->setText(QString());
            QCOMPARE(g.vista()->model()->rowCount(), tipoNegocio.isEmpty() ? 1 : 4);
        }
        if (!variante.isEmpty() && !tipoNegocio.isEmpty())
            QCOMPARE(t.Valor("select codproductotextil from detalle_precio").toString(), variante);
        QCOMPARE(Filas(t), variante.isEmpty() ? 0 : 1);
    }
};

TARIFAS_PRUEBAS(TstEditorPrecio)
#include "tst_editorprecio.moc"
