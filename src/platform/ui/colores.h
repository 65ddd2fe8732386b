#pragma once

#include <QColor>
#include <QtGlobal>

namespace Pantalla {

/// Colours as the screens keep them: a 32-bit value 0x00BBGGRR, or a system colour with
/// bit 31 set and its index in the low byte (7 menu text, 8 window text, 18 button text...).
using ColorOLE = qint32;

constexpr ColorOLE RGB(int r, int g, int b) {
    return ColorOLE(r | (g << 8) | (b << 16));
}
constexpr ColorOLE ColorSistema(int indice) {
    return ColorOLE(0x80000000u | unsigned(indice));
}
constexpr ColorOLE SinColor = -1; ///< in design tables: keep the platform's default

/// The colour to paint; a system colour comes from the application's palette.
QColor AColor(ColorOLE color);
/// The value of a painted colour (never a system colour).
ColorOLE DeColor(const QColor &color);

} // namespace Pantalla
