// The grid control: texts by (row, column), rows hidden by their height, the current row
// under the mouse and the keys, columns, colours. Driven through the real view, offscreen.
#include "platform/ui/grid.h"
#include "platform/ui/modelogrid.h"
#include "platform/ui/twips.h"

#include <QAbstractItemModelTester>
#include <QHeaderView>
#include <QScrollBar>
#include <QTableView>
#include <QtTest>

#include <functional>
#include <stdexcept>

using Operacion = std::function<void(Grid &)>;
Q_DECLARE_METATYPE(Operacion)
Q_DECLARE_METATYPE(QList<int>)
Q_DECLARE_METATYPE(QList<double>)

namespace {

const QString NombreGrid = QStringLiteral("grid_prueba");

/// The names of the data rows 1..n of the test grids, as a catalogue lists them.
const QStringList Catalogo = {
    QStringLiteral("CAMISA AZUL"),
    QStringLiteral("Camiseta"),
    QStringLiteral("calcetin"),
    QStringLiteral("Pantalon"),
    QStringLiteral(""),
    QStringLiteral("Ca"),
    QStringLiteral("Blusa camisa"),
    QStringLiteral("camisa roja"),
};

DisenoGrid diseno(int rows, int cols) {
    DisenoGrid d;
    d.rows = rows;
    d.cols = cols;
    return d;
}

/// A grid of its own window, `datos` data rows: column 0 "f<row>", column 1 a name of the
/// catalogue (repeated), column 3 "c<row>", column 2 empty.
struct Banco {
    Grid grid;
    explicit Banco(int datos, DisenoGrid d = diseno(2, 4), double alto = 4000)
        : grid(NombreGrid, nullptr, nullptr, d) {
        grid.setRows(datos + 1);
        for (int c = 0; c < grid.Cols(); ++c)
            grid.setTextMatrix(0, c, QStringLiteral("T%1").arg(c));
        for (int f = 1; f <= datos; ++f) {
            grid.setTextMatrix(f, 0, QStringLiteral("f%1").arg(f));
            grid.setTextMatrix(f, 1, Catalogo[(f - 1) % Catalogo.size()]);
            if (grid.Cols() > 3)
                grid.setTextMatrix(f, 3, QStringLiteral("c%1").arg(f));
        }
        grid.Move(0, 0, 6000, alto);
    }
    QTableView *vista() { return grid.vista(); }
    bool mostrar() {
        vista()->show();
        vista()->activateWindow();
        return QTest::qWaitForWindowActive(vista());
    }
    /// The view's row that shows grid row `fila`, found by its text; -1 if not shown.
    int filaDeVista(int fila) {
        const QAbstractItemModel *m = vista()->model();
        for (int r = 0; r < m->rowCount(); ++r)
            if (m->index(r, 0).data().toString() == QStringLiteral("f%1").arg(fila))
                return r;
        return -1;
    }
    /// The grid rows the view shows, in order, read from its texts.
    QList<int> filasALaVista() {
        QList<int> filas;
        const QAbstractItemModel *m = vista()->model();
        for (int r = 0; r < m->rowCount(); ++r)
            filas << m->index(r, 0).data().toString().mid(1).toInt();
        return filas;
    }
};

/// The name search as the editor runs it: a prefix of the name, case ignored; a matching
/// hidden row comes back at the title row's height, the others are hidden.
void filtrar(Grid &g, const QString &valor) {
    for (int f = 1; f < g.Rows(); ++f) {
        const QString nombre = g.TextMatrix(f, 1).left(valor.size());
        if (nombre.toUpper() == valor.toUpper()) {
            if (g.RowHeight(f) == 0)
                g.setRowHeight(f, g.RowHeight(0));
        } else {
            g.setRowHeight(f, 0);
        }
    }
}

void deshacerFiltro(Grid &g) {
    for (int f = 1; f < g.Rows(); ++f)
        if (g.RowHeight(f) == 0)
            g.setRowHeight(f, g.RowHeight(0));
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

enum Donde { EnFila, EnTitulo, Debajo };

QPoint puntoDe(Banco &b, Donde donde, int fila, QWidget **destino) {
    QTableView *v = b.vista();
    switch (donde) {
    case EnFila:
        *destino = v->viewport();
        return v->visualRect(v->model()->index(b.filaDeVista(fila), 0)).center();
    case EnTitulo: {
        QHeaderView *hh = v->horizontalHeader();
        *destino = hh->viewport();
        return QPoint(hh->sectionViewportPosition(0) + 5, hh->height() / 2);
    }
    case Debajo:
        *destino = v->viewport();
        return QPoint(10, v->viewport()->height() - 3);
    }
    return {};
}

} // namespace

class TstGrid : public QObject {
    Q_OBJECT
  private slots:
    // ---- the model ----
    void modeloSano_data();
    void modeloSano();

    // ---- Rows, Cols, TextMatrix ----
    void filas_data();
    void filas();
    void columnas_data();
    void columnas();
    void fueraDeRango_data();
    void fueraDeRango();
    void disenoNoAdmitido_data();
    void disenoNoAdmitido();
    void vaciar();
    void textosEnLote();

    // ---- hidden rows ----
    void filtroPorNombre_data();
    void filtroPorNombre();
    void alturas_data();
    void alturas();
    void alturaPropiaAlFiltrar();
    void alturaTituloYFuente();
    void filaActualAlOcultar_data();
    void filaActualAlOcultar();

    // ---- mouse and keys ----
    void clic_data();
    void clic();
    void dobleClic_data();
    void dobleClic();
    void soloTitulos();
    void focoNoEligeFila_data();
    void focoNoEligeFila();
    void teclas_data();
    void teclas();
    void ponerFila_data();
    void ponerFila();

    // ---- scrolling ----
    void filaSuperior_data();
    void filaSuperior();
    void filaSuperiorAlOcultarEncima();
    void recargaVuelveArriba_data();
    void recargaVuelveArriba();

    // ---- columns and look ----
    void anchoCero();
    void alineacion_data();
    void alineacion();
    void colores();
    void resaltado_data();
    void resaltado();
};

// ---- the model ----

void TstGrid::modeloSano_data() {
    QTest::addColumn<Operacion>("operacion");
    QTest::addColumn<int>("filasALaVista");
    QTest::newRow("crecer") << Operacion([](Grid &g) { g.setRows(40); }) << 39;
    QTest::newRow("encoger") << Operacion([](Grid &g) { g.setRows(3); }) << 2;
    QTest::newRow("solo títulos") << Operacion([](Grid &g) { g.setRows(1); }) << 0;
    QTest::newRow("recargar") << Operacion([](Grid &g) {
        g.setRows(1);
        g.setRows(7);
        for (int f = 1; f < 7; ++f)
            g.setTextMatrix(f, 1, QStringLiteral("n%1").arg(f));
    }) << 6;
    QTest::newRow("columnas") << Operacion([](Grid &g) {
        g.setCols(7);
        g.setCols(2);
    }) << 8;
    QTest::newRow("ocultar y mostrar") << Operacion([](Grid &g) {
        filtrar(g, QStringLiteral("cam"));
        g.Refresh();
        filtrar(g, QStringLiteral("ca"));
    }) << 5;
    QTest::newRow("ninguna a la vista")
        << Operacion([](Grid &g) { filtrar(g, QStringLiteral("zz")); }) << 0;
    QTest::newRow("Clear") << Operacion([](Grid &g) { g.Clear(); }) << 1;
}

void TstGrid::modeloSano() {
    QFETCH(Operacion, operacion);
    QFETCH(int, filasALaVista);
    Banco b(8);
    QVERIFY(b.mostrar());
    QAbstractItemModelTester tester(b.grid.modelo(),
                                    QAbstractItemModelTester::FailureReportingMode::QtTest);
    operacion(b.grid);
    QCoreApplication::processEvents();
    QCOMPARE(b.vista()->model()->rowCount(), filasALaVista);
    QCOMPARE(b.vista()->model()->columnCount(), b.grid.Cols());
}

// ---- Rows, Cols, TextMatrix ----

void TstGrid::filas_data() {
    QTest::addColumn<int>("antes");
    QTest::addColumn<int>("despues");
    QTest::addColumn<int>("filaActual");
    QTest::addColumn<int>("filaEsperada");
    QTest::newRow("crece") << 4 << 10 << 2 << 2;
    QTest::newRow("encoge") << 10 << 4 << 2 << 2;
    QTest::newRow("encoge bajo la actual") << 10 << 4 << 8 << 3;
    QTest::newRow("solo títulos") << 6 << 1 << 5 << 0;
    QTest::newRow("igual") << 5 << 5 << 4 << 4;
    QTest::newRow("de títulos a muchas") << 1 << 1001 << 0 << 0;
}

void TstGrid::filas() {
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
    for (int f = 1; f < despues; ++f) {
        // Rows that were there keep their texts; new ones are empty and shown.
        const QString esperado = f < antes ? QStringLiteral("f%1").arg(f) : QString();
        QCOMPARE(b.grid.TextMatrix(f, 0), esperado);
        QVERIFY(b.grid.RowHeight(f) > 0);
    }
    QCoreApplication::processEvents();
    QCOMPARE(b.vista()->model()->rowCount(), despues - 1);
    if (despues > 1)
        QCOMPARE(b.vista()->model()->index(despues - 2, 0).data().toString(),
                 despues - 1 < antes ? QStringLiteral("f%1").arg(despues - 1) : QString());
}

void TstGrid::columnas_data() {
    QTest::addColumn<int>("antes");
    QTest::addColumn<int>("despues");
    QTest::newRow("crece") << 2 << 5;
    QTest::newRow("encoge") << 5 << 2;
    QTest::newRow("a una") << 4 << 1;
    QTest::newRow("igual") << 3 << 3;
}

void TstGrid::columnas() {
    QFETCH(int, antes);
    QFETCH(int, despues);
    Grid g(NombreGrid, nullptr, nullptr, diseno(4, antes));
    for (int f = 0; f < 4; ++f)
        for (int c = 0; c < antes; ++c)
            g.setTextMatrix(f, c, QStringLiteral("%1/%2").arg(f).arg(c));
    for (int c = 0; c < antes; ++c) {
        g.setColWidth(c, 1500 + c);
        g.setColAlignment(c, AlineacionColumna::Derecha);
    }
    g.setCols(despues);
    QCOMPARE(g.Cols(), despues);
    for (int c = 0; c < despues; ++c) {
        const bool vieja = c < antes;
        for (int f = 0; f < 4; ++f)
            QCOMPARE(g.TextMatrix(f, c), vieja ? QStringLiteral("%1/%2").arg(f).arg(c) : QString());
        QCOMPARE(g.ColWidth(c), vieja ? 1500.0 + c : AnchoColumnaPorOmision);
        QCOMPARE(g.ColAlignment(c),
                 vieja ? AlineacionColumna::Derecha : AlineacionColumna::Izquierda);
    }
    QTableView *v = g.vista();
    QCOMPARE(v->model()->columnCount(), despues);
    QCOMPARE(v->model()->headerData(despues - 1, Qt::Horizontal).toString(),
             despues <= antes ? QStringLiteral("0/%1").arg(despues - 1) : QString());
    QCOMPARE(v->columnWidth(0), APixeles(1500));
}

void TstGrid::fueraDeRango_data() {
    QTest::addColumn<Operacion>("operacion");
    QTest::addColumn<QString>("texto");
    // The test grid has Rows 4 and Cols 4.
    auto op = [](Operacion o) { return o; };
    QTest::newRow("TextMatrix fila -1")
        << op([](Grid &g) { g.TextMatrix(-1, 0); }) << "TextMatrix(-1, 0)";
    QTest::newRow("TextMatrix fila Rows")
        << op([](Grid &g) { g.TextMatrix(4, 0); }) << "TextMatrix(4, 0)";
    QTest::newRow("TextMatrix columna Cols")
        << op([](Grid &g) { g.TextMatrix(1, 4); }) << "TextMatrix(1, 4)";
    QTest::newRow("escribir TextMatrix fuera")
        << op([](Grid &g) { g.setTextMatrix(9, 1, QStringLiteral("x")); }) << "TextMatrix(9, 1)";
    QTest::newRow("RowHeight -1") << op([](Grid &g) { g.RowHeight(-1); }) << "RowHeight(-1)";
    QTest::newRow("RowHeight Rows") << op([](Grid &g) { g.setRowHeight(4, 0); }) << "RowHeight(4)";
    QTest::newRow("ColWidth -1") << op([](Grid &g) { g.ColWidth(-1); }) << "ColWidth(-1)";
    QTest::newRow("ColWidth Cols") << op([](Grid &g) { g.setColWidth(4, 10); }) << "ColWidth(4)";
    QTest::newRow("ColAlignment") << op([](Grid &g) { g.ColAlignment(7); }) << "ColAlignment(7)";
    QTest::newRow("setColAlignment")
        << op([](Grid &g) { g.setColAlignment(-2, AlineacionColumna::Centrado); })
        << "ColAlignment(-2)";
    QTest::newRow("Row Rows") << op([](Grid &g) { g.setRow(4); }) << "Row(4)";
    QTest::newRow("Row negativa") << op([](Grid &g) { g.setRow(-1); }) << "Row(-1)";
    QTest::newRow("Col Cols") << op([](Grid &g) { g.setCol(4); }) << "Col(4)";
    QTest::newRow("TopRow título") << op([](Grid &g) { g.setTopRow(0); }) << "TopRow = 0";
    QTest::newRow("TopRow Rows") << op([](Grid &g) { g.setTopRow(4); }) << "TopRow = 4";
    QTest::newRow("Rows 0") << op([](Grid &g) { g.setRows(0); }) << "Rows = 0";
    QTest::newRow("Rows negativas") << op([](Grid &g) { g.setRows(-5); }) << "Rows = -5";
    QTest::newRow("Cols 0") << op([](Grid &g) { g.setCols(0); }) << "Cols = 0";
}

void TstGrid::fueraDeRango() {
    QFETCH(Operacion, operacion);
    QFETCH(QString, texto);
    Banco b(3);
    b.grid.setRow(2);
    try {
        operacion(b.grid);
        QFAIL("no error raised");
    } catch (const std::out_of_range &e) {
        const QString mensaje = QString::fromUtf8(e.what());
        QVERIFY2(mensaje.startsWith(NombreGrid + QLatin1Char('.') + texto), qPrintable(mensaje));
        QVERIFY2(mensaje.contains(QStringLiteral("fuera del intervalo (Rows 4, Cols 4)")),
                 qPrintable(mensaje));
    }
    // A refused call changes nothing.
    QCOMPARE(b.grid.Rows(), 4);
    QCOMPARE(b.grid.Cols(), 4);
    QCOMPARE(b.grid.Row(), 2);
    QCOMPARE(b.grid.TextMatrix(3, 3), QStringLiteral("c3"));
    QVERIFY(b.grid.RowHeight(3) > 0);
}

void TstGrid::disenoNoAdmitido_data() {
    QTest::addColumn<int>("rows");
    QTest::addColumn<int>("cols");
    QTest::addColumn<int>("fixedRows");
    QTest::addColumn<int>("fixedCols");
    QTest::newRow("sin fila de títulos") << 2 << 2 << 0 << 0;
    QTest::newRow("dos filas fijas") << 3 << 2 << 2 << 0;
    QTest::newRow("columna fija") << 2 << 2 << 1 << 1;
    QTest::newRow("Rows 0") << 0 << 2 << 1 << 0;
    QTest::newRow("Cols 0") << 2 << 0 << 1 << 0;
}

void TstGrid::disenoNoAdmitido() {
    QFETCH(int, rows);
    QFETCH(int, cols);
    QFETCH(int, fixedRows);
    QFETCH(int, fixedCols);
    DisenoGrid d = diseno(rows, cols);
    d.fixedRows = fixedRows;
    d.fixedCols = fixedCols;
    QVERIFY_THROWS_EXCEPTION(std::invalid_argument, Grid(NombreGrid, nullptr, nullptr, d));
}

void TstGrid::vaciar() {
    Banco b(6);
    QVERIFY(b.mostrar());
    b.grid.setRow(3);
    ocultar(b.grid, {1, 2});
    b.grid.Clear();
    QCOMPARE(b.grid.Rows(), 2);
    QCOMPARE(b.grid.Cols(), 4);
    QCOMPARE(b.grid.Row(), 0);
    QCOMPARE(b.grid.TextMatrix(0, 2), QStringLiteral("T2"));
    for (int c = 0; c < 4; ++c)
        QCOMPARE(b.grid.TextMatrix(1, c), QString());
    QCOMPARE(b.grid.RowHeight(1), b.grid.RowHeight(0));
    QCoreApplication::processEvents();
    QCOMPARE(b.vista()->model()->rowCount(), 1);
    QVERIFY(!b.vista()->selectionModel()->hasSelection());
}

void TstGrid::textosEnLote() {
    Banco b(50);
    QVERIFY(b.mostrar());
    QAbstractItemModel *m = b.vista()->model();
    QSignalSpy celdas(m, &QAbstractItemModel::dataChanged);
    QSignalSpy titulos(m, &QAbstractItemModel::headerDataChanged);
    QSignalSpy reinicios(m, &QAbstractItemModel::modelReset);
    for (int f = 1; f <= 50; ++f)
        b.grid.setTextMatrix(f, 2, QStringLiteral("nuevo %1").arg(f));
    b.grid.setTextMatrix(0, 2, QStringLiteral("Precio"));
    QCOMPARE(celdas.count(), 0);
    QCOMPARE(titulos.count(), 0);
    QCoreApplication::processEvents();
    // One notice for the whole batch, and no reset: the rows didn't change.
    QCOMPARE(celdas.count(), 1);
    QCOMPARE(titulos.count(), 1);
    QCOMPARE(reinicios.count(), 0);
    QCOMPARE(m->index(49, 2).data().toString(), QStringLiteral("nuevo 50"));
    QCOMPARE(m->headerData(2, Qt::Horizontal).toString(), QStringLiteral("Precio"));
}

// ---- hidden rows ----

void TstGrid::filtroPorNombre_data() {
    QTest::addColumn<QStringList>("textos");
    QTest::addColumn<QList<int>>("aLaVista");
    // Names: 1 "CAMISA AZUL", 2 "Camiseta", 3 "calcetin", 4 "Pantalon", 5 "", 6 "Ca",
    // 7 "Blusa camisa", 8 "camisa roja".
    QTest::newRow("minúsculas casan con mayúsculas") << QStringList{"camisa"} << QList<int>{1, 8};
    QTest::newRow("nombre más corto que el texto") << QStringList{"cam"} << QList<int>{1, 2, 8};
    QTest::newRow("en medio del nombre no casa") << QStringList{"azul"} << QList<int>{};
    QTest::newRow("nombre vacío, oculto") << QStringList{"c"} << QList<int>{1, 2, 3, 6, 8};
    QTest::newRow("ninguna") << QStringList{"zapato"} << QList<int>{};
    QTest::newRow("borrar una letra trae filas")
        << QStringList{"camis", "ca"} << QList<int>{1, 2, 3, 6, 8};
    QTest::newRow("texto más largo oculta más") << QStringList{"ca", "camiseta"} << QList<int>{2};
    QTest::newRow("vaciar la caja muestra todo")
        << QStringList{"pan", ""} << QList<int>{1, 2, 3, 4, 5, 6, 7, 8};
}

void TstGrid::filtroPorNombre() {
    QFETCH(QStringList, textos);
    QFETCH(QList<int>, aLaVista);
    Banco b(8);
    QVERIFY(b.mostrar());
    QAbstractItemModel *m = b.vista()->model();
    QSignalSpy reinicios(m, &QAbstractItemModel::modelReset);
    for (const QString &t : textos) {
        if (t.isEmpty())
            deshacerFiltro(b.grid);
        else
            filtrar(b.grid, t);
    }
    // RowHeight answers at once...
    for (int f = 1; f <= 8; ++f)
        QCOMPARE(b.grid.RowHeight(f), aLaVista.contains(f) ? b.grid.RowHeight(0) : 0.0);
    // ...while the view still shows what it had: the walk didn't touch it row by row.
    QCOMPARE(reinicios.count(), 0);
    QCOMPARE(m->rowCount(), 8);
    QCoreApplication::processEvents();
    QCOMPARE(reinicios.count(), 1);
    QCOMPARE(b.filasALaVista(), aLaVista);
    // The view lays the shown rows out one below the other, each as tall as the title row.
    QTableView *v = b.vista();
    for (int r = 0; r < m->rowCount(); ++r) {
        QCOMPARE(v->rowHeight(r), APixeles(b.grid.RowHeight(0)));
        QCOMPARE(v->rowViewportPosition(r), r * v->rowHeight(0));
    }
}

void TstGrid::alturas_data() {
    constexpr double PorOmision = -2; // stands for the title row's height
    QTest::addColumn<QList<double>>("alturas");
    QTest::addColumn<double>("esperada");
    QTest::newRow("propia") << QList<double>{600} << 600.0;
    QTest::newRow("cero la oculta") << QList<double>{0} << 0.0;
    QTest::newRow("negativa vuelve a la de omisión") << QList<double>{600, -1} << PorOmision;
    QTest::newRow("oculta y luego con altura propia") << QList<double>{0, 600} << 600.0;
    QTest::newRow("propia, oculta, restaurada") << QList<double>{600, 0, PorOmision} << PorOmision;
    QTest::newRow("otra propia") << QList<double>{900, 600} << 600.0;
}

void TstGrid::alturas() {
    QFETCH(QList<double>, alturas);
    QFETCH(double, esperada);
    Banco b(5);
    QVERIFY(b.mostrar());
    const double titulo = b.grid.RowHeight(0);
    QVERIFY(titulo > 0);
    if (esperada == -2)
        esperada = titulo;
    for (double a : alturas)
        b.grid.setRowHeight(3, a == -2 ? titulo : a);
    QCOMPARE(b.grid.RowHeight(3), esperada);
    QCOMPARE(b.grid.RowHeight(2), titulo);
    QCoreApplication::processEvents();
    const int r = b.filaDeVista(3);
    if (esperada == 0) {
        QCOMPARE(r, -1);
        QCOMPARE(b.filasALaVista(), (QList<int>{1, 2, 4, 5}));
    } else {
        QVERIFY(r >= 0);
        QCOMPARE(b.vista()->rowHeight(r), APixeles(esperada));
        QCOMPARE(b.vista()->rowHeight(b.filaDeVista(2)), APixeles(titulo));
    }
}

void TstGrid::alturaPropiaAlFiltrar() {
    Banco b(8);
    QVERIFY(b.mostrar());
    QTableView *v = b.vista();
    const double titulo = b.grid.RowHeight(0);
    b.grid.setRowHeight(8, 600); // "camisa roja"
    // A search that keeps the row leaves its own height; the view sizes it where it now
    // stands, and the view row it had before goes back to the common height.
    filtrar(b.grid, QStringLiteral("camisa"));
    QCoreApplication::processEvents();
    QCOMPARE(b.filasALaVista(), (QList<int>{1, 8}));
    QCOMPARE(b.grid.RowHeight(8), 600.0);
    QCOMPARE(v->rowHeight(1), APixeles(600));
    QCOMPARE(v->rowHeight(0), APixeles(titulo));
    deshacerFiltro(b.grid);
    QCoreApplication::processEvents();
    QCOMPARE(v->rowHeight(1), APixeles(titulo));
    QCOMPARE(v->rowHeight(7), APixeles(600));
    // Hidden, then restored by the search: it comes back at the title row's height.
    filtrar(b.grid, QStringLiteral("pan"));
    deshacerFiltro(b.grid);
    QCoreApplication::processEvents();
    QCOMPARE(b.grid.RowHeight(8), titulo);
    QCOMPARE(v->rowHeight(7), APixeles(titulo));
}

void TstGrid::alturaTituloYFuente() {
    Banco b(3);
    QVERIFY(b.mostrar());
    QTableView *v = b.vista();
    const double antes = b.grid.RowHeight(0);
    QCOMPARE(v->horizontalHeader()->height(), APixeles(antes));
    QCOMPARE(v->rowHeight(0), APixeles(antes));

    // The default height follows the control's font, for the title row and the data rows.
    QFont grande = b.grid.Font();
    grande.setPointSizeF(grande.pointSizeF() * 2);
    b.grid.setFont(grande);
    const double despues = b.grid.RowHeight(0);
    QVERIFY2(despues > antes, qPrintable(QStringLiteral("%1 -> %2").arg(antes).arg(despues)));
    QCOMPARE(b.grid.RowHeight(1), despues);
    QCOMPARE(v->rowHeight(0), APixeles(despues));
    QCOMPARE(v->horizontalHeader()->height(), APixeles(despues));

    // A title row of its own height; hidden at 0.
    b.grid.setRowHeight(0, 450);
    QCOMPARE(b.grid.RowHeight(0), 450.0);
    QCOMPARE(v->horizontalHeader()->height(), 30);
    QCOMPARE(b.grid.RowHeight(1), despues);
    b.grid.setRowHeight(0, 0);
    QCOMPARE(b.grid.RowHeight(0), 0.0);
    QVERIFY(v->horizontalHeader()->isHidden());
    b.grid.setRowHeight(0, -1);
    QCOMPARE(b.grid.RowHeight(0), despues);
    QVERIFY(!v->horizontalHeader()->isHidden());
}

void TstGrid::filaActualAlOcultar_data() {
    QTest::addColumn<int>("filaActual");
    QTest::addColumn<QList<int>>("ocultas");
    QTest::newRow("ocultas encima") << 4 << QList<int>{1, 2, 3};
    QTest::newRow("ocultas debajo") << 2 << QList<int>{3, 5};
    QTest::newRow("la actual oculta") << 4 << QList<int>{2, 4};
    QTest::newRow("todas ocultas") << 3 << rango(1, 6);
}

void TstGrid::filaActualAlOcultar() {
    QFETCH(int, filaActual);
    QFETCH(QList<int>, ocultas);
    Banco b(6);
    QVERIFY(b.mostrar());
    b.grid.setRow(filaActual);
    ocultar(b.grid, ocultas);
    QCoreApplication::processEvents();
    QCOMPARE(b.grid.Row(), filaActual);
    QItemSelectionModel *sel = b.vista()->selectionModel();
    if (ocultas.contains(filaActual)) {
        // Not shown, so not selected; Row still names it.
        QVERIFY(!sel->hasSelection());
    } else {
        QVERIFY(sel->isRowSelected(b.filaDeVista(filaActual)));
        QCOMPARE(sel->selectedRows().size(), 1);
        QCOMPARE(sel->currentIndex().row(), b.filaDeVista(filaActual));
    }
    // Everything back: the same grid row is selected again.
    deshacerFiltro(b.grid);
    QCoreApplication::processEvents();
    QCOMPARE(b.grid.Row(), filaActual);
    QVERIFY(sel->isRowSelected(filaActual - 1));
    QCOMPARE(sel->selectedRows().size(), 1);
}

// ---- mouse and keys ----

void TstGrid::clic_data() {
    QTest::addColumn<QList<int>>("ocultas");
    QTest::addColumn<int>("filaAntes");
    QTest::addColumn<int>("donde");
    QTest::addColumn<int>("fila");
    QTest::addColumn<int>("boton");
    QTest::addColumn<int>("filaEsperada");
    QTest::addColumn<int>("clics");
    const int izq = Qt::LeftButton;
    QTest::newRow("primera fila") << QList<int>{} << 0 << int(EnFila) << 1 << izq << 1 << 1;
    QTest::newRow("otra fila") << QList<int>{} << 1 << int(EnFila) << 4 << izq << 4 << 1;
    QTest::newRow("la misma fila") << QList<int>{} << 2 << int(EnFila) << 2 << izq << 2 << 1;
    QTest::newRow("tras filas ocultas")
        << QList<int>{1, 2, 3} << 0 << int(EnFila) << 4 << izq << 4 << 1;
    QTest::newRow("título guarda la fila")
        << QList<int>{} << 3 << int(EnTitulo) << 0 << izq << 3 << 1;
    QTest::newRow("título sin fila") << QList<int>{} << 0 << int(EnTitulo) << 0 << izq << 0 << 1;
    QTest::newRow("debajo de la última") << QList<int>{} << 2 << int(Debajo) << 0 << izq << 2 << 0;
    QTest::newRow("botón derecho")
        << QList<int>{} << 2 << int(EnFila) << 4 << int(Qt::RightButton) << 2 << 0;
}

void TstGrid::clic() {
    QFETCH(QList<int>, ocultas);
    QFETCH(int, filaAntes);
    QFETCH(int, donde);
    QFETCH(int, fila);
    QFETCH(int, boton);
    QFETCH(int, filaEsperada);
    QFETCH(int, clics);
    Banco b(5);
    QVERIFY(b.mostrar());
    ocultar(b.grid, ocultas);
    b.grid.setRow(filaAntes);
    QSignalSpy click(&b.grid, &Grid::Click);
    QSignalSpy dblClick(&b.grid, &Grid::DblClick);
    int filaEnClick = -1;
    connect(&b.grid, &Grid::Click, this, [&] { filaEnClick = b.grid.Row(); });
    QWidget *destino = nullptr;
    const QPoint p = puntoDe(b, Donde(donde), fila, &destino);
    QTest::mouseClick(destino, Qt::MouseButton(boton), {}, p);
    QCOMPARE(b.grid.Row(), filaEsperada);
    QCOMPARE(click.count(), clics);
    QCOMPARE(dblClick.count(), 0);
    if (clics)
        QCOMPARE(filaEnClick, filaEsperada); // Click comes after Row has moved
    QItemSelectionModel *sel = b.vista()->selectionModel();
    if (filaEsperada > 0) {
        // The whole row is selected, and only it.
        const int r = b.filaDeVista(filaEsperada);
        QVERIFY(sel->isRowSelected(r));
        QCOMPARE(sel->selectedIndexes().size(), b.grid.Cols());
    } else {
        QVERIFY(!sel->hasSelection());
    }
}

void TstGrid::dobleClic_data() {
    QTest::addColumn<int>("filaAntes");
    QTest::addColumn<int>("donde");
    QTest::addColumn<int>("fila");
    QTest::addColumn<bool>("clicAntes");
    QTest::addColumn<int>("filaEsperada");
    QTest::addColumn<int>("dobles");
    QTest::newRow("fila") << 0 << int(EnFila) << 2 << true << 2 << 1;
    QTest::newRow("doble clic solo") << 1 << int(EnFila) << 4 << false << 4 << 1;
    QTest::newRow("título con fila") << 3 << int(EnTitulo) << 0 << false << 3 << 1;
    QTest::newRow("título sin fila") << 0 << int(EnTitulo) << 0 << false << 0 << 1;
    QTest::newRow("debajo de la última") << 2 << int(Debajo) << 0 << false << 2 << 0;
}

void TstGrid::dobleClic() {
    QFETCH(int, filaAntes);
    QFETCH(int, donde);
    QFETCH(int, fila);
    QFETCH(bool, clicAntes);
    QFETCH(int, filaEsperada);
    QFETCH(int, dobles);
    Banco b(5);
    QVERIFY(b.mostrar());
    b.grid.setRow(filaAntes);
    QSignalSpy dblClick(&b.grid, &Grid::DblClick);
    int filaEnDblClick = -1;
    connect(&b.grid, &Grid::DblClick, this, [&] { filaEnDblClick = b.grid.Row(); });
    QWidget *destino = nullptr;
    const QPoint p = puntoDe(b, Donde(donde), fila, &destino);
    if (clicAntes)
        QTest::mouseClick(destino, Qt::LeftButton, {}, p);
    QTest::mouseDClick(destino, Qt::LeftButton, {}, p);
    QCOMPARE(dblClick.count(), dobles);
    QCOMPARE(b.grid.Row(), filaEsperada);
    if (dobles)
        QCOMPARE(filaEnDblClick, filaEsperada); // the handler reads Row
}

void TstGrid::soloTitulos() {
    Banco b(0);
    QVERIFY(b.mostrar());
    QCOMPARE(b.grid.Rows(), 1);
    QCOMPARE(b.grid.Row(), 0);
    QCOMPARE(b.grid.TopRow(), 0);
    QSignalSpy click(&b.grid, &Grid::Click);
    QSignalSpy dblClick(&b.grid, &Grid::DblClick);
    QTest::mouseClick(b.vista()->viewport(), Qt::LeftButton, {}, QPoint(10, 10));
    QCOMPARE(click.count(), 0);
    QWidget *titulo = nullptr;
    const QPoint p = puntoDe(b, EnTitulo, 0, &titulo);
    QTest::mouseDClick(titulo, Qt::LeftButton, {}, p);
    QCOMPARE(dblClick.count(), 1);
    QCOMPARE(b.grid.Row(), 0);
    QTest::keyClick(b.vista(), Qt::Key_Down);
    QCOMPARE(b.grid.Row(), 0);
}

void TstGrid::focoNoEligeFila_data() {
    QTest::addColumn<int>("razon");
    QTest::newRow("tabulador") << int(Qt::TabFocusReason);
    QTest::newRow("programa") << int(Qt::OtherFocusReason);
}

void TstGrid::focoNoEligeFila() {
    QFETCH(int, razon);
    Banco b(5);
    QVERIFY(b.mostrar());
    b.vista()->clearFocus();
    QTRY_VERIFY(!b.vista()->hasFocus());
    b.vista()->setFocus(Qt::FocusReason(razon));
    QTRY_VERIFY(b.vista()->hasFocus());
    // The focus alone chooses no row: a double click on the title row would open nothing.
    QCOMPARE(b.grid.Row(), 0);
    QVERIFY(!b.vista()->selectionModel()->hasSelection());
    QTest::keyClick(b.vista(), Qt::Key_Down);
    QCOMPARE(b.grid.Row(), 1);
    QVERIFY(b.vista()->selectionModel()->isRowSelected(0));
}

void TstGrid::teclas_data() {
    QTest::addColumn<QList<int>>("ocultas");
    QTest::addColumn<int>("filaAntes");
    QTest::addColumn<int>("tecla");
    QTest::addColumn<int>("veces");
    QTest::addColumn<int>("filaEsperada");
    QTest::newRow("abajo") << QList<int>{} << 1 << int(Qt::Key_Down) << 1 << 2;
    QTest::newRow("abajo dos") << QList<int>{} << 2 << int(Qt::Key_Down) << 2 << 4;
    QTest::newRow("abajo salta ocultas") << QList<int>{2, 3} << 1 << int(Qt::Key_Down) << 1 << 4;
    QTest::newRow("arriba salta ocultas") << QList<int>{2, 3} << 4 << int(Qt::Key_Up) << 1 << 1;
    QTest::newRow("arriba en la primera") << QList<int>{} << 1 << int(Qt::Key_Up) << 1 << 1;
    QTest::newRow("abajo en la última") << QList<int>{} << 5 << int(Qt::Key_Down) << 2 << 5;
}

void TstGrid::teclas() {
    QFETCH(QList<int>, ocultas);
    QFETCH(int, filaAntes);
    QFETCH(int, tecla);
    QFETCH(int, veces);
    QFETCH(int, filaEsperada);
    Banco b(5);
    QVERIFY(b.mostrar());
    ocultar(b.grid, ocultas);
    b.grid.setRow(filaAntes);
    b.vista()->setFocus();
    QSignalSpy click(&b.grid, &Grid::Click);
    for (int i = 0; i < veces; ++i)
        QTest::keyClick(b.vista(), Qt::Key(tecla));
    QCOMPARE(b.grid.Row(), filaEsperada);
    QCOMPARE(click.count(), 0);
    QVERIFY(b.vista()->selectionModel()->isRowSelected(b.filaDeVista(filaEsperada)));
}

void TstGrid::ponerFila_data() {
    QTest::addColumn<int>("fila");
    QTest::newRow("cerca") << 3;
    QTest::newRow("lejos") << 150;
    QTest::newRow("la última") << 200;
    QTest::newRow("ninguna") << 0;
}

void TstGrid::ponerFila() {
    QFETCH(int, fila);
    Banco b(200);
    QVERIFY(b.mostrar());
    QSignalSpy click(&b.grid, &Grid::Click);
    b.grid.setRow(fila);
    QCOMPARE(b.grid.Row(), fila);
    QCOMPARE(click.count(), 0);
    QItemSelectionModel *sel = b.vista()->selectionModel();
    if (fila == 0) {
        QVERIFY(!sel->hasSelection());
        return;
    }
    QVERIFY(sel->isRowSelected(fila - 1));
    QCOMPARE(sel->selectedRows().size(), 1);
    // Scrolled so that the row shows whole.
    const QRect r = b.vista()->visualRect(b.vista()->model()->index(fila - 1, 0));
    QVERIFY(b.vista()->viewport()->rect().contains(r));
}

// ---- scrolling ----

void TstGrid::filaSuperior_data() {
    QTest::addColumn<QList<int>>("ocultas");
    QTest::addColumn<int>("arriba");
    QTest::addColumn<int>("esperada");
    QTest::newRow("primera") << QList<int>{} << 1 << 1;
    QTest::newRow("en medio") << QList<int>{} << 50 << 50;
    QTest::newRow("oculta: la siguiente a la vista") << rango(50, 59) << 50 << 60;
    QTest::newRow("ocultas encima") << rango(1, 30) << 40 << 40;
}

void TstGrid::filaSuperior() {
    QFETCH(QList<int>, ocultas);
    QFETCH(int, arriba);
    QFETCH(int, esperada);
    Banco b(200);
    QVERIFY(b.mostrar());
    ocultar(b.grid, ocultas);
    b.grid.setTopRow(arriba);
    QCOMPARE(b.grid.TopRow(), esperada);
    QCOMPARE(b.vista()->rowAt(0), b.filaDeVista(esperada));
}

void TstGrid::filaSuperiorAlOcultarEncima() {
    Banco b(200);
    QVERIFY(b.mostrar());
    b.grid.setTopRow(80);
    QCOMPARE(b.grid.TopRow(), 80);
    // Rows hidden and shown above the top don't move what the operator sees.
    ocultar(b.grid, rango(10, 60));
    QCoreApplication::processEvents();
    QCOMPARE(b.grid.TopRow(), 80);
    deshacerFiltro(b.grid);
    QCoreApplication::processEvents();
    QCOMPARE(b.grid.TopRow(), 80);
    // The top row itself hidden: the next shown one takes its place.
    ocultar(b.grid, {80, 81});
    QCoreApplication::processEvents();
    QCOMPARE(b.grid.TopRow(), 82);
}

void TstGrid::recargaVuelveArriba_data() {
    QTest::addColumn<int>("filasIntermedias");
    QTest::addColumn<int>("arribaEsperada");
    QTest::newRow("vaciada y llena otra vez") << 1 << 1;
    QTest::newRow("encogida bajo la de arriba") << 30 << 29;
    QTest::newRow("encogida por debajo de ella") << 150 << 80;
}

void TstGrid::recargaVuelveArriba() {
    QFETCH(int, filasIntermedias);
    QFETCH(int, arribaEsperada);
    Banco b(200);
    QVERIFY(b.mostrar());
    b.grid.setTopRow(80);
    // A refill as the grid service does it: down to the rows kept, then up again.
    b.grid.setRows(filasIntermedias);
    b.grid.setRows(201);
    for (int f = filasIntermedias; f <= 200; ++f)
        b.grid.setTextMatrix(f, 0, QStringLiteral("f%1").arg(f));
    QCoreApplication::processEvents();
    QCOMPARE(b.grid.TopRow(), arribaEsperada);
}

// ---- columns and look ----

void TstGrid::anchoCero() {
    Banco b(4);
    QVERIFY(b.mostrar());
    QTableView *v = b.vista();
    b.grid.setColWidth(3, 0);
    QCOMPARE(b.grid.ColWidth(3), 0.0);
    QVERIFY(v->isColumnHidden(3));
    QVERIFY(!v->isColumnHidden(2));
    // Hidden, but its texts stay: the screens keep their codes there.
    QCOMPARE(b.grid.TextMatrix(2, 3), QStringLiteral("c2"));
    b.grid.setTextMatrix(2, 3, QStringLiteral("41"));
    QCOMPARE(b.grid.TextMatrix(2, 3), QStringLiteral("41"));
    b.grid.setRows(10); // a new publication keeps the column hidden
    QCoreApplication::processEvents();
    QVERIFY(v->isColumnHidden(3));
    QCOMPARE(v->model()->index(1, 3).data().toString(), QStringLiteral("41"));
    b.grid.setColWidth(3, 1500);
    QVERIFY(!v->isColumnHidden(3));
    QCOMPARE(v->columnWidth(3), 100);
    b.grid.setColWidth(3, -1);
    QCOMPARE(b.grid.ColWidth(3), AnchoColumnaPorOmision);
    QCOMPARE(v->columnWidth(3), APixeles(AnchoColumnaPorOmision));
}

void TstGrid::alineacion_data() {
    QTest::addColumn<int>("alineacion");
    QTest::addColumn<int>("horizontal");
    QTest::newRow("Izquierda") << int(AlineacionColumna::Izquierda) << int(Qt::AlignLeft);
    QTest::newRow("Centrado") << int(AlineacionColumna::Centrado) << int(Qt::AlignHCenter);
    QTest::newRow("Derecha") << int(AlineacionColumna::Derecha) << int(Qt::AlignRight);
}

void TstGrid::alineacion() {
    QFETCH(int, alineacion);
    QFETCH(int, horizontal);
    Banco b(3);
    b.grid.setColAlignment(1, AlineacionColumna(alineacion));
    QCOMPARE(b.grid.ColAlignment(1), AlineacionColumna(alineacion));
    const QAbstractItemModel *m = b.vista()->model();
    const int celda = m->index(1, 1).data(Qt::TextAlignmentRole).toInt();
    QCOMPARE(celda & int(Qt::AlignHorizontal_Mask), horizontal);
    QCOMPARE(celda & int(Qt::AlignVertical_Mask), int(Qt::AlignVCenter));
    const int titulo = m->headerData(1, Qt::Horizontal, Qt::TextAlignmentRole).toInt();
    QCOMPARE(titulo & int(Qt::AlignHorizontal_Mask), horizontal);
    // The other columns keep theirs.
    QCOMPARE(m->index(1, 0).data(Qt::TextAlignmentRole).toInt() & int(Qt::AlignHorizontal_Mask),
             int(Qt::AlignLeft));
}

void TstGrid::colores() {
    DisenoGrid d = diseno(3, 4);
    d.backColor = RGB(250, 240, 230);
    d.backColorFixed = RGB(217, 231, 247);
    d.foreColorFixed = RGB(10, 20, 30);
    d.backColorSel = RGB(255, 255, 0);
    d.foreColorSel = RGB(0, 0, 0);
    d.backColorBkg = RGB(255, 255, 255);
    Banco b(2, d);
    QTableView *v = b.vista();
    const QAbstractItemModel *m = v->model();
    QCOMPARE(b.grid.BackColor(), RGB(250, 240, 230));
    QCOMPARE(m->index(0, 0).data(Qt::BackgroundRole).value<QColor>(), QColor(250, 240, 230));
    QCOMPARE(m->headerData(0, Qt::Horizontal, Qt::BackgroundRole).value<QColor>(),
             QColor(217, 231, 247));
    QCOMPARE(m->headerData(0, Qt::Horizontal, Qt::ForegroundRole).value<QColor>(),
             QColor(10, 20, 30));
    QCOMPARE(v->palette().color(QPalette::Active, QPalette::Highlight), QColor(255, 255, 0));
    QCOMPARE(v->palette().color(QPalette::Inactive, QPalette::HighlightedText), QColor(0, 0, 0));
    QCOMPARE(v->palette().color(QPalette::Base), QColor(255, 255, 255));

    b.grid.setBackColor(RGB(1, 2, 3));
    b.grid.setBackColorFixed(RGB(4, 5, 6));
    b.grid.setBackColorSel(RGB(7, 8, 9));
    b.grid.setForeColorSel(RGB(10, 11, 12));
    QCOMPARE(b.grid.BackColor(), RGB(1, 2, 3));
    QCOMPARE(b.grid.BackColorFixed(), RGB(4, 5, 6));
    QCOMPARE(b.grid.BackColorSel(), RGB(7, 8, 9));
    QCOMPARE(b.grid.ForeColorSel(), RGB(10, 11, 12));
    QCOMPARE(m->index(1, 2).data(Qt::BackgroundRole).value<QColor>(), QColor(1, 2, 3));
    QCOMPARE(m->headerData(3, Qt::Horizontal, Qt::BackgroundRole).value<QColor>(), QColor(4, 5, 6));
    QCOMPARE(v->palette().color(QPalette::Inactive, QPalette::Highlight), QColor(7, 8, 9));
    QCOMPARE(v->palette().color(QPalette::Active, QPalette::HighlightedText), QColor(10, 11, 12));
}

void TstGrid::resaltado_data() {
    QTest::addColumn<int>("highLight");
    QTest::addColumn<bool>("conFoco");
    QTest::addColumn<bool>("marcada");
    QTest::newRow("nunca, con foco") << 0 << true << false;
    QTest::newRow("siempre, sin foco") << 1 << false << true;
    QTest::newRow("siempre, con foco") << 1 << true << true;
    QTest::newRow("con foco, con foco") << 2 << true << true;
    QTest::newRow("con foco, sin foco") << 2 << false << false;
}

void TstGrid::resaltado() {
    QFETCH(int, highLight);
    QFETCH(bool, conFoco);
    QFETCH(bool, marcada);
    DisenoGrid d = diseno(2, 4);
    d.highLight = highLight;
    d.backColor = RGB(200, 220, 240);
    d.backColorSel = RGB(255, 255, 0);
    Banco b(4, d);
    QVERIFY(b.mostrar());
    QTableView *v = b.vista();
    b.grid.setRow(2);
    if (conFoco) {
        v->setFocus();
        QTRY_VERIFY(v->hasFocus());
    } else {
        v->clearFocus();
        QTRY_VERIFY(!v->hasFocus());
    }
    // Column 2 is empty: its middle shows the cell's background alone.
    const QRect celda = v->visualRect(v->model()->index(1, 2));
    const QImage imagen = v->viewport()->grab().toImage();
    const QColor visto = imagen.pixelColor(celda.center() * imagen.devicePixelRatio());
    QCOMPARE(visto, marcada ? QColor(255, 255, 0) : QColor(200, 220, 240));
    // A row that isn't selected always shows BackColor.
    const QRect otra = v->visualRect(v->model()->index(2, 2));
    QCOMPARE(imagen.pixelColor(otra.center() * imagen.devicePixelRatio()), QColor(200, 220, 240));
}

QTEST_MAIN(TstGrid)
#include "tst_grid.moc"
