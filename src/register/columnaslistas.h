#pragma once

/// The columns of the register's grid, in the order of its statement and titles
/// (gridprecios.cpp).
namespace ColListas {
enum : int {
    Nombre = 0, ///< descripcion
    Desde = 1,  ///< preciovalidodesde, as regional text
    Hasta = 2,  ///< preciovalidohasta, as regional text
    Codigo = 3, ///< identificador (hidden)
};
}
