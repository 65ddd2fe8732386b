#pragma once

#include "platform/ui/diseno.h"

/// The register screen frmListas as designed: a header band, the grid of price lists with
/// its hint, the new-list panel (hidden) and the help panel below the bottom edge.
const Pantalla::DisenoFormulario &DisenoListas();
