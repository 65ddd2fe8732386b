#pragma once

/// The columns of the editor's grids. Both grids of a mode (the catalogue and the list's
/// prices) share one layout, so that a column means the same in both; formatos.cpp gives
/// them their titles and widths in this order.

/// The plain business.
namespace ColLlano {
enum : int {
    CodigoTienda = 0, ///< the shop's own code (codigocliente)
    Nombre = 1,
    Codigo = 2,  ///< the internal code (hidden)
    Precio = 3,  ///< the standard price in the catalogue, the list's in the list
    Seccion = 4, ///< hidden
};
}

/// The size-and-colour business: one row per variant, "-1" as the variant of a product
/// without variants.
namespace ColTallaColor {
enum : int {
    CodigoTienda = 0, ///< the variant's own shop code, or else its product's
    Nombre = 1,
    Codigo = 2,     ///< the product's internal code (hidden)
    CodigoHijo = 3, ///< the variant's code (hidden)
    Talla = 4,
    Color = 5,
    Precio = 6,
    Seccion = 7, ///< hidden
};
}

// The name filter reads the name at one place in either layout.
static_assert(int(ColLlano::Nombre) == int(ColTallaColor::Nombre));
