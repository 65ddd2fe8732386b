#pragma once

#include "platform/ui/diseno.h"

/// What the two screens' designs share.

constexpr Pantalla::Fuente Verdana(double puntos, bool negrita = false) {
    return {"Verdana", puntos, negrita};
}

/// The suite's list grid: white, pale blue titles, yellow selection by row, shown only
/// with the focus, a vertical scroll bar.
constexpr Pantalla::DisenoGrid GridLista{
    .rows = 2,
    .cols = 4,
    .fixedRows = 1,
    .fixedCols = 0,
    .backColor = Pantalla::RGB(255, 255, 255),
    .foreColor = Pantalla::ColorSistema(8),
    .backColorFixed = Pantalla::RGB(217, 231, 247),
    .foreColorFixed = Pantalla::ColorSistema(18),
    .backColorSel = Pantalla::RGB(255, 255, 0),
    .foreColorSel = Pantalla::RGB(0, 0, 0),
    .backColorBkg = Pantalla::RGB(255, 255, 255),
    .gridColor = Pantalla::RGB(192, 192, 192),
    .gridColorFixed = Pantalla::RGB(0, 0, 0),
    .highLight = 2,
    .scrollBars = 2,
    .selectionMode = 1,
};
