// The grid with 100,000 rows on screen: filling it, the walk that hides and restores rows by
// RowHeight, and the name filter that finds its rows in the names kept sorted beside the grid
// (MostrarFilasQueEmpiezan). Each is measured against the plain C++ loop that does the same
// work on a std::vector<QString>, in the same run; each repetition checks its result, so a
// fast wrong answer fails. One line a measure; the exit status is 1 on any FAIL.
// With --rapido, 2,000 rows and no time judged: that is how CTest runs it.
#include "platform/ui/grid.h"
#include "platform/ui/modelogrid.h"

#include <QAbstractItemModel>
#include <QApplication>
#include <QElapsedTimer>
#include <QTableView>
#include <QWindow>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

using namespace Pantalla;

namespace {

int Filas = 100000;
/// --rapido: few rows, every result checked, no time judged.
bool rapido = false;
constexpr int Columnas = 5;
constexpr int Repeticiones = 9;

const QString Nombres[] = {
    QStringLiteral("Camisa"),   QStringLiteral("pantalon"), QStringLiteral("Calcetin"),
    QStringLiteral("CAMISETA"), QStringLiteral("Blusa"),    QStringLiteral("chaqueta"),
    QStringLiteral("Falda"),
};

/// The text of a cell, as a listing builds it: code, name, internal code, price, section.
QString textoDe(int fila, int columna) {
    switch (columna) {
    case 0:
        return QString::number(fila);
    case 1:
        return Nombres[fila % 7] + QLatin1Char(' ') + QString::number(fila);
    case 2:
        return QString::number(fila * 3);
    case 3:
        return QString::number(fila % 1000) + QLatin1String(",50");
    default:
        return QString::number(fila % 12);
    }
}

double mediana(std::vector<double> v) {
    std::sort(v.begin(), v.end());
    return v[v.size() / 2];
}

int fallos = 0;

void comprobar(bool bien, const char *que) {
    if (!bien) {
        std::fprintf(stderr, "bench_grid: resultado erróneo: %s\n", que);
        std::exit(2);
    }
}

void informar(const char *nombre, double base, double medido, double razon, const char *meta,
              bool pasa) {
    std::printf("%-28s base %8.2f ms  medido %8.2f ms  razón %5.2f  meta %-10s %s\n", nombre, base,
                medido, razon, meta,
                rapido ? "(rápido: sin juzgar)"
                : pasa ? "PASS"
                       : "FAIL");
    if (!pasa && !rapido)
        ++fallos;
}

double medir(const std::function<void()> &trabajo) {
    QElapsedTimer t;
    t.start();
    trabajo();
    return double(t.nsecsElapsed()) / 1e6;
}

} // namespace

int main(int argc, char **argv) {
    QApplication app(argc, argv);
    rapido = QCoreApplication::arguments().contains(QStringLiteral("--rapido"));
    if (rapido)
        Filas = 2000;

    // The catalogue as the editor shows it: its design size and font, and its columns as the
    // plain mode formats them (code, name, hidden code, price, hidden section).
    Grid grid(QStringLiteral("grid_productos"), nullptr, nullptr,
              DisenoGrid{.rows = 2, .cols = Columnas});
    grid.Move(0, 0, 6960, 6885);
    grid.setFont(QFont(QStringLiteral("Verdana"), 10));
    const double anchos[Columnas] = {1200, 4000, 0, 1500, 0};
    const AlineacionColumna alineaciones[Columnas] = {
        AlineacionColumna::Centrado, AlineacionColumna::Izquierda, AlineacionColumna::Derecha,
        AlineacionColumna::Centrado, AlineacionColumna::Derecha};
    for (int c = 0; c < Columnas; ++c) {
        grid.setColWidth(c, anchos[c]);
        grid.setColAlignment(c, alineaciones[c]);
    }
    QTableView *vista = grid.vista();
    vista->show();
    for (int i = 0; i < 20 && !(vista->windowHandle() && vista->windowHandle()->isExposed()); ++i)
        QApplication::processEvents();
    comprobar(vista->isVisible(), "la rejilla no llega a mostrarse");
    const QAbstractItemModel *modelo = vista->model();

    // ---- (1) fill: setRows, then TextMatrix cell by cell, then on screen ----
    std::vector<double> base, medido;
    std::vector<QString> plano;
    for (int r = 0; r < Repeticiones; ++r) {
        base.push_back(medir([&] {
            plano.clear();
            plano.reserve(size_t(Filas) * Columnas);
            for (int f = 1; f <= Filas; ++f)
                for (int c = 0; c < Columnas; ++c)
                    plano.push_back(textoDe(f, c));
        }));
        comprobar(plano.size() == size_t(Filas) * Columnas && plano.back() == textoDe(Filas, 4),
                  "bucle plano de llenado");

        medido.push_back(medir([&] {
            grid.setRows(1);
            grid.setRows(Filas + 1);
            for (int f = 1; f <= Filas; ++f)
                for (int c = 0; c < Columnas; ++c)
                    grid.setTextMatrix(f, c, textoDe(f, c));
            grid.Refresh();
            QApplication::processEvents();
        }));
        comprobar(grid.Rows() == Filas + 1 && modelo->rowCount() == Filas,
                  "filas de la rejilla tras el llenado");
        comprobar(grid.TextMatrix(Filas, 1) == textoDe(Filas, 1) &&
                      modelo->index(Filas - 1, 1).data().toString() == textoDe(Filas, 1) &&
                      modelo->index(0, 3).data().toString() == textoDe(1, 3),
                  "textos de la rejilla tras el llenado");
    }
    {
        const double b = mediana(base), m = mediana(medido);
        informar("llenado", b, m, m / b, "<= 3x", m / b <= 3.0);
    }

    // ---- (2) one walk of the name search, hiding and restoring, then the repaint ----
    std::vector<QString> nombres;
    nombres.reserve(Filas);
    for (int f = 1; f <= Filas; ++f)
        nombres.push_back(grid.TextMatrix(f, 1));
    // Each walk starts from the previous one's result, as keystrokes do: narrowing, widening,
    // emptying the box, no match at all.
    const QString prefijos[Repeticiones] = {
        QStringLiteral("ca"),  QStringLiteral("cam"),   QStringLiteral("CAMISETA 1"),
        QStringLiteral("c"),   QStringLiteral(""),      QStringLiteral("zz"),
        QStringLiteral("pan"), QStringLiteral("Blusa"), QStringLiteral(""),
    };
    base.clear();
    medido.clear();
    // A walk is short: three rounds of the keystrokes give the median more to stand on.
    for (int i = 0; i < 3 * Repeticiones; ++i) {
        const QString &prefijo = prefijos[i % Repeticiones];
        int cuenta = 0;
        base.push_back(medir([&] {
            for (const QString &n : nombres)
                if (n.startsWith(prefijo, Qt::CaseInsensitive))
                    ++cuenta;
        }));

        medido.push_back(medir([&] {
            for (int f = 1; f < grid.Rows(); ++f) {
                if (grid.TextMatrix(f, 1).startsWith(prefijo, Qt::CaseInsensitive)) {
                    if (grid.RowHeight(f) == 0)
                        grid.setRowHeight(f, grid.RowHeight(0));
                } else {
                    grid.setRowHeight(f, 0);
                }
            }
            grid.Refresh();
            QApplication::processEvents();
        }));
        comprobar(modelo->rowCount() == cuenta, "filas a la vista tras el recorrido");
        int mostradas = 0;
        for (int f = 1; f < grid.Rows(); ++f)
            mostradas += grid.RowHeight(f) > 0;
        comprobar(mostradas == cuenta, "RowHeight tras el recorrido");
        comprobar(cuenta == 0 || modelo->index(0, 1).data().toString().startsWith(
                                     prefijo, Qt::CaseInsensitive),
                  "primera fila a la vista");
    }
    {
        const double b = mediana(base), m = mediana(medido);
        // Only the time is judged. The grid keeps its texts compactly (a million products in
        // little memory), so a walk through TextMatrix makes a text a row that the plain
        // vector of strings already holds: the ratio says what that costs. The operator's
        // filter doesn't walk (measure 3).
        informar("búsqueda: recorrido", b, m, m / b, "<= 16 ms", m <= 16.0);
    }

    // ---- (3) the same keystrokes through the sorted names, then the repaint ----
    // The rows are shuffled first, so that no order of theirs can help: the names' order
    // lives beside the grid. The first keystroke sorts them; it is measured on its own.
    for (int f = 1; f <= Filas; ++f)
        grid.setTextMatrix(f, 1, nombres[size_t((size_t(f) * 7919) % size_t(Filas))]);
    std::vector<QString> barajados;
    for (int f = 1; f <= Filas; ++f)
        barajados.push_back(grid.TextMatrix(f, 1));
    double orden = 0;
    base.clear();
    medido.clear();
    for (int i = 0; i < 3 * Repeticiones + 1; ++i) {
        const QString &prefijo = i == 0 ? prefijos[0] : prefijos[(i - 1) % Repeticiones];
        int cuenta = 0;
        const double b = medir([&] {
            for (const QString &n : barajados)
                if (n.startsWith(prefijo, Qt::CaseInsensitive))
                    ++cuenta;
        });
        const double m = medir([&] {
            grid.MostrarFilasQueEmpiezan(1, prefijo, grid.RowHeight(0));
            grid.Refresh();
            QApplication::processEvents();
        });
        if (i == 0) {
            orden = m;
        } else {
            base.push_back(b);
            medido.push_back(m);
        }
        comprobar(modelo->rowCount() == cuenta, "filas a la vista tras el filtro");
        for (int f = 1; f < grid.Rows(); ++f)
            comprobar((grid.RowHeight(f) > 0) ==
                          grid.TextMatrix(f, 1).startsWith(prefijo, Qt::CaseInsensitive),
                      "cada fila, a la vista solo si empieza por el texto");
    }
    std::printf("%-28s %8.2f ms (la primera tecla ordena los nombres)\n", "filtro: orden", orden);
    {
        const double b = mediana(base), m = mediana(medido);
        informar("filtro: una tecla (abs)", b, m, m / b, "<= 16 ms", m <= 16.0);
        informar("filtro: una tecla (razón)", b, m, m / b, "<= 3x", m / b <= 3.0);
    }
    return fallos == 0 ? 0 : 1;
}
