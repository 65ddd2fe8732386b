// The titles and column formats of the catalogue and of the selected products, per mode.
// Both grids of a mode get the same ones, so a column index means the same in both.
#include "frmtarifas.h"

#include "platform/datos/regional.h"
#include "session/principal.h"
#include "suite/ui/svcescala.h"
#include "suite/ui/svcgrid.h"

using namespace Sistema;

void FrmTarifas::inicializarGrid_Productos() {
    SvcGrid svcGrid;
    const QString titulos = QStringLiteral("Codigo;Producto;codigo;precio;seccion");
    // Only the code and the name follow the scale; the price column keeps its 1500.
    const double f1 = Principal::svcEscala().FactorEscala();
    const double f2 = Principal::svcEscala().FactorEscala();
    const QString formato = NumeroATexto(f1 * 1200.0) + QStringLiteral("/centrado;") +
                            NumeroATexto(f2 * 4000.0) +
                            QStringLiteral("/Izquierda;0/derecha;1500/centrado;0/derecha");
    svcGrid.FormatearGrid(*grid_productos, titulos, formato, 0);
    svcGrid.FormatearGrid(*grid_Pseleccionados, titulos, formato, 0);
}

void FrmTarifas::inicializarGrid_Productos_Textil() {
    SvcGrid svcGrid;
    const QString titulos =
        QStringLiteral("Codigo;Producto;codigo;codigo_hijo;Talla;Color;precio;seccion");
    const double f1 = Principal::svcEscala().FactorEscala();
    const double f2 = Principal::svcEscala().FactorEscala();
    const QString formato =
        NumeroATexto(f1 * 1000.0) + QStringLiteral("/centrado;") + NumeroATexto(f2 * 2500.0) +
        QStringLiteral(
            "/Izquierda;0/derecha;0/derecha;700/centrado;1500/centrado;1500/centrado;0/derecha");
    svcGrid.FormatearGrid(*grid_productos_textil, titulos, formato, 0);
    svcGrid.FormatearGrid(*grid_Pseleccionados, titulos, formato, 0);
}
