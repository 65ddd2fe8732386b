#pragma once

#include "colores.h"

#include <QFlags>

#include <span>

namespace Pantalla {

/// A screen as data: one row per control, in the order of the design (within one container
/// an earlier control lies in front of a later one), positions and sizes in twips relative
/// to the container. The builder (Form::Load) turns a table into widgets.

enum class ClaseControl {
    Frame,
    Label,
    TextBox,
    CommandButton,
    PictureBox,
    Timer,
    Grid,
    DTPicker,
    VisorAyuda
};

/// Appearance flags of a design row.
enum class Estilo : unsigned {
    Oculto = 1u << 0,       ///< not visible at design
    SinBorde = 1u << 1,     ///< frames: no border, so the caption never shows
    Transparente = 1u << 2, ///< labels: the container's colour shows through
    AutoSize = 1u << 3,     ///< labels: sized to their text
    Centrado = 1u << 4,     ///< text centred
    Derecha = 1u << 5,      ///< text right-aligned
    Bloqueado = 1u << 6,    ///< text boxes: Locked, read only
    SinTabStop = 1u << 7,   ///< text boxes: not reached by Tab
    Grafico = 1u << 8,      ///< command buttons: Style 1, a picture above the caption
};
Q_DECLARE_FLAGS(Estilos, Estilo)
Q_DECLARE_OPERATORS_FOR_FLAGS(Estilos)

struct Fuente {
    const char *familia = nullptr; ///< nullptr: the class's default font
    double puntos = 0;
    bool negrita = false;
};

/// The design values of a grid (MSFlexGrid).
struct DisenoGrid {
    int rows = 2, cols = 2, fixedRows = 1, fixedCols = 0;
    ColorOLE backColor = RGB(255, 255, 255);
    ColorOLE foreColor = ColorSistema(8);
    ColorOLE backColorFixed = RGB(217, 231, 247);
    ColorOLE foreColorFixed = ColorSistema(18);
    ColorOLE backColorSel = RGB(255, 255, 0);
    ColorOLE foreColorSel = RGB(0, 0, 0);
    ColorOLE backColorBkg = RGB(255, 255, 255);
    ColorOLE gridColor = RGB(192, 192, 192);
    /// As designed; kept with the design though the grid draws every line in gridColor.
    ColorOLE gridColorFixed = RGB(0, 0, 0);
    int highLight = 2;     ///< 0 never, 1 always, 2 only with focus
    int scrollBars = 2;    ///< 0 none, 1 horizontal, 2 vertical, 3 both
    int selectionMode = 1; ///< 0 free, 1 by row
};

struct DisenoControl {
    const char *nombre;
    ClaseControl clase;
    const char *contenedor; ///< nullptr: the screen itself
    int left, top, width, height;
    int tab = 0;
    const char *texto = "";
    Fuente fuente = {};
    ColorOLE back = SinColor;
    ColorOLE fore = SinColor;
    Estilos estilo = {};
    const char *tooltip = "";
    const char *imagen = nullptr;     ///< resource path of a picture
    const DisenoGrid *grid = nullptr; ///< grids only
    int intervalo = 0;                ///< timers only, in ms
    bool habilitado = true;           ///< timers: Enabled at design
};

struct DisenoFormulario {
    const char *nombre;
    const char *caption;
    int clientWidth, clientHeight; ///< twips
    const char *icono;             ///< resource path
    std::span<const DisenoControl> controles;
};

} // namespace Pantalla
