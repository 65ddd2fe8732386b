// The grid of price lists: its format and its filling.
#include "frmlistas.h"

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
