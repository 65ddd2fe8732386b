#pragma once

// What the tests of the context menus share: the right button and the menu's items as the
// operator reaches them.
#include "platform/ui/grid.h"
#include "platform/ui/modelogrid.h"

#include <QAction>
#include <QApplication>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QMenu>
#include <QTableView>
#include <QtTest>

/// The right button on grid row `fila` of `g`: a data row, 0 the title row, -1 below the last
/// row. Gives the menu that shows, or nullptr when none does.
inline QMenu *ClicDerecho(Grid &g, int fila) {
    QTableView *v = g.vista();
    QWidget *destino = fila == 0 ? v->horizontalHeader()->viewport() : v->viewport();
    QPoint punto = destino->rect().center();
    if (fila > 0)
        punto = v->visualRect(g.modelo()->index(g.modelo()->filaDeModelo(fila), 1)).center();
    else if (fila < 0)
        punto = QPoint(4, v->viewport()->height() - 4);
    QContextMenuEvent e(QContextMenuEvent::Mouse, punto, destino->mapToGlobal(punto));
    QApplication::sendEvent(destino, &e);
    auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
    return menu && menu->isVisible() ? menu : nullptr;
}

/// The item of `menu` whose text is `texto`, or nullptr.
inline QAction *Item(QMenu *menu, const QString &texto) {
    if (!menu)
        return nullptr;
    for (QAction *a : menu->actions())
        if (a->text() == texto)
            return a;
    return nullptr;
}

/// The texts of the enabled items of `menu`, in its order.
inline QStringList Habilitados(QMenu *menu) {
    QStringList textos;
    for (QAction *a : menu->actions())
        if (!a->isSeparator() && a->isEnabled())
            textos << a->text();
    return textos;
}

/// Clicks item `texto` of the shown `menu` with the mouse; false when it has no such item.
inline bool Elegir(QMenu *menu, const QString &texto) {
    QAction *a = Item(menu, texto);
    if (!a)
        return false;
    QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(a).center());
    return true;
}

/// Closes whatever menu is still shown.
inline void CerrarMenus() {
    while (QWidget *w = QApplication::activePopupWidget())
        w->close();
}
