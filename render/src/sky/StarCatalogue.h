// The stars.
#pragma once

#include <vector>

#include "engine/math/Vec.h"

struct Star {
    dvec3 direction;  ///< equatorial, of length 1; X to right ascension 0, Z to the north pole
    vec3 light;       ///< illuminance outside the air, klx
};

/// The brightest stars as they are, and as many more as make the sky look right, thicker along the Milky Way. The same
/// every time, brightest first.
std::vector<Star> makeStars();

/// Equatorial directions to the pole and the centre of our galaxy.
dvec3 galaxyPole();
dvec3 galaxyCentre();
