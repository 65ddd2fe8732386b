// The grid control: texts by (row, column), rows hidden by their height, the current row
// under the mouse and the keys. Driven through the real view, offscreen.
#include "apoyo/ejecucion.h"
#include "platform/ui/grid.h"
#include "platform/ui/modelogrid.h"
#include "platform/ui/twips.h"

#include <QHeaderView>
#include <QTableView>

#include <functional>

using namespace Pantalla;

namespace {

/// The names of data rows 1..8 of the test grids, as a catalogue lists them.
const QStringList Catalogo = {
    "CAMISA AZUL", "Camiseta", "calcetin", "Pantalon", "", "Ca", "Blusa camisa", "camisa roja",
};

/// A grid of its own window, `datos` data rows: column 0 "f<row>", column 1 a name of the
/// catalogue (repeated), column 2 empty, column 3 "c<row>". Whatever a test does to it, its
/// model must keep the rules of Qt's models.
struct Banco {
    Grid grid;
    QAbstractItemModelTester tester{grid.modelo(),
                                    QAbstractItemModelTester::FailureReportingMode::QtTest};
    explicit Banco(int datos)
        : grid(QStringLiteral("grid_prueba"), nullptr, nullptr, {.rows = 2, .cols = 4}) {
        grid.setRows(datos + 1);
        for (int c = 0; c < grid.Cols(); ++c)
            grid.setTextMatrix(0, c, QStringLiteral("T%1").arg(c));
        for (int f = 1; f <= datos; ++f) {
            grid.setTextMatrix(f, 0, QStringLiteral("f%1").arg(f));
            grid.setTextMatrix(f, 1, Catalogo[(f - 1) % Catalogo.size()]);
            grid.setTextMatrix(f, 3, QStringLiteral("c%1").arg(f));
        }
        grid.Move(0, 0, 6000, 4000);
    }
    QTableView *vista() { return grid.vista(); }
    bool mostrar() {
        vista()->show();
        vista()->activateWindow();
        return QTest::qWaitForWindowActive(vista());
    }
    /// The grid row that view row `r` shows, read from its text.
    int filaDe(int r) { return vista()->model()->index(r, 0).data().toString().mid(1).toInt(); }
    /// The grid rows the view shows, in order.
    QList<int> filasALaVista() {
        QList<int> filas;
        for (int r = 0; r < vista()->model()->rowCount(); ++r)
            filas << filaDe(r);
        return filas;
    }
    /// The view's row that shows grid row `fila`; -1 if not shown.
    int filaDeVista(int fila) { return int(filasALaVista().indexOf(fila)); }
    /// The grid rows selected in the view; a row selected only in part adds a -1.
    QList<int> marcadas() {
        QList<int> filas;
        const QModelIndexList celdas = vista()->selectionModel()->selectedIndexes();
        for (const QModelIndex &i : celdas)
            if (!filas.contains(filaDe(i.row())))
                filas << filaDe(i.row());
        if (celdas.size() != filas.size() * grid.Cols())
            filas << -1;
        return filas;
    }
};

/// The selection that current row `fila` shows: that row alone, or nothing.
QList<int> solo(int fila) {
    return fila > 0 ? QList<int>{fila} : QList<int>{};
}

/// The name search as the editor runs it: a prefix of the name, case ignored; a matching
/// hidden row comes back at the title row's height, the others are hidden. An empty text
/// shows every row again.
void filtrar(Grid &g, const QString &valor = {}) {
    for (int f = 1; f < g.Rows(); ++f) {
        if (g.TextMatrix(f, 1).left(valor.size()).toUpper() == valor.toUpper()) {
            if (g.RowHeight(f) == 0)
                g.setRowHeight(f, g.RowHeight(0));
        } else {
            g.setRowHeight(f, 0);
        }
    }
}

void ocultar(Grid &g, const QList<int> &filas) {
    for (int f : filas)
        g.setRowHeight(f, 0);
}

QList<int> rango(int desde, int hasta) {
    QList<int> l;
    for (int f = desde; f <= hasta; ++f)
        l << f;
    return l;
}

using Operacion = std::function<void(Grid &)>;
using Accion = std::function<void(Banco &)>;

enum Gesto { Clic, ClicDerecho, DobleClic, ClicYDoble };
enum Donde { EnFila, EnTitulo, Debajo };

/// The operator's mouse on a data row, on the title row, or below the last row.
Accion raton(Gesto gesto, Donde donde, int fila = 0) {
    return [=](Banco &b) {
        QTableView *v = b.vista();
        QHeaderView *hh = v->horizontalHeader();
        QWidget *destino = donde == EnTitulo ? hh->viewport() : v->viewport();
        QPoint p(10, v->viewport()->height() - 3);
        if (donde == EnFila)
            p = v->visualRect(v->model()->index(b.filaDeVista(fila), 0)).center();
        else if (donde == EnTitulo)
            p = QPoint(hh->sectionViewportPosition(0) + 5, hh->height() / 2);
        const Qt::MouseButton boton = gesto == ClicDerecho ? Qt::RightButton : Qt::LeftButton;
        if (gesto != DobleClic)
            QTest::mouseClick(destino, boton, {}, p);
        if (gesto == DobleClic || gesto == ClicYDoble)
            QTest::mouseDClick(destino, Qt::LeftButton, {}, p);
    };
}

Accion tecla(Qt::Key k, int veces = 1) {
    return [=](Banco &b) {
        for (int i = 0; i < veces; ++i)
            QTest::keyClick(b.vista(), k);
    };
}

} // namespace

Q_DECLARE_METATYPE(Operacion)
Q_DECLARE_METATYPE(Accion)

class TstGrid : public QObject {
    Q_OBJECT
  private slots:
    // Rows grown and shrunk: texts kept, new rows empty and shown, the current row kept
    // within; a fill from the title row alone starts at the first data row.
    void filas_data() {
        const auto caso = Pruebas::Tabla<int, int, int, int>();
        caso("crece", 4, 10, 2, 2);
        caso("encoge bajo la actual", 10, 4, 8, 3);
        caso("solo títulos", 6, 1, 5, 0);
        caso("de títulos a muchas", 1, 1001, 0, 1);
    }
    void filas() {
        const auto [antes, despues, filaActual, filaEsperada] = Pruebas::Fila<int, int, int, int>();
        Banco b(antes - 1);
        b.grid.setRow(filaActual);
        b.grid.setRows(despues);
        QCOMPARE(b.grid.Row(), filaEsperada);
        QCOMPARE(b.grid.TextMatrix(0, 1), QStringLiteral("T1"));
        for (int f = 1; f < despues; ++f) {
            QCOMPARE(b.grid.TextMatrix(f, 0), f < antes ? QStringLiteral("f%1").arg(f) : QString());
            QVERIFY(b.grid.RowHeight(f) > 0);
        }
        QCoreApplication::processEvents();
        QCOMPARE(b.vista()->model()->rowCount(), despues - 1);
    }

    // Rows hidden by their height, as the name search does: RowHeight answers at once, the
    // view shows the rest in order, and the current row stays the same grid row.
    void alturas_data() {
        // What is done, the rows left in view, and the row 600 twips tall (0: none).
        const auto caso = Pruebas::Tabla<Operacion, QList<int>, int>();
        constexpr double Titulo = -2; // stands for the title row's height
        // Names: 1 "CAMISA AZUL", 2 "Camiseta", 3 "calcetin", 4 "Pantalon", 5 "", 6 "Ca",
        // 7 "Blusa camisa", 8 "camisa roja".
        const auto buscar = [](const QStringList &textos, int propia = 0) {
            return Operacion([=](Grid &g) {
                if (propia)
                    g.setRowHeight(propia, 600);
                for (const QString &t : textos)
                    g.Refresh(), filtrar(g, t);
            });
        };
        const auto alturas = [](const QList<double> &lista) {
            return Operacion([=](Grid &g) {
                for (double a : lista)
                    g.setRowHeight(3, a == Titulo ? g.RowHeight(0) : a);
            });
        };
        caso("unas ocultas", buscar({"cam"}), {1, 2, 8}, 0);
        caso("todas ocultas", buscar({"zapato"}), {}, 0);
        caso("borrar una letra trae filas", buscar({"camis", "ca"}), {1, 2, 3, 6, 8}, 0);
        caso("vaciar la caja muestra todo", buscar({"pan", ""}), rango(1, 8), 0);
        caso("propia bajo la búsqueda", buscar({"camisa"}, 8), {1, 8}, 8);
        caso("propia, oculta por la búsqueda", buscar({"pan", ""}, 8), rango(1, 8), 0);
        caso("negativa vuelve a la de omisión", alturas({600, -1}), rango(1, 8), 0);
        caso("oculta y luego con altura propia", alturas({0, 600}), rango(1, 8), 3);
        caso("propia, oculta, restaurada", alturas({600, 0, Titulo}), rango(1, 8), 0);
    }
    void alturas() {
        const auto [operacion, aLaVista, conAlturaPropia] =
            Pruebas::Fila<Operacion, QList<int>, int>();
        Banco b(8);
        QVERIFY(b.mostrar());
        const double titulo = b.grid.RowHeight(0);
        b.grid.setRow(3);
        operacion(b.grid);
        for (int f = 1; f <= 8; ++f)
            QCOMPARE(b.grid.RowHeight(f), f == conAlturaPropia   ? 600
                                          : aLaVista.contains(f) ? titulo
                                                                 : 0.0);
        QCoreApplication::processEvents();
        QCOMPARE(b.filasALaVista(), aLaVista);
        for (int r = 0; r < aLaVista.size(); ++r)
            QCOMPARE(b.vista()->rowHeight(r), APixeles(b.grid.RowHeight(aLaVista[r])));
        QCOMPARE(b.grid.Row(), 3);
        QCOMPARE(b.marcadas(), solo(aLaVista.contains(3) ? 3 : 0));
    }

    // The current row under the mouse and the keys, with the events the handlers see.
    void filaActual_data() {
        // Rows hidden, current row before, what the operator does, current row after, Click and
        // DblClick events raised, MouseRow.
        const auto caso = Pruebas::Tabla<QList<int>, int, Accion, int, int, int, int>();
        caso("clic en otra", {}, 1, raton(Clic, EnFila, 4), 4, 1, 0, 4);
        caso("clic tras ocultas", {1, 2, 3}, 0, raton(Clic, EnFila, 4), 4, 1, 0, 4);
        caso("clic en el título", {}, 3, raton(Clic, EnTitulo), 3, 1, 0, 0);
        // Below the rows the grid is clicked all the same, and no row is chosen.
        caso("clic sin filas a la vista", rango(1, 5), 1, raton(Clic, Debajo), 1, 1, 0, -1);
        caso("botón derecho", {}, 2, raton(ClicDerecho, EnFila, 4), 2, 0, 0, -1);
        caso("clic y doble", {}, 0, raton(ClicYDoble, EnFila, 2), 2, 1, 1, 2);
        caso("doble en el título", {}, 3, raton(DobleClic, EnTitulo), 3, 0, 1, 0);
        // Keys move over the shown rows and raise nothing.
        caso("abajo salta ocultas", {2, 3}, 1, tecla(Qt::Key_Down), 4, 0, 0, -1);
        caso("arriba salta ocultas", {2, 3}, 4, tecla(Qt::Key_Up), 1, 0, 0, -1);
        caso("abajo en la última", {}, 5, tecla(Qt::Key_Down, 2), 5, 0, 0, -1);
        caso("sin fila, abajo elige la primera", {}, 0, tecla(Qt::Key_Down), 1, 0, 0, -1);
    }
    void filaActual() {
        const auto [ocultas, filaAntes, accion, filaEsperada, clics, dobles, filaRaton] =
            Pruebas::Fila<QList<int>, int, Accion, int, int, int, int>();
        Banco b(5);
        QVERIFY(b.mostrar());
        QCOMPARE(b.grid.Row(), 1); // filled: the first data row
        ocultar(b.grid, ocultas);
        b.grid.setRow(filaAntes);
        b.vista()->setFocus(Qt::TabFocusReason);
        QTRY_VERIFY(b.vista()->hasFocus());
        QCOMPARE(b.grid.Row(), filaAntes); // the focus alone chooses no row
        // The handlers read Row: it has moved before they run.
        QList<int> filaEnEvento;
        connect(&b.grid, &Grid::Click, this, [&] { filaEnEvento << b.grid.Row(); });
        connect(&b.grid, &Grid::DblClick, this, [&] { filaEnEvento << -b.grid.Row(); });
        accion(b);
        QCOMPARE(b.grid.Row(), filaEsperada);
        QCOMPARE(filaEnEvento, QList<int>(clics, filaEsperada) + QList<int>(dobles, -filaEsperada));
        QCOMPARE(b.grid.MouseRow(), filaRaton);
        QCOMPARE(b.marcadas(), solo(ocultas.contains(filaEsperada) ? 0 : filaEsperada));
    }

    // The name filter through the names kept sorted beside the grid: exactly the rows whose
    // name starts with the text, case ignored in any alphabet, whatever order they are in;
    // after a name changes, the new name counts. `antes` runs first (a change, an earlier
    // filter, rows hidden by height), then the filter with `prefijo`.
    void empiezan_data() {
        const auto caso = Pruebas::Tabla<QStringList, Operacion, QString, QList<int>>();
        const QStringList revueltos = {"pan", "CAMISA",    "Ñandú",    "camión",
                                       "ñu",  "",          "Camisa",   "nube",
                                       "Cam", "abcdefgh2", "ABCDEFGH", "abcdefg"};
        const Operacion nada = [](Grid &) {};
        caso("mayúsculas y minúsculas", revueltos, nada, "cAm", QList<int>{2, 4, 7, 9});
        caso("el nombre entero", revueltos, nada, "camisa", QList<int>{2, 7});
        caso("texto más largo que el nombre", revueltos, nada, "camisas", QList<int>{});
        caso("eñe sin distinguir", revueltos, nada, "ñ", QList<int>{3, 5});
        caso("n no es ñ", revueltos, nada, "n", QList<int>{8});
        caso("iguales más allá de tres letras", revueltos, nada, "abcdefgh", QList<int>{10, 11});
        caso("un nombre corto antes que su prolongación", revueltos, nada, "abcdefg",
             QList<int>{10, 11, 12});
        caso("nada empieza así", revueltos, nada, "zz", QList<int>{});
        const QStringList largos = {"Camiseta azul marino", "CAMISETA AZUL",
                                    "camiseta azul celeste", "Camiseta azulada", "Camiseta"};
        caso("un texto largo, parecido más allá de doce letras", largos, nada, "camiseta azul m",
             QList<int>{1});
        caso("un texto largo, el nombre entero", largos, nada, "CAMISETA AZUL",
             QList<int>{1, 2, 3, 4});
        caso("un texto largo que ningún nombre alcanza", largos, nada, "camiseta azul celestes",
             QList<int>{});
        // With some seventy different letters in the column, a name's order looks at fewer of
        // them: the rest of a longer text is checked row by row.
        const QStringList variados = {
            "abcdefghijklmnopqrstuvwxyz0123456789áéíóúüñçàèìòùâêîôûäëïöÿ-.,/+*()",
            "Zapato negro 42", "ZAPATO NEGRO 43", "zapato negra", "Zapato negro 4"};
        caso("muchas letras: el nombre entero", variados, nada, "zapato negro 43", QList<int>{3});
        caso("muchas letras: la parte común", variados, nada, "zapato negro 4",
             QList<int>{2, 3, 5});
        caso(
            "muchas letras, ordenados de antemano", variados, [](Grid &g) { g.PrepararFiltro(1); },
            "Zapato Negro 42", QList<int>{2});
        caso("vacío: todas", revueltos, nada, "", rango(1, 12));
        caso("fuera del plano básico", QStringList{"\U00010428x", "\U00010400y", "x"}, nada,
             "\U00010400", QList<int>{1, 2});
        caso(
            "un nombre cambiado tras ordenar", revueltos,
            [](Grid &g) {
                g.MostrarFilasQueEmpiezan(1, "c", g.RowHeight(0));
                g.setTextMatrix(1, 1, "Cazadora");
            },
            "ca", QList<int>{1, 2, 4, 7, 9});
        caso(
            "ordenados de antemano", revueltos, [](Grid &g) { g.PrepararFiltro(1); }, "cAm",
            QList<int>{2, 4, 7, 9});
        caso(
            "un nombre cambiado mientras se ordena", revueltos,
            [](Grid &g) {
                g.PrepararFiltro(1);
                g.setTextMatrix(1, 1, "Cazadora");
            },
            "ca", QList<int>{1, 2, 4, 7, 9});
        caso(
            "filas quitadas mientras se ordena", revueltos,
            [](Grid &g) {
                g.PrepararFiltro(1);
                g.setRows(4);
            },
            "c", QList<int>{2});
        caso(
            "otra columna ordenada antes", revueltos,
            [](Grid &g) {
                g.PrepararFiltro(0);
                g.PrepararFiltro(1);
            },
            "ñ", QList<int>{3, 5});
        caso(
            "filas nuevas tras ordenar", QStringList{"b", "c"},
            [](Grid &g) {
                g.MostrarFilasQueEmpiezan(1, "c", g.RowHeight(0));
                g.setRows(4);
                g.setTextMatrix(3, 0, "f3");
                g.setTextMatrix(3, 1, "Ce");
            },
            "c", QList<int>{2, 3});
        caso(
            "filas ocultas antes vuelven si empiezan así", revueltos,
            [](Grid &g) { ocultar(g, rango(1, 12)); }, "p", QList<int>{1});
        caso(
            "de una búsqueda a otra más corta", revueltos,
            [](Grid &g) { g.MostrarFilasQueEmpiezan(1, "camis", g.RowHeight(0)); }, "ca",
            QList<int>{2, 4, 7, 9});
    }
    void empiezan() {
        const auto [nombres, antes, prefijo, esperadas] =
            Pruebas::Fila<QStringList, Operacion, QString, QList<int>>();
        Grid g(QStringLiteral("grid_prueba"), nullptr, nullptr, {.rows = 2, .cols = 3});
        QAbstractItemModelTester tester(g.modelo(),
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        g.setRows(int(nombres.size()) + 1);
        for (int f = 1; f <= nombres.size(); ++f) {
            g.setTextMatrix(f, 0, QStringLiteral("f%1").arg(f));
            g.setTextMatrix(f, 1, nombres[f - 1]);
        }
        antes(g);
        g.MostrarFilasQueEmpiezan(1, prefijo, g.RowHeight(0));
        QList<int> mostradas;
        for (int f = 1; f < g.Rows(); ++f) {
            if (g.RowHeight(f) > 0)
                mostradas << f;
        }
        QCOMPARE(mostradas, esperadas);
        g.Refresh();
        QCOMPARE(g.vista()->model()->rowCount(), esperadas.size());
        for (int r = 0; r < esperadas.size(); ++r)
            QCOMPARE(g.vista()->model()->index(r, 0).data().toString(),
                     QStringLiteral("f%1").arg(esperadas[r]));
    }

    // Rows with heights of their own: a row that stays shown keeps its height, a row that
    // comes back gets the one asked for, a hidden row forgets its own.
    void empiezanAlturas() {
        Grid g(QStringLiteral("grid_prueba"), nullptr, nullptr, {.rows = 2, .cols = 2});
        g.setRows(5);
        const QStringList nombres = {"Ana", "Alba", "Bea", "Abel"};
        for (int f = 1; f <= 4; ++f)
            g.setTextMatrix(f, 1, nombres[f - 1]);
        g.setRowHeight(1, 600);
        g.setRowHeight(3, 700);
        g.setRowHeight(4, 0);
        g.MostrarFilasQueEmpiezan(1, "a", 500);
        QCOMPARE(g.RowHeight(1), 600.0);          // stays shown, keeps its own
        QCOMPARE(g.RowHeight(2), g.RowHeight(0)); // was shown at the default
        QCOMPARE(g.RowHeight(3), 0.0);
        QCOMPARE(g.RowHeight(4), 500.0); // came back at the height asked for
        g.MostrarFilasQueEmpiezan(1, "", -1);
        QCOMPARE(g.RowHeight(3), g.RowHeight(0)); // its own height went when it was hidden
    }

    void empiezanColumnaFuera() {
        Grid g(QStringLiteral("grid_prueba"), nullptr, nullptr, {.rows = 2, .cols = 2});
        QVERIFY_THROWS_EXCEPTION(std::out_of_range, g.MostrarFilasQueEmpiezan(2, "a", -1));
        QVERIFY_THROWS_EXCEPTION(std::out_of_range, g.MostrarFilasQueEmpiezan(-1, "a", -1));
    }

    // A cell compared where it is kept, in either of its forms, says what comparing its
    // text would say: same length and same characters, case included.
    void textoIgual_data() {
        const auto caso = Pruebas::Tabla<QString, QString>();
        caso("latín-1, igual", "0840067", "0840067");
        caso("latín-1, un carácter de más", "0840067", "08400671");
        caso("latín-1, prefijo", "0840067", "084006");
        caso("latín-1 con eñe", "Ñandú", "Ñandú");
        caso("mayúsculas cuentan", "Ñandú", "ñandú");
        caso("utf-16, igual", "10 € y 5 ₽", "10 € y 5 ₽");
        caso("utf-16 frente a latín-1", "10 € y 5", "10 e y 5");
        caso("vacía frente a vacío", "", "");
        caso("vacía frente a un código", "", "7");
        caso("un código frente a vacío", "7", "");
    }
    void textoIgual() {
        const auto [celda, buscado] = Pruebas::Fila<QString, QString>();
        Banco banco(3);
        banco.grid.setTextMatrix(2, 2, celda);
        QCOMPARE(banco.grid.TextoIgual(2, 2, buscado), banco.grid.TextMatrix(2, 2) == buscado);
        QCOMPARE(banco.grid.TextoIgual(2, 2, celda), true);
        QVERIFY_THROWS_EXCEPTION(std::out_of_range, banco.grid.TextoIgual(4, 2, celda));
    }
};

TARIFAS_PRUEBAS(TstGrid)
#include "tst_grid.moc"
