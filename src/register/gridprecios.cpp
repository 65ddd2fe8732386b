// The grid of price lists: its format and its filling.
#include "frmlistas.h"

#include "columnaslistas.h"

#include "platform/datos/regional.h"
#include "session/principal.h"
#include "session/sesionsuite.h"
#include "suite/ui/svcescala.h"
#include "suite/ui/svcgrid.h"

void FrmListas::inicializarGridPrecios() {
    SvcGrid svcGrid;
    const QString titulos = QStringLiteral("Nombre;Desde;Hasta;Cod");
    const double f1 = Principal::svcEscala().FactorEscala();
    const double f2 = Principal::svcEscala().FactorEscala();
    const double f3 = Principal::svcEscala().FactorEscala();
    const QString formato = NumeroATexto(f1 * 5000.0) + QStringLiteral("/Izquierda;") +
                            NumeroATexto(f2 * 1500.0) + QStringLiteral("/centrado;") +
                            NumeroATexto(f3 * 1500.0) + QStringLiteral("/centrado;0/derecha");
    svcGrid.FormatearGrid(*grid_precios, titulos, formato, 0);
}

void FrmListas::cargarGridPrecios() {
    SvcGrid svcGrid;
    svcGrid.CargarGrid(
        *SesionSuite.Conexion,
        QStringLiteral("Select descripcion,preciovalidodesde,preciovalidohasta,identificador "
                       "from cabecera_precio"),
        *grid_precios, 0, 0);
}

void FrmListas::SeguirCambios() {
    if (!Loaded())
        return;
    // The list the operator had selected stays selected, wherever it now lists; a list gone
    // leaves the selection on the row that takes its place.
    Grid &g = *grid_precios;
    const int fila = g.Row();
    const QString codigo =
        fila >= 1 && fila < g.Rows() ? g.TextMatrix(fila, ColListas::Codigo) : QString();
    const int arriba = g.TopRow();
    cargarGridPrecios();
    if (arriba >= 1 && arriba < g.Rows())
        g.setTopRow(arriba);
    for (int f = 1; f < g.Rows(); ++f)
        if (!codigo.isEmpty() && g.TextMatrix(f, ColListas::Codigo) == codigo) {
            g.setRow(f);
            return;
        }
    if (fila >= 1)
        g.setRow(qMin(fila, g.Rows() - 1));
}
