// The shortcuts of the context menus, named as the keys of a Spanish keyboard are.
#include "atajos.h"

#include <QAction>
#include <QStyleOptionMenuItem>
#include <utility>

namespace {

/// The keys whose label on a Spanish keyboard is not Qt's English name.
QString NombreTecla(int tecla) {
    static const std::pair<int, const char16_t *> nombres[] = {
        {Qt::Key_Delete, u"Supr"},   {Qt::Key_Insert, u"Insert"},
        {Qt::Key_Home, u"Inicio"},   {Qt::Key_End, u"Fin"},
        {Qt::Key_PageUp, u"RePág"},  {Qt::Key_PageDown, u"AvPág"},
        {Qt::Key_Return, u"Intro"},  {Qt::Key_Enter, u"Intro"},
        {Qt::Key_Escape, u"Esc"},    {Qt::Key_Backspace, u"Retroceso"},
        {Qt::Key_Space, u"Espacio"}, {Qt::Key_Tab, u"Tab"},
        {Qt::Key_Menu, u"Menú"},     {Qt::Key_Left, u"Izquierda"},
        {Qt::Key_Right, u"Derecha"}, {Qt::Key_Up, u"Arriba"},
        {Qt::Key_Down, u"Abajo"},    {Qt::Key_Print, u"Impr Pant"},
    };
    for (const auto &[clave, nombre] : nombres)
        if (clave == tecla)
            return QString::fromUtf16(nombre);
    // Letters, digits and F1…F12 read the same in both languages.
    return QKeySequence(tecla).toString(QKeySequence::PortableText);
}

} // namespace

QString TextoAtajo(const QKeySequence &atajo) {
    QStringList pulsaciones;
    for (int i = 0; i < atajo.count(); ++i) {
        const QKeyCombination combinacion = atajo[i];
        const Qt::KeyboardModifiers mod = combinacion.keyboardModifiers();
        QString texto;
        if (mod & Qt::ControlModifier)
            texto += QStringLiteral("Ctrl+");
        if (mod & Qt::AltModifier)
            texto += QStringLiteral("Alt+");
        if (mod & Qt::ShiftModifier)
            texto += QStringLiteral("Mayús+");
        if (mod & Qt::MetaModifier)
            texto += QStringLiteral("Win+");
        pulsaciones << texto + NombreTecla(int(combinacion.key()));
    }
    return pulsaciones.join(QStringLiteral(", "));
}

void MenuAtajos::initStyleOption(QStyleOptionMenuItem *opcion, const QAction *accion) const {
    QMenu::initStyleOption(opcion, accion);
    // Qt has put its own name of the shortcut after the tab; the same width is measured from
    // this text, so the menu is as wide as what it shows.
    const qsizetype tab = opcion->text.indexOf(u'\t');
    if (tab >= 0 && !accion->shortcut().isEmpty())
        opcion->text = opcion->text.left(tab + 1) + TextoAtajo(accion->shortcut());
}
