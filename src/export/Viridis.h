// export/Viridis.h
// The colour map viridis: equal steps look equal, also in grey and to colour-blind eyes (N. Smith, S. van der Walt,
// matplotlib 1.5, 2015). Seventeen of its colours, straight lines between them: at most 3/255 beside the original.
#pragma once

#include <array>

namespace tarnvexo {

// share 0 ... 1 along the map, limited to it. Red, green, blue 0 ... 1, sRGB as screens take them.
std::array<double, 3> ViridisColour(double share);

// From sRGB to the linear intensities that renderers calculate with (IEC 61966-2-1).
double LinearIntensity(double sRgb);

} // namespace tarnvexo
