// Positions of the airfield's buildings and pavement in its frame, shared by models, decals and triggers.
#pragma once

#include "engine/math/Transform.h"

namespace airfield {

inline const dvec3 TOWER{262.0, 60.0, 0.0};  ///< foot of the tower
constexpr double TOWER_HEIGHT = 32.0;
constexpr double HANGAR_X = 272.0;                   ///< centres of the hangars across the runway
constexpr double HANGARS[] = {-120.0, -62.0, -4.0};  ///< and along it
inline const dvec3 HALLS_LOW{249.0, -206.0, 0.0}, HALLS_HIGH{297.0, 22.0, 13.5};  ///< bounds of all hangars
constexpr double MAST_HEIGHT = 42.0;

constexpr double TAXIWAY = 62.0;  ///< its centre line, to the runway's right
/// Extents of the pavement's picture.
constexpr double PAVEMENT_LEFT = 22.0, PAVEMENT_RIGHT = 232.0, PAVEMENT_LENGTH = 2520.0;

}  // namespace airfield
