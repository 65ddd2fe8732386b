#include "colores.h"

#include <QGuiApplication>
#include <QPalette>

namespace Pantalla {

namespace {

/// The palette role that stands for each of the old system colour indices; the indices with
/// no close relative in a Qt palette borrow the nearest one.
QPalette::ColorRole RolSistema(int indice) {
    switch (indice) {
    case 0:
        return QPalette::Button; // scroll bar
    case 1:
        return QPalette::Dark; // desktop
    case 2:
        return QPalette::Highlight; // active title bar
    case 3:
        return QPalette::Mid; // inactive title bar
    case 4:
        return QPalette::Window; // menu background
    case 5:
        return QPalette::Base; // window background (inside boxes and lists)
    case 6:
        return QPalette::Shadow; // window frame
    case 7:
        return QPalette::WindowText; // menu text
    case 8:
        return QPalette::Text; // window text
    case 9:
        return QPalette::HighlightedText; // title bar text
    case 10:                              // active border
    case 11:
        return QPalette::Window; // inactive border
    case 12:
        return QPalette::Dark; // application workspace
    case 13:
        return QPalette::Highlight; // highlight
    case 14:
        return QPalette::HighlightedText; // highlighted text
    case 15:
        return QPalette::Button; // button face
    case 16:
        return QPalette::Dark; // button shadow
    case 17:
        return QPalette::PlaceholderText; // grey text
    case 18:
        return QPalette::ButtonText; // button text
    case 19:
        return QPalette::WindowText; // inactive title bar text
    case 20:
        return QPalette::Light; // 3D highlight
    case 21:
        return QPalette::Shadow; // 3D dark shadow
    case 22:
        return QPalette::Midlight; // 3D light
    case 23:
        return QPalette::ToolTipText; // tooltip text
    case 24:
        return QPalette::ToolTipBase; // tooltip background
    default:
        return QPalette::Window;
    }
}

} // namespace

QColor AColor(ColorOLE color) {
    const quint32 v = quint32(color);
    if (v & 0x80000000u) {
        const QPalette paleta = QGuiApplication::palette();
        return paleta.color(QPalette::Active, RolSistema(int(v & 0xFFu)));
    }
    return QColor(int(v & 0xFFu), int((v >> 8) & 0xFFu), int((v >> 16) & 0xFFu));
}

ColorOLE DeColor(const QColor &color) {
    const QColor c = color.toRgb();
    return RGB(c.red(), c.green(), c.blue());
}

} // namespace Pantalla
