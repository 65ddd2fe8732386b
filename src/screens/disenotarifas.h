#pragma once

#include "platform/ui/diseno.h"

/// The price list editor frmTarifas as designed: the catalogue on the left with the search
/// boxes below it, the selected products on the right with the price panel over them, the
/// validity period and the buttons along the bottom.
const Pantalla::DisenoFormulario &DisenoTarifas();
