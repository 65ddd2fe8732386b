// The editor's context menu on the list's prices, and taking a product out of the list with
// it or with the Supr key: the question, the database and the grid after Yes and after No. The
// shortcuts both menus show, named as a Spanish keyboard's keys with Qt's translation loaded.
#include "apoyo/ejecucion.h"
#include "apoyo/respuestas.h"
#include "apoyo/tiendaprueba.h"
#include "dialogos/menus.h"
#include "editor/columnas.h"
#include "platform/ui/traduccionqt.h"

using namespace Pantalla;

namespace {

const QString Quitar = QStringLiteral("Quitar de la tarifa");

/// List 1 "General" with the prices of a shirt and trousers; list 2 prices the shirt too, and
/// list 3 has no price. In the size-and-colour shop the shirt is priced in two variants and
/// the trousers, without variants, once.
void Tienda(TiendaPrueba &t, bool textil) {
    t.Lista(1, QStringLiteral("General"));
    t.Lista(2, QStringLiteral("Otra"));
    t.Lista(3, QStringLiteral("Vacía"));
    t.Producto(1, "C1", "Camisa", 20);
    t.Producto(2, "P2", "Pantalón", 30);
    if (!textil) {
        t.Precio(1, 1, 18);
        t.Precio(1, 2, 27);
    } else {
        t.Talla(1, QStringLiteral("M"));
        t.Talla(2, QStringLiteral("L"));
        t.Color(1, QStringLiteral("Azul"));
        t.Variante(1, "11", 1, 1);
        t.Variante(1, "12", 2, 1);
        t.Precio(1, 1, 18, "11");
        t.Precio(1, 1, 19, "12");
        t.Precio(1, 2, 27, "-1");
    }
    t.Precio(2, 1, 17, textil ? QVariant("11") : QVariant());
}

/// The list's rows as "product/variant=price", sorted.
QStringList Precios(TiendaPrueba &t, int lista) {
    QStringList filas;
    QSqlQuery q(t.db().Conexion().Base());
    q.prepare("select producto, codproductotextil, precio from detalle_precio where "
              "identificador = ?");
    q.addBindValue(lista);
    if (!q.exec())
        qWarning("Could not read the prices");
    while (q.next())
        filas << q.value(0).toString() + '/' + q.value(1).toString() + '=' +
                     QString::number(q.value(2).toDouble());
    filas.sort();
    return filas;
}

/// The names (with size) the grid of the list's prices shows, in its order.
QStringList Mostrados(FrmTarifas &e, bool textil) {
    QStringList nombres;
    const Grid &g = *e.grid_Pseleccionados;
    for (int f = 1; f < g.Rows(); ++f)
        nombres << g.TextMatrix(f, ColLlano::Nombre) +
                       (textil ? ' ' + g.TextMatrix(f, ColTallaColor::Talla) : QString());
    return nombres;
}

} // namespace

class TstMenuSeleccionados : public QObject {
    Q_OBJECT
  private slots:
    // The program runs with Qt's Spanish translation, which names keys in words of its own.
    void initTestCase() { QVERIFY(CargarTraduccionQt()); }

    void atajos_data() {
        // each item of the menu with the shortcut it shows, in order: all different
        const auto caso = Pruebas::Tabla<bool, QStringList>();
        caso("editor", true,
             {"Cambiar precios… Ctrl+M", "Quitar de la tarifa Supr", "Historial de precios… Ctrl+H",
              "Exportar… Ctrl+E", "Importar… Ctrl+I", "Imprimir… Ctrl+P"});
        caso("register", false,
             {"Copiar tarifa… Ctrl+D", "Cambiar precios… Ctrl+M", "Historial de precios… Ctrl+H",
              "Exportar… Ctrl+E", "Importar… Ctrl+I", "Imprimir… Ctrl+P"});
    }
    void atajos() {
        const auto [editor, items] = Pruebas::Fila<bool, QStringList>();
        TiendaPrueba t;
        Tienda(t, false);
        Grid &grid = editor ? *t.Abierto(1).grid_Pseleccionados : *t.Registro().grid_precios;
        QMenu *menu = ClicDerecho(grid, editor ? 1 : FilaRegistro(1));
        QVERIFY(menu);
        QStringList mostrados;
        for (QAction *a : menu->actions())
            mostrados << a->text() + ' ' + AtajoMostrado(menu, a->text());
        QCOMPARE(mostrados, items);
        CerrarMenus();
    }

    void porFila_data() {
        const auto caso = Pruebas::Tabla<int, int, bool>();
        caso("a price", 1, 2, true);
        caso("the title row", 1, 0, false);
        caso("below the last row", 1, -1, false);
        caso("the empty row of a list without prices", 3, 1, false);
    }
    void porFila() {
        const auto [lista, fila, habilitado] = Pruebas::Fila<int, int, bool>();
        TiendaPrueba t;
        Tienda(t, false);
        FrmTarifas &e = t.Abierto(lista);
        e.grid_Pseleccionados->setRow(1);
        QMenu *menu = ClicDerecho(*e.grid_Pseleccionados, fila);
        QVERIFY(menu);
        QAction *quitar = Item(menu, Quitar);
        QVERIFY(quitar);
        QCOMPARE(quitar->isEnabled(), habilitado);
        // A right click on a price makes it the current row; elsewhere the row stays.
        QCOMPARE(e.grid_Pseleccionados->Row(), fila > 0 ? fila : 1);
        CerrarMenus();
    }

    void quitar_data() {
        const auto caso =
            Pruebas::Tabla<bool, QString, bool, bool, QString, QStringList, QStringList>();
        caso("plain, Supr, Yes", false, "Pantalón", true, true,
             "¿Quitar «Pantalón» de la tarifa «General»?", {"1/=18"}, {"Camisa"});
        caso("plain, menu, Yes", false, "Camisa", false, true,
             "¿Quitar «Camisa» de la tarifa «General»?", {"2/=27"}, {"Pantalón"});
        caso("plain, Supr, No", false, "Camisa", true, false,
             "¿Quitar «Camisa» de la tarifa «General»?", {"1/=18", "2/=27"},
             {"Camisa", "Pantalón"});
        caso("size and colour, one variant of two", true, "Camisa L", true, true,
             "¿Quitar «Camisa» (talla L, color Azul) de la tarifa «General»?",
             {"1/11=18", "2/-1=27"}, {"Camisa M", "Pantalón "});
        caso("size and colour, a product without variants", true, "Pantalón ", false, true,
             "¿Quitar «Pantalón» de la tarifa «General»?", {"1/11=18", "1/12=19"},
             {"Camisa M", "Camisa L"});
        caso("size and colour, No", true, "Camisa M", false, false,
             "¿Quitar «Camisa» (talla M, color Azul) de la tarifa «General»?",
             {"1/11=18", "1/12=19", "2/-1=27"}, {"Camisa M", "Camisa L", "Pantalón "});
    }
    void quitar() {
        const auto [textil, quien, conTecla, si, pregunta, quedan, enGrid] =
            Pruebas::Fila<bool, QString, bool, bool, QString, QStringList, QStringList>();
        TiendaPrueba t(textil ? TallaColor : QString());
        Tienda(t, textil);
        FrmTarifas &e = t.Abierto(1);
        e.Label5->setCaption(QStringLiteral("General"));
        const int fila = int(Mostrados(e, textil).indexOf(quien)) + 1;
        QVERIFY(fila > 0);
        QTableView *v = e.grid_Pseleccionados->vista();
        RespuestasMensajes respuestas;
        respuestas.Responder(si);
        if (conTecla) {
            e.grid_Pseleccionados->setRow(fila);
            v->setFocus();
            QTest::keyClick(v, Qt::Key_Delete);
        } else {
            QVERIFY(Elegir(ClicDerecho(*e.grid_Pseleccionados, fila), Quitar));
        }
        QCOMPARE(respuestas.Mostrados().join("\n#"), pregunta);
        QCOMPARE(respuestas.Titulos(), QStringList{Quitar});
        QCOMPARE(Precios(t, 1), quedan);
        // The size-and-colour listing comes in the database's order.
        QStringList mostrados = Mostrados(e, textil), esperados = enGrid;
        mostrados.sort();
        esperados.sort();
        QCOMPARE(mostrados, esperados);
        // The other list and the catalogue are untouched.
        QCOMPARE(Precios(t, 2),
                 QStringList{textil ? QStringLiteral("1/11=17") : QStringLiteral("1/=17")});
        QCOMPARE(t.Valor("select count(*) from productos where borrar = 0").toInt(), 2);
    }

    void ultimoPrecio() {
        // The last price taken out leaves the design rows: the titles and one empty row, on
        // which the menu can't take anything out.
        TiendaPrueba t;
        t.Lista(1, QStringLiteral("General"));
        t.Producto(1, "C1", "Camisa", 20);
        t.Precio(1, 1, 18);
        FrmTarifas &e = t.Abierto(1);
        RespuestasMensajes respuestas;
        e.grid_Pseleccionados->vista()->setFocus();
        QTest::keyClick(e.grid_Pseleccionados->vista(), Qt::Key_Delete);
        QCOMPARE(Precios(t, 1), QStringList());
        QCOMPARE(e.grid_Pseleccionados->Rows(), 2);
        QCOMPARE(e.grid_Pseleccionados->TextMatrix(1, ColLlano::Nombre), QString());
        // The list's own items stay: a change from the catalogue or an import can fill it again.
        QCOMPARE(Habilitados(ClicDerecho(*e.grid_Pseleccionados, 1)),
                 QStringList({"Cambiar precios…", "Historial de precios…", "Exportar…", "Importar…",
                              "Imprimir…"}));
        CerrarMenus();
        // Supr on it asks nothing.
        QTest::keyClick(e.grid_Pseleccionados->vista(), Qt::Key_Delete);
        QCOMPARE(respuestas.Mostrados().size(), 1);
    }

    void listaBorrada() {
        // Another terminal deleted the list after the editor opened: nothing is written, the
        // operator is told after the unit has ended, and the editor closes.
        TiendaPrueba t;
        Tienda(t, false);
        FrmTarifas &e = t.Abierto(1);
        e.Label5->setCaption(QStringLiteral("General"));
        t.Ejecutar("delete from cabecera_precio where identificador = 1");
        const QStringList antes = t.Volcado();
        RespuestasMensajes respuestas;
        e.grid_Pseleccionados->vista()->setFocus();
        QTest::keyClick(e.grid_Pseleccionados->vista(), Qt::Key_Delete);
        QCOMPARE(t.Volcado(), antes);
        QCOMPARE(respuestas.Mostrados().size(), 2);
        QVERIFY(respuestas.Mostrados().at(1).contains("ya no existe"));
        QVERIFY(!e.Loaded());
    }
};

TARIFAS_PRUEBAS(TstMenuSeleccionados)
#include "tst_menuseleccionados.moc"
