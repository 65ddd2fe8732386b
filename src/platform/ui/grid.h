#pragma once

#include "control.h"
#include "diseno.h"

#include <QString>
#include <vector>

class QTableView;
class ModeloGrid;

/// Alignment words of a column, as the grid's formats name them.
enum class AlineacionColumna { Izquierda, Centrado, Derecha };

/// The grid control (MSFlexGrid): a table of texts addressed by (row, column), row 0 being
/// the title row and data starting at row 1 (FixedRows 1). Behind it stand a table model
/// and a view; the texts live in one row-major vector, so filling 100,000 rows costs little
/// more than building their strings.
///
/// Hiding: a data row whose RowHeight is set to 0 is hidden, and setting any height above 0
/// shows it again. The view is told once, after the current batch of changes (when control
/// returns to the event loop, or at Refresh), so a walk over all rows costs one update.
/// RowHeight answers at once: 0 for a hidden row, the title row's height for a shown one.
///
/// Row is the current row (0 when the grid has no data row or none was chosen); a click or
/// a key moves it. Click is raised after a press that changes or keeps the current row,
/// DblClick on a double click (on any row: the handler looks at Row).
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
    int Col() const;
    void setCol(int columna);
    /// The first data row that shows at the top.
    int TopRow() const;
    void setTopRow(int fila);

    const QString &TextMatrix(int fila, int columna) const;
    void setTextMatrix(int fila, int columna, const QString &texto);
    void setTextMatrix(int fila, int columna, QString &&texto);

    double RowHeight(int fila) const;
    void setRowHeight(int fila, double twips);
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

protected:
    void aplicarGeometria() override;

private:
    ModeloGrid *m;
    QTableView *v;
    int filaActual = 0;
    int colActual = 0;
};
