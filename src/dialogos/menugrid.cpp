// The context menu of a grid, and the shortcuts of its items.
#include "menugrid.h"

#include "atajos.h"

#include "platform/ui/form.h"
#include "platform/ui/grid.h"
#include "platform/ui/modelogrid.h"

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QTableView>

using namespace Pantalla;

MenuGrid::MenuGrid(Grid &g) : QObject(&g), grid(g) {
    menuContextual = new MenuAtajos(grid.vista());
    QTableView *v = grid.vista();
    v->installEventFilter(this);
    v->viewport()->installEventFilter(this);
    v->horizontalHeader()->viewport()->installEventFilter(this);
}

MenuGrid::~MenuGrid() {
    // The view may already be going with the screen's window, taking the menu with it.
    if (menuContextual)
        delete menuContextual.data();
}

QAction *MenuGrid::Agregar(const QString &texto, const QKeySequence &atajo,
                           std::function<void()> manejador, Habilitado habilitado) {
    QAction *accion = menuContextual->addAction(texto);
    accion->setShortcut(atajo);
    // Shown in the menu, and caught by this object's filter while the grid has the focus: the
    // action itself sits on no widget, so it takes no key from the rest of the screen.
    accion->setShortcutVisibleInContextMenu(true);
    connect(accion, &QAction::triggered, this, [m = std::move(manejador)] { Form::Atender(m); });
    items.append({accion, std::move(habilitado)});
    return accion;
}

void MenuGrid::Separador() {
    menuContextual->addSeparator();
}

void MenuGrid::preparar(int fila) {
    for (const auto &[accion, habilitado] : std::as_const(items)) {
        bool si = false;
        // Asking may read the database; a failure there leaves the item disabled, and the
        // error report says why.
        Form::Atender([&] { si = !habilitado || habilitado(fila); });
        accion->setEnabled(si && !Form::Terminando());
    }
}

void MenuGrid::Abrir(int fila, const QPoint &donde) {
    filaPulsada = fila;
    if (fila > 0)
        grid.setRow(fila);
    preparar(fila);
    menuContextual->popup(donde);
}

int MenuGrid::filaEn(const QPoint &punto) const {
    grid.Refresh(); // the view's rows as the texts now stand
    const QModelIndex indice = grid.vista()->indexAt(punto);
    return indice.isValid() ? grid.modelo()->filaDeGrid(indice.row()) : -1;
}

QPoint MenuGrid::bajoFilaActual() const {
    QTableView *v = grid.vista();
    const int filaModelo = grid.Row() > 0 ? grid.modelo()->filaDeModelo(grid.Row()) : -1;
    if (filaModelo < 0)
        return v->viewport()->mapToGlobal(QPoint(0, 0));
    const QRect celda = v->visualRect(grid.modelo()->index(filaModelo, 0));
    return v->viewport()->mapToGlobal(celda.bottomLeft());
}

void MenuGrid::menuPedido(QObject *objeto, QContextMenuEvent *e) {
    QTableView *v = grid.vista();
    e->accept();
    if (e->reason() == QContextMenuEvent::Keyboard)
        Abrir(grid.Row() > 0 ? grid.Row() : -1, bajoFilaActual());
    else if (objeto == v->horizontalHeader()->viewport())
        Abrir(0, e->globalPos());
    else
        Abrir(filaEn(v->viewport()->mapFrom(qobject_cast<QWidget *>(objeto), e->pos())),
              e->globalPos());
}

bool MenuGrid::eventFilter(QObject *objeto, QEvent *e) {
    if (e->type() == QEvent::ContextMenu) {
        menuPedido(objeto, static_cast<QContextMenuEvent *>(e));
        return true;
    }
    if (e->type() != QEvent::KeyPress || objeto != grid.vista())
        return false;
    auto *tecla = static_cast<QKeyEvent *>(e);
    const QKeySequence pulsada(tecla->keyCombination());
    if (tecla->key() == Qt::Key_Menu || pulsada == QKeySequence(Qt::SHIFT | Qt::Key_F10)) {
        tecla->accept();
        Abrir(grid.Row() > 0 ? grid.Row() : -1, bajoFilaActual());
        return true;
    }
    for (QAction *accion : menuContextual->actions()) {
        if (accion->shortcut().isEmpty() || accion->shortcut() != pulsada)
            continue;
        tecla->accept();
        filaPulsada = grid.Row() > 0 ? grid.Row() : -1;
        preparar(filaPulsada);
        if (accion->isEnabled())
            accion->trigger();
        return true;
    }
    return false;
}
