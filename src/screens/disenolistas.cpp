#include "disenolistas.h"
#include "disenocomun.h"
#include "recursos.h"

using namespace Pantalla;

// The design tables keep the layout of the design: one control to a few lines, in the
// design's order.
// clang-format off
namespace {


// In the order of the design: within a container an earlier control lies in front.
constexpr DisenoControl controles[] = {
    {.nombre = "Open1", .clase = ClaseControl::VisorAyuda, .contenedor = nullptr,
     .left = 5235, .top = 10485, .width = 10530, .height = 9450, .tab = 6},
    {.nombre = "frCabecera", .clase = ClaseControl::Frame, .contenedor = nullptr,
     .left = 0, .top = 0, .width = 15435, .height = 10830, .tab = 0, .texto = "Frame1", .estilo = Estilo::SinBorde},
    {.nombre = "Command1", .clase = ClaseControl::CommandButton, .contenedor = "frCabecera",
     .left = 0, .top = 0, .width = 2685, .height = 300, .tab = 25,
     .texto = "Genera caption para traduccion", .estilo = Estilo::Oculto},
    {.nombre = "Picture1", .clase = ClaseControl::PictureBox, .contenedor = "frCabecera",
     .left = 255, .top = 120, .width = 765, .height = 660, .tab = 2,
     .back = RGB(230, 230, 230), .imagen = ":/imagenes/tarifas.gif"},
    {.nombre = "frHijo", .clase = ClaseControl::Frame, .contenedor = "frCabecera",
     .left = 0, .top = 1005, .width = 15345, .height = 9780, .tab = 1, .texto = "Frame1",
     .back = RGB(224, 224, 224), .estilo = Estilo::SinBorde},
    {.nombre = "frAltaLista", .clase = ClaseControl::Frame, .contenedor = "frHijo",
     .left = 3225, .top = 4365, .width = 9570, .height = 3885, .tab = 13, .texto = "Frame1",
     .estilo = Estilo::SinBorde | Estilo::Oculto},
    {.nombre = "Frame1", .clase = ClaseControl::Frame, .contenedor = "frAltaLista",
     .left = 1020, .top = 1530, .width = 7725, .height = 1065, .tab = 18, .texto = "Frame1",
     .back = RGB(255, 255, 255), .estilo = Estilo::SinBorde},
    {.nombre = "desde", .clase = ClaseControl::DTPicker, .contenedor = "Frame1",
     .left = 1605, .top = 480, .width = 2040, .height = 420, .tab = 19, .fuente = Verdana(14.25)},
    {.nombre = "hasta", .clase = ClaseControl::DTPicker, .contenedor = "Frame1",
     .left = 5355, .top = 480, .width = 2040, .height = 420, .tab = 20, .fuente = Verdana(14.25)},
    {.nombre = "Label7", .clase = ClaseControl::Label, .contenedor = "Frame1",
     .left = 360, .top = 105, .width = 4650, .height = 390, .tab = 23,
     .texto = "Precios validos en este intervalo de fechas:", .fuente = Verdana(8.25), .estilo = Estilo::Transparente},
    {.nombre = "Label3", .clase = ClaseControl::Label, .contenedor = "Frame1",
     .left = 360, .top = 570, .width = 1200, .height = 240, .tab = 22, .texto = "Fec. Desde:",
     .fuente = Verdana(9.75), .fore = RGB(0, 0, 0), .estilo = Estilo::Transparente | Estilo::AutoSize},
    {.nombre = "Label6", .clase = ClaseControl::Label, .contenedor = "Frame1",
     .left = 4125, .top = 570, .width = 1170, .height = 240, .tab = 21, .texto = "Fec. Hasta:",
     .fuente = Verdana(9.75), .fore = RGB(0, 0, 0), .estilo = Estilo::Transparente | Estilo::AutoSize},
    {.nombre = "cmdAceptar", .clase = ClaseControl::CommandButton, .contenedor = "frAltaLista",
     .left = 4770, .top = 2700, .width = 4755, .height = 1155, .tab = 17, .texto = "Aceptar",
     .estilo = Estilo::Grafico, .imagen = ":/imagenes/aceptar.gif"},
    {.nombre = "cmdCancelar", .clase = ClaseControl::CommandButton, .contenedor = "frAltaLista",
     .left = 45, .top = 2700, .width = 4755, .height = 1155, .tab = 16, .texto = "Cancelar",
     .estilo = Estilo::Grafico, .imagen = ":/imagenes/cancelar.gif"},
    {.nombre = "txtNomLista", .clase = ClaseControl::TextBox, .contenedor = "frAltaLista",
     .left = 2805, .top = 915, .width = 4320, .height = 510, .tab = 15, .texto = "", .fuente = Verdana(12)},
    {.nombre = "lblCodigo", .clase = ClaseControl::Label, .contenedor = "frAltaLista",
     .left = 255, .top = 750, .width = 750, .height = 180, .tab = 24, .texto = "lblCodigo", .estilo = Estilo::Oculto},
    {.nombre = "Label4", .clase = ClaseControl::Label, .contenedor = "frAltaLista",
     .left = 165, .top = 150, .width = 9255, .height = 570, .tab = 14,
     .texto = "Indique el nombre a la nueva lista de precios", .fuente = Verdana(15.75, true),
     .estilo = Estilo::Transparente | Estilo::Centrado},
    {.nombre = "cmdNuevo", .clase = ClaseControl::CommandButton, .contenedor = "frHijo",
     .left = 5055, .top = 8415, .width = 5115, .height = 1155, .tab = 11, .texto = "Nueva Tarifa",
     .estilo = Estilo::Grafico, .imagen = ":/imagenes/nuevo.gif"},
    {.nombre = "cmdSalir", .clase = ClaseControl::CommandButton, .contenedor = "frHijo",
     .left = 13575, .top = 8400, .width = 1605, .height = 1155, .tab = 10, .texto = "",
     .estilo = Estilo::Grafico, .imagen = ":/imagenes/salir.gif"},
    {.nombre = "tmrAyuda", .clase = ClaseControl::Timer, .contenedor = "frHijo",
     .left = 1935, .top = 9060, .width = 0, .height = 0, .intervalo = 1, .habilitado = false},
    {.nombre = "cmd_Ayuda", .clase = ClaseControl::CommandButton, .contenedor = "frHijo",
     .left = 195, .top = 8400, .width = 1080, .height = 1155, .tab = 7, .texto = "",
     .fuente = Verdana(8.25), .back = RGB(239, 239, 241), .estilo = Estilo::Grafico, .imagen = ":/imagenes/ayuda.gif"},
    {.nombre = "fr_SeparacionH1", .clase = ClaseControl::Frame, .contenedor = "frHijo",
     .left = -135, .top = 0, .width = 15360, .height = 120, .tab = 5, .texto = "Frame6",
     .back = ColorSistema(7), .estilo = Estilo::SinBorde},
    {.nombre = "fr_SeparacionV", .clase = ClaseControl::Frame, .contenedor = "frHijo",
     .left = -15, .top = 75, .width = 120, .height = 9630, .tab = 4, .texto = "Frame7",
     .back = ColorSistema(7), .estilo = Estilo::SinBorde},
    {.nombre = "grid_precios", .clase = ClaseControl::Grid, .contenedor = "frHijo",
     .left = 3255, .top = 885, .width = 9660, .height = 3030, .tab = 8, .fuente = Verdana(9.75),
     .tooltip = "Lista de clientes", .grid = &GridLista},
    {.nombre = "Label2", .clase = ClaseControl::Label, .contenedor = "frHijo",
     .left = 3285, .top = 3930, .width = 6555, .height = 390, .tab = 12,
     .texto = "Haga doble clic sobre la linea para ver el detalle de la tarifa.", .fuente = Verdana(9.75),
     .estilo = Estilo::Transparente},
    {.nombre = "Label1", .clase = ClaseControl::Label, .contenedor = "frHijo",
     .left = 3465, .top = 255, .width = 9255, .height = 420, .tab = 9,
     .texto = "Lista de tarifas existentes", .fuente = Verdana(20.25, true), .estilo = Estilo::Transparente | Estilo::Centrado},
    {.nombre = "Label5", .clase = ClaseControl::Label, .contenedor = "frCabecera",
     .left = 1200, .top = 210, .width = 6645, .height = 525, .tab = 3,
     .texto = "Listas de Precios / Tarifas", .fuente = Verdana(18, true), .fore = RGB(0, 0, 0),
     .estilo = Estilo::Transparente},
};

constexpr DisenoFormulario diseno{
    .nombre = "frmListas",
    .caption = "Listas de Precios / Tarifas",
    .clientWidth = 15240,
    .clientHeight = 10680,
    .icono = ":/imagenes/tarifas.ico",
    .controles = controles,
};

} // namespace

const DisenoFormulario &DisenoListas() {
    IniciarRecursosPantallas();
    return diseno;
}
// clang-format on
