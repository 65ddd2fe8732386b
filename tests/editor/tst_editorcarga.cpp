// The editor's load: the business mode, the way out and the register's refresh, a list code
// that no list can bear; and its listings: the catalogue of either mode (a row per live product
// by name, or per variant and per product without variants) and the prices the open list holds,
// with the size and colour of each stored variant.
#include "apoyo/ejecucion.h"
#include "apoyo/tiendaprueba.h"
#include "editor/columnas.h"

using namespace Pantalla;

namespace {

/// Each data row of `g`, its cells joined by "|".
QStringList Filas(const Grid &g) {
    QStringList filas;
    for (int f = 1; f < g.Rows(); ++f)
        filas << Fila(g, f).join('|');
    return filas;
}

/// A catalogue whose every product and variant tells what it tests; `soloBorrados`: only the
/// deleted ones, with a price in the open list that brings none of them back.
void Catalogo(TiendaPrueba &t, bool soloBorrados) {
    t.Ejecutar("insert into tallas values (1, 'M'), (2, 'XL')");
    t.Ejecutar("insert into colorestextil values (1, 'Rojo'), (2, 'Azul marino')");
    t.Ejecutar("insert into productos values (3, 'P3', 'Borrado', 9, 'S3', 1), "
               "(4, 'P4', 'Gorro borrado', 7, 'S4', -1)");
    t.Variante(3, "B1", 1, 1, "V-B1", 8);
    t.Lista(1, "General");
    t.Precio(1, 3, 4);
    if (soloBorrados)
        return;
    t.Ejecutar("insert into productos values (1, 'P1', 'Calcetin', 4.5, 'S1', 0), "
               "(2, 'P2', 'Camisa', 20, 'S2', 0), (5, null, null, null, null, 0), "
               "(6, ' 07 ', 'Zapato ''Oxford'' ', 1.125, ' x', 0)");
    // A variant's own code and price, or Null (a server's numeric column holds no empty text);
    // a size or colour without its row.
    t.Ejecutar("insert into productostextil values (2, 'PROPIO', 1, 1, 'V-PROPIO', 25.75), "
               "(2, 'NULOS', 2, 2, null, null), (2, 'VACIOS', 1, 2, '', null), "
               "(2, 'CERO', 2, 1, null, 0), (2, 'SINTALLA', 99, 1, null, null), "
               "(2, 'SINCOLOR', 1, 99, null, null), (2, 'O''NEIL', null, null, null, null)");
}

/// List 1 holds prices of every kind, each unique; list 2 one that must never show in list 1.
void TiendaConLista(TiendaPrueba &t) {
    t.Ejecutar("insert into tallas values (1, 'M'), (2, 'L')");
    t.Ejecutar("insert into colorestextil values (1, 'Rojo'), (2, 'Azul')");
    t.Ejecutar("insert into productos values (1, 'Z1', 'Zeta', 50, 'S', 0), "
               "(2, 'A2', 'Alfa', 20, 'S', 0), (3, 'B3', 'Borrado', 9, 'S', 1), "
               "(4, 'P4', 'Gorro', 5, 'S', 0), (5, null, null, null, null, 0)");
    // 1X's size and 1C's colour are gone: those variants are not found.
    t.Ejecutar("insert into productostextil (codigopadre, codigohijo, talla, color, codcliente) "
               "values (1, '1M', 1, 1, 'Z1M'), (1, '1L', 2, 2, null), (1, '1X', 99, 1, 'Z1X'), "
               "(1, '1C', 1, 77, null), (1, 'O''1', 1, 2, 'Z1O'), (3, '3M', 1, 1, null), "
               "(4, '', 2, 1, 'V4')");
    t.Lista(1, "General");
    t.Lista(2, "Otra");
    // 1G was deleted after it was priced, and so was product 3; 22.5 was stored in the plain
    // mode.
    t.Ejecutar("insert into detalle_precio values (1, 1, 55, '1M'), (1, 1, 56, '1L'), "
               "(1, 1, 57, '1X'), (1, 1, 58, '1G'), (1, 1, 59, 'O''1'), (1, 2, 21, '-1'), "
               "(1, 2, 22.5, null), (1, 3, 9.5, '3M'), (1, 5, null, '-1'), (2, 2, 99, null)");
}

} // namespace

class TstEditorCarga : public QObject {
    Q_OBJECT

  private slots:
    void modo_data() {
        const auto caso = Pruebas::Tabla<QString, bool>();
        caso("TALLACOLOR", TallaColor, true);
        caso("minusculas", QStringLiteral("tallacolor"), false);
        caso("blanco detras", QStringLiteral("TALLACOLOR "), false);
        caso("vacio", QString(), false);
    }
    void modo() {
        const auto [tipoNegocio, tallaColor] = Pruebas::Fila<QString, bool>();
        TiendaPrueba tienda(tipoNegocio);
        tienda.Producto(1, "C1", "Camisa", 12.5);
        tienda.Lista(1, "General");
        tienda.Precio(1, 1, 11, tallaColor ? QVariant("-1") : QVariant());
        FrmTarifas &e = tienda.CargarEditor(1);
        // The mode's catalogue is filled and shown; the other one stays empty.
        QCOMPARE(e.frResultado->Visible(), tallaColor);
        const QString camisa = "Camisa";
        QCOMPARE(e.grid_productos_textil->TextMatrix(1, ColTallaColor::Nombre),
                 tallaColor ? camisa : QString());
        QCOMPARE(e.grid_productos->TextMatrix(1, ColLlano::Nombre),
                 tallaColor ? QString() : camisa);
        QCOMPARE(Filas(*e.grid_Pseleccionados),
                 QStringList{tallaColor ? QStringLiteral("C1|Camisa|1|-1|||11|")
                                        : QStringLiteral("C1|Camisa|1|11|")});
    }

    void refrescoRegistro_data() {
        QTest::addColumn<bool>("aspa");
        QTest::newRow("cmdSalir") << false;
        QTest::newRow("aspa") << true;
    }
    void refrescoRegistro() {
        // Whatever changed while the editor was open shows in the register once it closes.
        QFETCH(bool, aspa);
        TiendaPrueba tienda;
        tienda.Lista(1, "General");
        tienda.Lista(2, "Borrada");
        const auto cambios = [&](FrmTarifas &) {
            tienda.Ejecutar("update cabecera_precio set descripcion = 'Verano'");
            tienda.Ejecutar("delete from cabecera_precio where identificador = 2");
        };
        QVERIFY(tienda.AbrirEditor(1, cambios, aspa ? Salida::CierreVentana : Salida::cmdSalir));
        QVERIFY(!frmTarifas().Loaded());
        QCOMPARE(Filas(*frmListas().grid_precios), QStringList{"Verano|1/1/2026|31/12/2026|1"});
        QCOMPARE(frmListas().lblCodigo->Caption(), QStringLiteral("1"));
    }

    void codigoInservible_data() {
        QTest::addColumn<QString>("codigo");
        QTest::newRow("texto de diseno") << QStringLiteral("lblCodigo");
        QTest::newRow("codigo con condicion") << QStringLiteral("1 or 1=1");
        QTest::newRow("codigo con sentencia") << QStringLiteral("1; delete from detalle_precio");
        QTest::newRow("decimal") << QStringLiteral("1.5");
    }
    void codigoInservible() {
        // A code that no list can bear runs no statement: the editor opens with the
        // catalogue and an empty list (its design rows), and the database is as it was.
        QFETCH(QString, codigo);
        TiendaPrueba tienda;
        tienda.Producto(1, "C1", "Camisa", 12.5);
        tienda.Lista(1, "General");
        tienda.Precio(1, 1, 10);
        frmListas().Load();
        frmListas().lblCodigo->setCaption(codigo);
        FrmTarifas &e = frmTarifas();
        e.Load();
        QCOMPARE(e.grid_productos->TextMatrix(1, ColLlano::Nombre), QStringLiteral("Camisa"));
        QCOMPARE(Filas(*e.grid_Pseleccionados), QStringList{"||||"});
        QCOMPARE(tienda.Valor("select count(*) from detalle_precio").toInt(), 1);
    }

    void catalogo_data() {
        const auto caso = Pruebas::Tabla<QString, bool, QStringList>();
        caso("llano, por nombre", QString(), false,
             QStringList{"||5||", "P1|Calcetin|1|4,5|S1", "P2|Camisa|2|20|S2",
                         " 07 |Zapato 'Oxford' |6|1,125| x"});
        caso("llano, solo borrados", QString(), true, QStringList{"||||"});
        // Without an order asked for: compared sorted.
        caso("textil", TallaColor, false,
             QStringList{"P1|Calcetin|1|-1|||4,5|S1", "V-PROPIO|Camisa|2|PROPIO|M|Rojo|25,75|S2",
                         "P2|Camisa|2|NULOS|XL|Azul marino|20|S2",
                         "P2|Camisa|2|VACIOS|M|Azul marino|20|S2", "P2|Camisa|2|CERO|XL|Rojo|0|S2",
                         "P2|Camisa|2|SINTALLA||Rojo|20|S2", "P2|Camisa|2|SINCOLOR|M||20|S2",
                         "P2|Camisa|2|O'NEIL|||20|S2", "||5|-1||||",
                         " 07 |Zapato 'Oxford' |6|-1|||1,125| x"});
        caso("textil, solo borrados", TallaColor, true, QStringList{"|||||||"});
    }
    void catalogo() {
        auto [tipoNegocio, soloBorrados, filas] = Pruebas::Fila<QString, bool, QStringList>();
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
        // extra: run on the shop before the load; precio: names the row
        const auto fila = Pruebas::Tabla<QString, QString, QString, QString>();
        const auto caso = [&](const char *nombre, const QString &modo, const QString &precio,
                              const QString &vista, const QString &extra = {}) {
            fila(nombre, modo, extra, precio, vista);
        };
        caso("textil, con codigo propio", TallaColor, "55", "Z1M|Zeta|1|1M|M|Rojo|55|");
        caso("textil, sin codigo propio", TallaColor, "56", "Z1|Zeta|1|1L|L|Azul|56|");
        caso("textil, talla desaparecida", TallaColor, "57", "Z1|Zeta|1|1X|||57|");
        caso("textil, variante borrada", TallaColor, "58", "Z1|Zeta|1|1G|||58|");
        caso("textil, apostrofo", TallaColor, "59", "Z1O|Zeta|1|O'1|M|Azul|59|");
        caso("textil, sin variantes (-1)", TallaColor, "21", "A2|Alfa|2|-1|||21|");
        caso("textil, guardada en modo llano", TallaColor, "22,5", "A2|Alfa|2||||22,5|");
        caso("textil, producto borrado: sigue", TallaColor, "9,5", "B3|Borrado|3|3M|M|Rojo|9,5|");
        caso("textil, campos nulos", TallaColor, "", "||5|-1||||");
        // A variant record without a code is no variant of a row saved without one.
        caso("textil, variante de codigo nulo", TallaColor, "22,5", "A2|Alfa|2||||22,5|",
             "insert into productostextil values (2, null, 1, 1, 'N2', null)");
        // A parent code stored as 2.5 belongs to no product, not to product 2.
        caso("textil, padre fraccionario (SQLite)", TallaColor, "21", "A2|Alfa|2|-1|||21|",
             "insert into productostextil values (2.5, '-1', 1, 1, 'F2', null);"
             "insert into detalle_precio values (1, 2.5, 1, '-1')");
        caso("llano, sin variantes", QString(), "21", "A2|Alfa|2|21|");
        caso("llano, fila de una variante", QString(), "59", "Z1|Zeta|1|59|");
        caso("llano, campos nulos", QString(), "", "||5||");
    }
    void seleccionados() {
        const auto [tipoNegocio, extra, precio, fila] =
            Pruebas::Fila<QString, QString, QString, QString>();
        if (QByteArray(QTest::currentDataTag()).contains("SQLite"))
            SOLO_SQLITE("a server's whole-number column holds no fraction");
        const bool textil = !tipoNegocio.isEmpty();
        TiendaPrueba tienda(tipoNegocio);
        TiendaConLista(tienda);
        for (const QString &sql : extra.split(';', Qt::SkipEmptyParts))
            tienda.Ejecutar(sql);
        const Grid &g = *tienda.CargarEditor(1).grid_Pseleccionados;
        // Every price of the list, and only of it; the plain mode leaves the deleted product
        // out and sorts by name.
        QCOMPARE(g.Rows(), textil ? 10 : 9);
        if (!textil)
            QCOMPARE(g.TextMatrix(1, ColLlano::Nombre) + g.TextMatrix(2, ColLlano::Nombre) +
                         g.TextMatrix(3, ColLlano::Nombre) + g.TextMatrix(4, ColLlano::Nombre) +
                         g.TextMatrix(8, ColLlano::Nombre),
                     QStringLiteral("AlfaAlfaZetaZeta"));
        const QList<int> filas =
            FilasCon(g, textil ? int(ColTallaColor::Precio) : int(ColLlano::Precio), precio);
        QCOMPARE(filas.size(), 1);
        QCOMPARE(Fila(g, filas.first()).join('|'), fila);
    }
};

TARIFAS_PRUEBAS(TstEditorCarga)
#include "tst_editorcarga.moc"
