// The grid control: texts by (row, column), rows hidden by their height, the current row
// under the mouse and the keys, columns, colours. Driven through the real view, offscreen.
#include "apoyo/ejecucion.h"
#include "platform/ui/grid.h"
#include "platform/ui/modelogrid.h"
#include "platform/ui/twips.h"

#include <QAbstractItemModelTester>
#include <QHeaderView>
#include <QTableView>
#include <QtTest>

#include <functional>
#include <stdexcept>

namespace {

const QString NombreGrid = QStringLiteral("grid_prueba");

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
    explicit Banco(int datos, const DisenoGrid &d = {.rows = 2, .cols = 4})
        : grid(NombreGrid, nullptr, nullptr, d) {
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
    // ---- Rows, Cols, TextMatrix ----

    void filas_data() {
        QTest::addColumn<int>("antes");
        QTest::addColumn<int>("despues");
        QTest::addColumn<int>("filaActual");
        QTest::addColumn<int>("filaEsperada");
        QTest::newRow("crece") << 4 << 10 << 2 << 2;
        QTest::newRow("encoge") << 10 << 4 << 2 << 2;
        QTest::newRow("encoge bajo la actual") << 10 << 4 << 8 << 3;
        QTest::newRow("solo títulos") << 6 << 1 << 5 << 0;
        QTest::newRow("igual") << 5 << 5 << 4 << 4;
        // A fill from the title row alone starts at the first data row.
        QTest::newRow("de títulos a muchas") << 1 << 1001 << 0 << 1;
    }

    void filas() {
        QFETCH(int, antes);
        QFETCH(int, despues);
        QFETCH(int, filaActual);
        QFETCH(int, filaEsperada);
        Banco b(antes - 1);
        b.grid.setRow(filaActual);
        b.grid.setRows(despues);
        QCOMPARE(b.grid.Rows(), despues);
        QCOMPARE(b.grid.Row(), filaEsperada);
        QCOMPARE(b.grid.TextMatrix(0, 1), QStringLiteral("T1"));
        // Rows that were there keep their texts; new ones are empty and shown.
        for (int f = 1; f < despues; ++f) {
            QCOMPARE(b.grid.TextMatrix(f, 0), f < antes ? QStringLiteral("f%1").arg(f) : QString());
            QVERIFY(b.grid.RowHeight(f) > 0);
        }
        QCoreApplication::processEvents();
        QCOMPARE(b.vista()->model()->rowCount(), despues - 1);
        if (despues > 1)
            QCOMPARE(b.vista()->model()->index(despues - 2, 0).data().toString(),
                     b.grid.TextMatrix(despues - 1, 0));
    }

    void columnas_data() {
        QTest::addColumn<int>("antes");
        QTest::addColumn<int>("despues");
        QTest::newRow("crece") << 2 << 5;
        QTest::newRow("encoge") << 5 << 2;
        QTest::newRow("a una") << 4 << 1;
        QTest::newRow("igual") << 3 << 3;
    }

    void columnas() {
        QFETCH(int, antes);
        QFETCH(int, despues);
        Grid g(NombreGrid, nullptr, nullptr, {.rows = 4, .cols = antes});
        QAbstractItemModelTester tester(g.modelo(),
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        const auto texto = [](int f, int c) { return QStringLiteral("%1/%2").arg(f).arg(c); };
        // Column 1 hidden by a width of 0, the others 1500 twips and a little more. Alignments
        // by column: 0 right, 1 centred, 2 left, 3 right...
        const auto ancho = [](int c) { return c == 1 ? 0 : 1500.0 + c; };
        const auto alineacion = [](int c) { return AlineacionColumna(2 - c % 3); };
        for (int c = 0; c < antes; ++c) {
            for (int f = 0; f < 4; ++f)
                g.setTextMatrix(f, c, texto(f, c));
            g.setColWidth(c, ancho(c));
            g.setColAlignment(c, alineacion(c));
        }
        g.setCols(despues);
        QCOMPARE(g.Cols(), despues);
        g.setColWidth(despues - 1, 750); // before the view has it, if it is a new one
        // The columns that remain keep texts (a hidden one too), widths and alignments; new
        // ones are empty, left-aligned and of the default width. The view, published anew,
        // follows.
        QTableView *v = g.vista();
        const QAbstractItemModel *m = v->model();
        QCOMPARE(m->columnCount(), despues);
        for (int c = 0; c < despues; ++c) {
            const bool vieja = c < antes;
            for (int f = 0; f < 4; ++f)
                QCOMPARE(g.TextMatrix(f, c), vieja ? texto(f, c) : QString());
            const double anchoEsperado = vieja ? ancho(c) : AnchoColumnaPorOmision;
            QCOMPARE(g.ColWidth(c), c == despues - 1 ? 750 : anchoEsperado);
            QCOMPARE(v->isColumnHidden(c), g.ColWidth(c) == 0);
            if (g.ColWidth(c) > 0)
                QCOMPARE(v->columnWidth(c), APixeles(g.ColWidth(c)));
            const AlineacionColumna a = vieja ? alineacion(c) : AlineacionColumna::Izquierda;
            QCOMPARE(g.ColAlignment(c), a);
            const int enVista = a == AlineacionColumna::Derecha    ? Qt::AlignRight
                                : a == AlineacionColumna::Centrado ? Qt::AlignHCenter
                                                                   : Qt::AlignLeft;
            QCOMPARE(m->index(0, c).data(Qt::TextAlignmentRole).toInt(),
                     enVista | Qt::AlignVCenter);
            QCOMPARE(m->headerData(c, Qt::Horizontal, Qt::TextAlignmentRole).toInt() &
                         Qt::AlignHorizontal_Mask,
                     enVista);
            QCOMPARE(m->headerData(c, Qt::Horizontal).toString(), g.TextMatrix(0, c));
        }
        // A negative width gives the default one, and shows a hidden column again.
        g.setColWidth(despues - 1, 0);
        QVERIFY(v->isColumnHidden(despues - 1));
        g.setColWidth(despues - 1, -1);
        QCOMPARE(g.ColWidth(despues - 1), AnchoColumnaPorOmision);
        QVERIFY(!v->isColumnHidden(despues - 1));
        QCOMPARE(v->columnWidth(despues - 1), APixeles(AnchoColumnaPorOmision));
    }

    void fueraDeRango_data() {
        QTest::addColumn<Operacion>("operacion");
        QTest::addColumn<QString>("texto");
        // The test grid has Rows 4 and Cols 4.
        const auto op = [](Operacion o) { return o; };
        const QString x = QStringLiteral("x");
        QTest::newRow("TextMatrix fila -1")
            << op([](Grid &g) { g.TextMatrix(-1, 0); }) << "TextMatrix(-1, 0)";
        QTest::newRow("TextMatrix fila Rows")
            << op([](Grid &g) { g.TextMatrix(4, 0); }) << "TextMatrix(4, 0)";
        QTest::newRow("TextMatrix columna Cols")
            << op([](Grid &g) { g.TextMatrix(1, 4); }) << "TextMatrix(1, 4)";
        QTest::newRow("escribir una copia")
            << op([x](Grid &g) { g.setTextMatrix(9, 1, x); }) << "TextMatrix(9, 1)";
        QTest::newRow("escribir un temporal")
            << op([](Grid &g) { g.setTextMatrix(1, -1, QString()); }) << "TextMatrix(1, -1)";
        QTest::newRow("RowHeight -1") << op([](Grid &g) { g.RowHeight(-1); }) << "RowHeight(-1)";
        QTest::newRow("RowHeight Rows")
            << op([](Grid &g) { g.setRowHeight(4, 0); }) << "RowHeight(4)";
        QTest::newRow("ColWidth -1") << op([](Grid &g) { g.ColWidth(-1); }) << "ColWidth(-1)";
        QTest::newRow("ColWidth Cols")
            << op([](Grid &g) { g.setColWidth(4, 10); }) << "ColWidth(4)";
        QTest::newRow("ColAlignment")
            << op([](Grid &g) { g.ColAlignment(7); }) << "ColAlignment(7)";
        QTest::newRow("setColAlignment")
            << op([](Grid &g) { g.setColAlignment(-2, AlineacionColumna::Centrado); })
            << "ColAlignment(-2)";
        QTest::newRow("Row Rows") << op([](Grid &g) { g.setRow(4); }) << "Row(4)";
        QTest::newRow("Row negativa") << op([](Grid &g) { g.setRow(-1); }) << "Row(-1)";
        QTest::newRow("Col Cols") << op([](Grid &g) { g.setCol(4); }) << "Col(4)";
        QTest::newRow("TopRow título") << op([](Grid &g) { g.setTopRow(0); }) << "TopRow = 0";
        QTest::newRow("TopRow Rows") << op([](Grid &g) { g.setTopRow(4); }) << "TopRow = 4";
        QTest::newRow("Rows 0") << op([](Grid &g) { g.setRows(0); }) << "Rows = 0";
        QTest::newRow("Cols 0") << op([](Grid &g) { g.setCols(0); }) << "Cols = 0";
    }

    void fueraDeRango() {
        QFETCH(Operacion, operacion);
        QFETCH(QString, texto);
        Banco b(3);
        b.grid.setRow(2);
        try {
            operacion(b.grid);
            QFAIL("no error raised");
        } catch (const std::out_of_range &e) {
            const QString mensaje = QString::fromUtf8(e.what());
            QVERIFY2(mensaje.startsWith(NombreGrid + QLatin1Char('.') + texto), e.what());
            QVERIFY2(mensaje.contains(QStringLiteral("(Rows 4, Cols 4)")), e.what());
        }
        // A refused call changes nothing.
        QCOMPARE(b.grid.Rows(), 4);
        QCOMPARE(b.grid.Cols(), 4);
        QCOMPARE(b.grid.Row(), 2);
        QCOMPARE(b.grid.TextMatrix(3, 3), QStringLiteral("c3"));
        QVERIFY(b.grid.RowHeight(3) > 0);
    }

    void disenoNoAdmitido_data() {
        QTest::addColumn<QList<int>>("valores"); // Rows, Cols, FixedRows, FixedCols
        QTest::newRow("sin fila de títulos") << QList<int>{2, 2, 0, 0};
        QTest::newRow("dos filas fijas") << QList<int>{3, 2, 2, 0};
        QTest::newRow("columna fija") << QList<int>{2, 2, 1, 1};
        QTest::newRow("Rows 0") << QList<int>{0, 2, 1, 0};
        QTest::newRow("Cols 0") << QList<int>{2, 0, 1, 0};
    }

    void disenoNoAdmitido() {
        QFETCH(QList<int>, valores);
        DisenoGrid d{.rows = valores[0], .cols = valores[1]};
        d.fixedRows = valores[2];
        d.fixedCols = valores[3];
        QVERIFY_THROWS_EXCEPTION(std::invalid_argument, Grid(NombreGrid, nullptr, nullptr, d));
    }

    void vaciar() {
        Banco b(6);
        QVERIFY(b.mostrar());
        b.grid.setRow(3);
        ocultar(b.grid, {1});
        b.grid.setRowHeight(2, 600);
        b.grid.Clear();
        QCOMPARE(b.grid.Rows(), 2);
        QCOMPARE(b.grid.Cols(), 4);
        QCOMPARE(b.grid.Row(), 1);
        QCOMPARE(b.grid.TextMatrix(0, 2), QStringLiteral("T2"));
        for (int c = 0; c < 4; ++c)
            QCOMPARE(b.grid.TextMatrix(1, c), QString());
        QCOMPARE(b.grid.RowHeight(1), b.grid.RowHeight(0));
        QCoreApplication::processEvents();
        QCOMPARE(b.vista()->model()->rowCount(), 1);
        QCOMPARE(b.vista()->selectionModel()->currentIndex().row(), 0);
        b.grid.setRows(3); // the row 2 that was isn't back
        QCOMPARE(b.grid.RowHeight(2), b.grid.RowHeight(0));
    }

    void publicacionEnLote() {
        Banco b(50);
        QVERIFY(b.mostrar());
        QAbstractItemModel *m = b.vista()->model();
        QSignalSpy celdas(m, &QAbstractItemModel::dataChanged);
        QSignalSpy titulos(m, &QAbstractItemModel::headerDataChanged);
        QSignalSpy reinicios(m, &QAbstractItemModel::modelReset);
        // Texts: one notice for the cells and one for the titles, and no reset.
        for (int f = 1; f <= 50; ++f)
            b.grid.setTextMatrix(f, 2, QStringLiteral("nuevo %1").arg(f));
        b.grid.setTextMatrix(0, 2, QStringLiteral("Precio"));
        QCOMPARE(celdas.count() + titulos.count(), 0);
        QCoreApplication::processEvents();
        QCOMPARE(celdas.count(), 1);
        QCOMPARE(titulos.count(), 1);
        QCOMPARE(reinicios.count(), 0);
        QCOMPARE(m->index(49, 2).data().toString(), QStringLiteral("nuevo 50"));
        QCOMPARE(m->headerData(2, Qt::Horizontal).toString(), QStringLiteral("Precio"));
        // A walk hiding rows: RowHeight answers at once, while the view keeps showing what
        // it had until one reset publishes the whole walk (Refresh doesn't wait for the loop).
        filtrar(b.grid, QStringLiteral("cam"));
        QCOMPARE(b.grid.RowHeight(3), 0.0);
        QCOMPARE(m->rowCount(), 50);
        QCOMPARE(reinicios.count(), 0);
        b.grid.Refresh(); // publishes now
        QCOMPARE(reinicios.count(), 1);
        QCOMPARE(m->rowCount(), 20); // names 1, 2 and 8 of every eight
    }

    // ---- hidden rows and heights ----

    void alturas_data() {
        QTest::addColumn<Operacion>("operacion");
        QTest::addColumn<QList<int>>("aLaVista");
        QTest::addColumn<int>("conAlturaPropia"); // the row 600 twips tall, if any
        constexpr double Titulo = -2;             // stands for the title row's height
        // The name search, each text published before the next. Names: 1 "CAMISA AZUL",
        // 2 "Camiseta", 3 "calcetin", 4 "Pantalon", 5 "", 6 "Ca", 7 "Blusa camisa",
        // 8 "camisa roja".
        const auto buscar = [](const QStringList &textos, int propia = 0) {
            return Operacion([=](Grid &g) {
                if (propia)
                    g.setRowHeight(propia, 600);
                for (const QString &t : textos)
                    g.Refresh(), filtrar(g, t);
            });
        };
        QTest::newRow("unas ocultas") << buscar({"cam"}) << QList<int>{1, 2, 8} << 0;
        QTest::newRow("una sola") << buscar({"cal"}) << QList<int>{3} << 0;
        QTest::newRow("todas ocultas") << buscar({"zapato"}) << QList<int>{} << 0;
        QTest::newRow("borrar una letra trae filas")
            << buscar({"camis", "ca"}) << QList<int>{1, 2, 3, 6, 8} << 0;
        QTest::newRow("texto más largo oculta más")
            << buscar({"ca", "camiseta"}) << QList<int>{2} << 0;
        QTest::newRow("vaciar la caja muestra todo") << buscar({"pan", ""}) << rango(1, 8) << 0;
        // A row's own height goes with it where the search moves it in the view; hidden and
        // brought back by the search, it returns at the title row's height.
        QTest::newRow("propia bajo la búsqueda") << buscar({"camisa"}, 8) << QList<int>{1, 8} << 8;
        QTest::newRow("propia tras la búsqueda") << buscar({"camisa", ""}, 8) << rango(1, 8) << 8;
        QTest::newRow("propia, oculta por la búsqueda")
            << buscar({"pan", ""}, 8) << rango(1, 8) << 0;
        // Heights given to row 3 in turn.
        const auto alturas = [](const QList<double> &alturas) {
            return Operacion([=](Grid &g) {
                for (double a : alturas)
                    g.setRowHeight(3, a == Titulo ? g.RowHeight(0) : a);
            });
        };
        const QList<int> sin3{1, 2, 4, 5, 6, 7, 8};
        QTest::newRow("propia") << alturas({600}) << rango(1, 8) << 3;
        QTest::newRow("cero la oculta") << alturas({0}) << sin3 << 0;
        QTest::newRow("negativa vuelve a la de omisión") << alturas({600, -1}) << rango(1, 8) << 0;
        QTest::newRow("oculta y luego con altura propia") << alturas({0, 600}) << rango(1, 8) << 3;
        QTest::newRow("propia, oculta, restaurada")
            << alturas({600, 0, Titulo}) << rango(1, 8) << 0;
        QTest::newRow("otra propia") << alturas({900, 600}) << rango(1, 8) << 3;
    }

    void alturas() {
        QFETCH(Operacion, operacion);
        QFETCH(QList<int>, aLaVista);
        QFETCH(int, conAlturaPropia);
        Banco b(8);
        QVERIFY(b.mostrar());
        const double titulo = b.grid.RowHeight(0);
        const auto alturaVisible = [&](int f) { return aLaVista.contains(f) ? titulo : 0.0; };
        b.grid.setRow(3);
        operacion(b.grid);
        // RowHeight answers at once: 0 when hidden, else the title row's or the row's own.
        for (int f = 1; f <= 8; ++f)
            QCOMPARE(b.grid.RowHeight(f), f == conAlturaPropia ? 600 : alturaVisible(f));
        // The view shows those rows in order, each as tall as its RowHeight.
        QCoreApplication::processEvents();
        QCOMPARE(b.filasALaVista(), aLaVista);
        for (int r = 0; r < aLaVista.size(); ++r)
            QCOMPARE(b.vista()->rowHeight(r), APixeles(b.grid.RowHeight(aLaVista[r])));
        // Row still names the same grid row: selected and current where it shows, neither
        // while it is hidden.
        QCOMPARE(b.grid.Row(), 3);
        QCOMPARE(b.marcadas(), solo(aLaVista.contains(3) ? 3 : 0));
        QCOMPARE(b.vista()->selectionModel()->currentIndex().row(), b.filaDeVista(3));
    }

    void alturaTituloYFuente() {
        Banco b(3);
        QVERIFY(b.mostrar());
        QHeaderView *titulos = b.vista()->horizontalHeader();
        const double antes = b.grid.RowHeight(0);
        QCOMPARE(titulos->height(), APixeles(antes));
        QCOMPARE(b.vista()->rowHeight(0), APixeles(antes));
        // The default height follows the control's font, for the title row and the data rows.
        QFont grande = b.grid.Font();
        grande.setPointSizeF(grande.pointSizeF() * 2);
        b.grid.setFont(grande);
        const double despues = b.grid.RowHeight(0);
        QVERIFY2(despues > antes, qPrintable(QStringLiteral("%1 -> %2").arg(antes).arg(despues)));
        QCOMPARE(b.grid.RowHeight(1), despues);
        QCOMPARE(b.vista()->rowHeight(0), APixeles(despues));
        QCOMPARE(titulos->height(), APixeles(despues));
        // A title row of its own height; hidden at 0; back to the default when negative.
        b.grid.setRowHeight(0, 450);
        QCOMPARE(b.grid.RowHeight(0), 450.0);
        QCOMPARE(titulos->height(), 30);
        QCOMPARE(b.grid.RowHeight(1), despues);
        b.grid.setRowHeight(0, 0);
        QCOMPARE(b.grid.RowHeight(0), 0.0);
        QVERIFY(titulos->isHidden());
        b.grid.setRowHeight(0, -1);
        QCOMPARE(b.grid.RowHeight(0), despues);
        QVERIFY(!titulos->isHidden());
    }

    // ---- the current row: mouse, keys, code; scrolling ----

    void filaActual_data() {
        QTest::addColumn<QList<int>>("ocultas");
        QTest::addColumn<int>("filaAntes");
        QTest::addColumn<Accion>("accion");
        QTest::addColumn<int>("filaEsperada");
        QTest::addColumn<int>("clics");
        QTest::addColumn<int>("dobles");
        QTest::addColumn<int>("filaRaton");
        const auto caso = [](const char *nombre, const QList<int> &ocultas, int antes, Accion a,
                             int esperada, int clics = 0, int dobles = 0, int raton = -1) {
            QTest::newRow(nombre) << ocultas << antes << a << esperada << clics << dobles << raton;
        };
        const QList<int> todas = rango(1, 5);
        caso("clic en la primera", {}, 0, raton(Clic, EnFila, 1), 1, 1, 0, 1);
        caso("clic en otra", {}, 1, raton(Clic, EnFila, 4), 4, 1, 0, 4);
        caso("clic en la misma", {}, 2, raton(Clic, EnFila, 2), 2, 1, 0, 2);
        caso("clic tras ocultas", {1, 2, 3}, 0, raton(Clic, EnFila, 4), 4, 1, 0, 4);
        caso("clic en el título", {}, 3, raton(Clic, EnTitulo), 3, 1, 0, 0);
        caso("clic en el título sin fila", {}, 0, raton(Clic, EnTitulo), 0, 1, 0, 0);
        // Below the rows the grid is clicked all the same, and no row is chosen.
        caso("clic debajo", {}, 2, raton(Clic, Debajo), 2, 1, 0, -1);
        caso("clic sin filas a la vista", todas, 1, raton(Clic, Debajo), 1, 1, 0, -1);
        caso("botón derecho", {}, 2, raton(ClicDerecho, EnFila, 4), 2);
        caso("clic y doble", {}, 0, raton(ClicYDoble, EnFila, 2), 2, 1, 1, 2);
        caso("doble solo", {}, 1, raton(DobleClic, EnFila, 4), 4, 0, 1, 4);
        caso("doble en el título", {}, 3, raton(DobleClic, EnTitulo), 3, 0, 1, 0);
        caso("clic y doble en el título sin filas", todas, 1, raton(ClicYDoble, EnTitulo), 1, 1, 1,
             0);
        caso("doble debajo", {}, 2, raton(DobleClic, Debajo), 2, 0, 1, -1);
        // Keys move over the shown rows and raise nothing. The focus alone chooses no row: a
        // double click on the title would open nothing.
        caso("abajo", {}, 1, tecla(Qt::Key_Down), 2);
        caso("abajo dos", {}, 2, tecla(Qt::Key_Down, 2), 4);
        caso("abajo salta ocultas", {2, 3}, 1, tecla(Qt::Key_Down), 4);
        caso("arriba salta ocultas", {2, 3}, 4, tecla(Qt::Key_Up), 1);
        caso("arriba en la primera", {}, 1, tecla(Qt::Key_Up), 1);
        caso("abajo en la última", {}, 5, tecla(Qt::Key_Down, 2), 5);
        caso("sin fila, abajo elige la primera", {}, 0, tecla(Qt::Key_Down), 1);
        caso("abajo sin filas a la vista", todas, 0, tecla(Qt::Key_Down), 0);
    }

    void filaActual() {
        QFETCH(QList<int>, ocultas);
        QFETCH(int, filaAntes);
        QFETCH(Accion, accion);
        QFETCH(int, filaEsperada);
        QFETCH(int, clics);
        QFETCH(int, dobles);
        QFETCH(int, filaRaton);
        Banco b(5);
        QVERIFY(b.mostrar());
        QCOMPARE(b.grid.Row(), 1); // filled: the first data row
        ocultar(b.grid, ocultas);
        b.grid.setRow(filaAntes);
        b.vista()->clearFocus();
        QTRY_VERIFY(!b.vista()->hasFocus());
        b.vista()->setFocus(Qt::TabFocusReason);
        QTRY_VERIFY(b.vista()->hasFocus());
        QCOMPARE(b.grid.Row(), filaAntes);
        QCOMPARE(b.marcadas(), solo(ocultas.contains(filaAntes) ? 0 : filaAntes));
        QSignalSpy click(&b.grid, &Grid::Click);
        QSignalSpy dblClick(&b.grid, &Grid::DblClick);
        // The handlers read Row: it has moved before they run.
        QList<int> filaEnEvento;
        connect(&b.grid, &Grid::Click, this, [&] { filaEnEvento << b.grid.Row(); });
        connect(&b.grid, &Grid::DblClick, this, [&] { filaEnEvento << b.grid.Row(); });
        accion(b);
        QCOMPARE(b.grid.Row(), filaEsperada);
        QCOMPARE(click.count(), clics);
        QCOMPARE(dblClick.count(), dobles);
        QCOMPARE(filaEnEvento, QList<int>(clics + dobles, filaEsperada));
        QCOMPARE(b.grid.MouseRow(), filaRaton);
        QCOMPARE(b.marcadas(), solo(ocultas.contains(filaEsperada) ? 0 : filaEsperada));
    }

    void ponerFila_data() {
        QTest::addColumn<int>("fila");
        QTest::newRow("cerca") << 3;
        QTest::newRow("lejos") << 150;
        QTest::newRow("la última") << 200;
        QTest::newRow("ninguna") << 0;
    }

    void ponerFila() {
        QFETCH(int, fila);
        Banco b(200);
        QVERIFY(b.mostrar());
        QSignalSpy click(&b.grid, &Grid::Click);
        b.grid.setRow(fila);
        QCOMPARE(b.grid.Row(), fila);
        QCOMPARE(click.count(), 0);
        QCOMPARE(b.marcadas(), solo(fila));
        // Scrolled so that the row shows whole.
        QTableView *v = b.vista();
        if (fila > 0)
            QVERIFY(v->viewport()->rect().contains(v->visualRect(v->model()->index(fila - 1, 0))));
    }

    void filaSuperior_data() {
        QTest::addColumn<Operacion>("operacion");
        QTest::addColumn<int>("esperada");
        const auto arriba = [](int fila, const QList<int> &ocultas = {}) {
            return Operacion([=](Grid &g) { ocultar(g, ocultas), g.setTopRow(fila); });
        };
        QTest::newRow("la primera") << arriba(1) << 1;
        QTest::newRow("en medio") << arriba(50) << 50;
        QTest::newRow("oculta: la siguiente a la vista") << arriba(50, rango(50, 59)) << 60;
        QTest::newRow("ocultas encima") << arriba(40, rango(1, 30)) << 40;
        // With row 80 at the top: rows hidden and shown above it don't move what the operator
        // sees; a refill (down to the rows kept, then up again) keeps it if it remained.
        const auto desde80 = [](const QList<int> &ocultas, const Operacion &luego = {}) {
            return Operacion([=](Grid &g) {
                g.setTopRow(80), ocultar(g, ocultas);
                if (luego)
                    luego(g);
            });
        };
        const auto recargar = [](int intermedias) {
            return Operacion([=](Grid &g) {
                intermedias ? g.setRows(intermedias) : g.Clear();
                g.setRows(201);
                for (int f = std::max(intermedias, 1); f <= 200; ++f)
                    g.setTextMatrix(f, 0, QStringLiteral("f%1").arg(f));
            });
        };
        const auto mostrarTodas = [](Grid &g) { g.Refresh(), filtrar(g); };
        QTest::newRow("ninguna a la vista") << desde80(rango(1, 200)) << 0;
        QTest::newRow("ocultas encima de la de arriba") << desde80(rango(10, 60)) << 80;
        QTest::newRow("ocultas y mostradas encima") << desde80(rango(10, 60), mostrarTodas) << 80;
        QTest::newRow("la de arriba oculta") << desde80({80, 81}) << 82;
        QTest::newRow("vaciada y llena otra vez") << desde80({}, recargar(1)) << 1;
        QTest::newRow("vaciada con Clear y llena otra vez") << desde80({}, recargar(0)) << 1;
        QTest::newRow("encogida bajo la de arriba") << desde80({}, recargar(30)) << 29;
        QTest::newRow("encogida por debajo de ella") << desde80({}, recargar(150)) << 80;
    }

    void filaSuperior() {
        QFETCH(Operacion, operacion);
        QFETCH(int, esperada);
        Banco b(200);
        QVERIFY(b.mostrar());
        operacion(b.grid);
        QCoreApplication::processEvents();
        QCOMPARE(b.grid.TopRow(), esperada);
        QCOMPARE(b.vista()->rowAt(0), b.filaDeVista(esperada));
    }

    // ---- columns and look ----

    void colores() {
        DisenoGrid d{.rows = 3, .cols = 4};
        d.foreColorFixed = RGB(10, 20, 30);
        d.backColorBkg = RGB(255, 254, 253);
        Banco b(2, d);
        QTableView *v = b.vista();
        const auto titulo = [&](int c, int rol) {
            return v->model()->headerData(c, Qt::Horizontal, rol).value<QColor>();
        };
        const auto paleta = [&](QPalette::ColorGroup g, QPalette::ColorRole r) {
            return v->palette().color(g, r);
        };
        // As designed (BackColor and BackColorSel show in the painted cells of resaltado)...
        QCOMPARE(titulo(0, Qt::BackgroundRole), QColor(217, 231, 247));
        QCOMPARE(titulo(0, Qt::ForegroundRole), QColor(10, 20, 30));
        QCOMPARE(paleta(QPalette::Inactive, QPalette::HighlightedText), QColor(0, 0, 0));
        QCOMPARE(paleta(QPalette::Active, QPalette::Base), QColor(255, 254, 253));
        // ...and as changed since.
        b.grid.setBackColor(RGB(1, 2, 3));
        b.grid.setBackColorFixed(RGB(4, 5, 6));
        b.grid.setBackColorSel(RGB(7, 8, 9));
        b.grid.setForeColorSel(RGB(10, 11, 12));
        QCOMPARE((QList<ColorOLE>{b.grid.BackColor(), b.grid.BackColorFixed(),
                                  b.grid.BackColorSel(), b.grid.ForeColorSel()}),
                 (QList<ColorOLE>{RGB(1, 2, 3), RGB(4, 5, 6), RGB(7, 8, 9), RGB(10, 11, 12)}));
        QCOMPARE(v->model()->index(1, 2).data(Qt::BackgroundRole).value<QColor>(), QColor(1, 2, 3));
        QCOMPARE(titulo(3, Qt::BackgroundRole), QColor(4, 5, 6));
        QCOMPARE(paleta(QPalette::Inactive, QPalette::Highlight), QColor(7, 8, 9));
        QCOMPARE(paleta(QPalette::Active, QPalette::HighlightedText), QColor(10, 11, 12));
    }

    void resaltado_data() {
        QTest::addColumn<int>("highLight");
        QTest::addColumn<bool>("conFoco");
        QTest::addColumn<bool>("marcada");
        QTest::newRow("nunca, con foco") << 0 << true << false;
        QTest::newRow("siempre, sin foco") << 1 << false << true;
        QTest::newRow("siempre, con foco") << 1 << true << true;
        QTest::newRow("con foco, con foco") << 2 << true << true;
        QTest::newRow("con foco, sin foco") << 2 << false << false;
    }

    void resaltado() {
        QFETCH(int, highLight);
        QFETCH(bool, conFoco);
        QFETCH(bool, marcada);
        DisenoGrid d{.rows = 2, .cols = 4, .backColor = RGB(200, 220, 240)};
        d.backColorSel = RGB(255, 255, 0);
        d.highLight = highLight;
        Banco b(4, d);
        QVERIFY(b.mostrar());
        QTableView *v = b.vista();
        b.grid.setRow(2);
        if (conFoco)
            v->setFocus();
        else
            v->clearFocus();
        QTRY_COMPARE(v->hasFocus(), conFoco);
        // Column 2 is empty: the middle of a cell shows its background alone. A row that
        // isn't selected always shows BackColor.
        const QImage imagen = v->viewport()->grab().toImage();
        const auto color = [&](int r) {
            const QRect celda = v->visualRect(v->model()->index(r, 2));
            return imagen.pixelColor(celda.center() * imagen.devicePixelRatio());
        };
        QCOMPARE(color(1), marcada ? QColor(255, 255, 0) : QColor(200, 220, 240));
        QCOMPARE(color(2), QColor(200, 220, 240));
    }
};

TARIFAS_PRUEBAS(TstGrid)
#include "tst_grid.moc"
