#pragma once

#include "platform/ui/diseno.h"

/// What the two screens' designs share.

constexpr Fuente Verdana(double puntos, bool negrita = false) {
    return {"Verdana", puntos, negrita};
}

/// The suite's list grid: white, pale blue titles, yellow selection by row, shown only
/// with the focus, a vertical scroll bar.
constexpr DisenoGrid GridLista{
    .rows = 2,
    .cols = 4,
    .fixedRows = 1,
    .fixedCols = 0,
    .backColor = RGB(255, 255, 255),
    .foreColor = ColorSistema(8),
    .backColorFixed = RGB(217, 231, 247),
    .foreColorFixed = ColorSistema(18),
    .backColorSel = RGB(255, 255, 0),
    .foreColorSel = RGB(0, 0, 0),
    .backColorBkg = RGB(255, 255, 255),
    .gridColor = RGB(192, 192, 192),
    .gridColorFixed = RGB(0, 0, 0),
    .highLight = 2,
    .scrollBars = 2,
    .selectionMode = 1,
};
