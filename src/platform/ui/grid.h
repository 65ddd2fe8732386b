#pragma once

#include "control.h"
#include "diseno.h"

#include <QString>
#include <vector>

class QTableView;

namespace Pantalla {
class ModeloGrid;

/// Alignment words of a column, as the grid's formats name them.
enum class AlineacionColumna { Izquierda, Centrado, Derecha };

/// The grid control (MSFlexGrid): a table of texts addressed by (row, column), row 0 being
/// the title row and data starting at row 1 (FixedRows 1). Behind it stand a table model
/// and a view; the texts live compactly, row after row in one buffer (TextosGrid), so a
/// million rows cost little more than their characters.
///
/// Hiding: a data row whose RowHeight is set to 0 is hidden, and setting any height above 0
/// shows it again. The view is told once, after the current batch of changes (when control
/// returns to the event loop, or at Refresh), so a walk over all rows costs one update.
/// RowHeight answers at once: 0 for a hidden row, the title row's height for a shown one.
///
/// Row is the current row: the first data row after every fill (whenever Rows grows from the
/// title row alone, and at the start), 0 while the grid has no data row; a click or a key
/// moves it. Click is raised after every left press on the grid, DblClick after every left
/// double click, wherever they fall: the handler looks at Row, and at MouseRow when it
/// cares where the mouse was.
///
/// Details this grid settles:
/// - A left press on a data row makes it current and selects it, then raises Click; a press
///   on the title row, or below the last shown row, keeps Row and raises Click. A double
///   click on a data row makes it current (if the press before it hadn't) and raises
///   DblClick; elsewhere it raises DblClick with Row unchanged. MouseRow is the grid row under
///   that last press or double click: a data row, 0 for the title row, -1 below the rows.
///   Up and Down move Row over the shown rows only and raise nothing. Other buttons, and the
///   focus alone, don't move Row.
/// - Row keeps pointing at the same grid row while rows are hidden and shown; a hidden
///   current row shows no selection until it is shown again. When Rows shrinks below it, Row
///   becomes the last row (0 with the title row alone); Clear sets it to 1.
/// - Heights in twips. Shown data rows have the default height, which follows the font,
///   unless given one of their own; RowHeight(0) is the title row's height (the default until
///   set; 0 hides the title row). A negative height gives a row back the default height.
///   Heights are kept as given; the view rounds them to whole pixels.
/// - ColWidth 0 hides a column, whose texts stay readable; a negative width gives it the
///   default width. New columns are left-aligned.
/// - Bad indexes and counts throw std::out_of_range, naming the grid, the member and the
///   value, and change nothing: rows outside 0..Rows-1, columns outside 0..Cols-1, Rows or
///   Cols below 1, TopRow outside 1..Rows-1. The constructor throws std::invalid_argument
///   for a design other than one title row and no fixed column.
/// - TopRow is 0 when no data row is shown. setTopRow on a hidden row shows the next shown
///   one at the top. Hiding and showing rows leaves the top row where it was (or the next
///   shown one); a grid emptied and filled again starts at its first row.
/// - The default column width is AnchoColumnaPorOmision (modelogrid.h).
/// - vista() and modelo() publish pending changes first, so what they give is up to date.
class Grid : public Control {
    Q_OBJECT
  public:
    Grid(const QString &nombre, Control *contenedor, Form *form, const DisenoGrid &diseno);
    ~Grid() override;

    int Rows() const;
    /// Grows or shrinks the grid; new rows are empty, the title row stays.
    void setRows(int n);
    int Cols() const;
    void setCols(int n);
    int FixedRows() const;
    int FixedCols() const { return 0; }

    int Row() const;
    void setRow(int fila);
    /// Where the last left press or double click fell: its data row, 0 on the title row, -1
    /// below the last shown row; -1 before any.
    int MouseRow() const { return filaRaton; }
    int Col() const;
    void setCol(int columna);
    /// The first data row that shows at the top.
    int TopRow() const;
    void setTopRow(int fila);

    /// The cell's text, made from the compact form the grid keeps it in.
    QString TextMatrix(int fila, int columna) const;
    void setTextMatrix(int fila, int columna, const QString &texto);
    void setTextMatrix(int fila, int columna, QString &&texto);
    /// The same, from Latin-1 (or plain ASCII) bytes, with no QString made on the way.
    void setTextMatrix(int fila, int columna, QLatin1StringView texto);
    /// Whether the cell's text is exactly `texto`, read where the grid keeps it: a walk that
    /// looks for a code compares each row without making its text.
    bool TextoIgual(int fila, int columna, QStringView texto) const;

    double RowHeight(int fila) const;
    void setRowHeight(int fila, double twips);
    /// Shows exactly the data rows whose text in `columna` starts with `prefijo`, case ignored,
    /// and hides the others: the same as setting RowHeight to `twips` on each matching row
    /// that is hidden and to 0 on every other row, without a look at each row (the column's
    /// texts are kept sorted beside the grid). An empty prefix shows every row.
    void MostrarFilasQueEmpiezan(int columna, const QString &prefijo, double twips);
    /// Starts sorting `columna`'s texts for MostrarFilasQueEmpiezan in the background, once the
    /// grid is filled, so that the operator's first keystroke finds them sorted.
    void PrepararFiltro(int columna);
    double ColWidth(int columna) const;
    void setColWidth(int columna, double twips);
    AlineacionColumna ColAlignment(int columna) const;
    void setColAlignment(int columna, AlineacionColumna a);

    ColorOLE BackColor() const override;
    void setBackColor(ColorOLE c) override;
    ColorOLE BackColorFixed() const;
    void setBackColorFixed(ColorOLE c);
    ColorOLE BackColorSel() const;
    void setBackColorSel(ColorOLE c);
    ColorOLE ForeColorSel() const;
    void setForeColorSel(ColorOLE c);

    /// Brings the view up to date with the texts and hidden rows now (otherwise it happens
    /// when control returns to the event loop).
    void Refresh();
    /// Empties the grid to its title row and one empty data row.
    void Clear();

    QTableView *vista() const;
    ModeloGrid *modelo() const;

  signals:
    void Click();
    void DblClick();

  private:
    [[noreturn]] void fueraDeRango(const QString &que) const;
    [[noreturn]] void fueraDeRango(const char *miembro, int indice) const;
    [[noreturn]] void fueraDeRango(const char *miembro, int fila, int columna) const;
    void comprobarFila(const char *miembro, int fila) const;
    void comprobarColumna(const char *miembro, int columna) const;
    void comprobarCelda(const char *miembro, int fila, int columna) const;
    int filaSuperior() const;
    void antesDePublicar();
    void trasPublicar();
    void mostrarActual(bool desplazar);
    void aplicarColumna(int columna);
    void aplicarAlturas();
    void aplicarTitulo();
    void aplicarPaleta();
    void trasCambioDeFuente();

    ModeloGrid *almacen;
    QPointer<QTableView> tabla; ///< null once the window has taken the widget away
    DisenoGrid aspecto;         ///< colours and behaviour, as designed and as changed since
    int filaActual = 0;
    int colActual = 0;
    int filaRaton = -1;
    int superiorPrevio = 0;            ///< the grid row at the top before a publication
    int filasMinimas = 0;              ///< the fewest Rows since the last publication
    bool sincronizando = false;        ///< the view's current index is being set from Row
    std::vector<int> seccionesPropias; ///< view rows sized to a height of their own
};

} // namespace Pantalla
