#pragma once

#include <QKeySequence>
#include <QList>
#include <QMenu>
#include <QObject>
#include <QPointer>
#include <QString>
#include <functional>
#include <utility>

namespace Pantalla {
class Grid;
} // namespace Pantalla
class QAction;
class QContextMenuEvent;
class QPoint;

/// The context menu of a grid: the right button on a data row, on the title row or below the
/// last row, or the menu key (also Shift+F10) on the current row. The screen adds its items
/// once, each with its shortcut, which the menu shows and which acts on the current row while
/// the grid has the focus.
///
/// Before the menu shows, and before a shortcut acts, each item is asked whether the row it is
/// for allows it: a data row (1..Rows-1), 0 for the title row, -1 below the last row. A
/// disabled item shows greyed, and its shortcut does nothing. A right click on a data row
/// makes it the grid's current row first, so each item's handler reads Row().
///
/// Every handler runs through Form::Atender, the screens' one error boundary. The menu is
/// shown without waiting (popup): the handler runs once the operator picks an item. The
/// object belongs to the grid and goes with it.
class MenuGrid : public QObject {
    Q_OBJECT
  public:
    /// Whether an item may act on row `fila` (see above).
    using Habilitado = std::function<bool(int fila)>;
    explicit MenuGrid(Pantalla::Grid &grid);
    ~MenuGrid() override;

    /// Appends an item. `atajo` may be empty (no shortcut); without `habilitado` the item is
    /// enabled on every row.
    QAction *Agregar(const QString &texto, const QKeySequence &atajo,
                     std::function<void()> manejador, Habilitado habilitado = {});
    void Separador();

    /// The menu, shown or not, with every item added.
    QMenu *menu() const { return menuContextual; }
    /// The row the last menu or shortcut was for (see above), -2 before any.
    int Fila() const { return filaPulsada; }
    /// Opens the menu for `fila` at `donde` (global coordinates), as the right button does.
    void Abrir(int fila, const QPoint &donde);

  private:
    bool eventFilter(QObject *objeto, QEvent *e) override;
    void menuPedido(QObject *objeto, QContextMenuEvent *e);
    /// The grid row under a point of the cells' viewport: a data row, or -1 below the rows.
    int filaEn(const QPoint &punto) const;
    /// Where the menu opened by the keyboard goes: under the current row's first cell.
    QPoint bajoFilaActual() const;

    /// Enables each item as row `fila` allows.
    void preparar(int fila);

    Pantalla::Grid &grid;
    QList<std::pair<QAction *, Habilitado>> items;
    QPointer<QMenu> menuContextual;
    int filaPulsada = -2;
};
