#pragma once

#include <cmath>

namespace Pantalla {

/// The screens are laid out in twips, 1440 to the inch, on a display of 96 dots to the
/// inch: 15 twips make one pixel.
constexpr double TwipsPorPixel = 15.0;

inline int APixeles(double twips) {
    return int(std::lround(twips / TwipsPorPixel));
}
inline double ATwips(int pixeles) {
    return pixeles * TwipsPorPixel;
}

} // namespace Pantalla
