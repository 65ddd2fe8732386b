#pragma once

// What the tests of the context menus share: the right button and the menu's items as the
// operator reaches them.
#include "platform/ui/grid.h"
#include "platform/ui/modelogrid.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QMenu>
#include <QPointer>
#include <QStyleOptionMenuItem>
#include <QTableView>
#include <QTimer>
#include <QtTest>
#include <functional>

/// The right button on grid row `fila` of `g`: a data row, 0 the title row, -1 below the last
/// row. Gives the menu that shows, or nullptr when none does.
inline QMenu *ClicDerecho(Pantalla::Grid &g, int fila) {
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

/// The shortcut that `menu` shows beside item `texto`, as it draws it (QMenu's own style option,
/// whatever the menu's class); "?" when there is no such item.
inline QString AtajoMostrado(QMenu *menu, const QString &texto) {
    struct Abierto : QMenu {
        using QMenu::initStyleOption;
    };
    QAction *a = Item(menu, texto);
    if (!a)
        return QStringLiteral("?");
    QStyleOptionMenuItem opcion;
    (menu->*(&Abierto::initStyleOption))(&opcion, a);
    return opcion.text.section(u'\t', 1);
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

/// Runs `accion`; when a modal dialog of class `D` shows meanwhile, runs `mientras` in it, and
/// closes it (Cancelar) if it is still open after. True when the dialog showed.
template <class D>
bool ConDialogo(const std::function<void()> &accion, const std::function<void(D &)> &mientras) {
    bool visto = false;
    QTimer sondeo;
    sondeo.setInterval(5);
    QObject::connect(&sondeo, &QTimer::timeout, [&] {
        QPointer<D> d = qobject_cast<D *>(QApplication::activeModalWidget());
        if (!d || !d->isVisible())
            return;
        sondeo.stop();
        visto = true;
        mientras(*d); // a failed check returns from here; the dialog is closed all the same
        if (d && d->isVisible())
            d->reject();
    });
    sondeo.start();
    accion();
    return visto;
}

/// The child of `padre` named `nombre`, of class T; fails the test when there is none.
template <class T> T *Hijo(QWidget &padre, const char *nombre) {
    T *w = padre.findChild<T *>(QLatin1String(nombre));
    if (!w)
        qWarning("No %s in the dialog", nombre);
    return w;
}

/// Clicks the button `nombre` of a dialog.
inline void Pulsar(QWidget &dialogo, const char *nombre) {
    if (auto *b = Hijo<QAbstractButton>(dialogo, nombre))
        QTest::mouseClick(b, Qt::LeftButton);
}
