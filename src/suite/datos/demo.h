#pragma once

#include "platform/datos/conexion.h"

/// Fills an empty suite database with a demo shop: a few hundred products (some deleted,
/// some with extra codes), sizes, colours and variants (some with their own code or price),
/// a few price lists with prices, the options (plain business), one terminal ("CAJA1") and
/// its employee. Raises ErrorBD.
void CargarTiendaDemo(ADODB::Connection &conexion);
