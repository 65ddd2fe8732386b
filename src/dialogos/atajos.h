#pragma once

#include <QKeySequence>
#include <QMenu>
#include <QString>

/// A shortcut as a Spanish keyboard labels its keys: "Supr", "Ctrl+M", "Mayús+F10", "Intro".
/// Qt's own names are the English ones ("Del") or, with Qt's Spanish translation, words no
/// key shows ("Suprimir", "Control"); the operator looks for the key's label.
QString TextoAtajo(const QKeySequence &atajo);

/// A menu that shows each item's shortcut with TextoAtajo, whatever translation Qt has loaded.
class MenuAtajos : public QMenu {
  public:
    using QMenu::QMenu;
    /// What the menu draws and measures for `accion`: its text, a tab, and its shortcut.
    void initStyleOption(QStyleOptionMenuItem *opcion, const QAction *accion) const override;
};
