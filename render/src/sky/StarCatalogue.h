// Star catalogue.
#pragma once

#include <vector>

#include "engine/math/Vec.h"

struct Star {
    dvec3 direction;  ///< equatorial, of length 1; X to right ascension 0, Z to the north pole
    vec3 light;       ///< illuminance outside the air, klx
};

/// The brightest real stars, and random fainter ones that are denser along the Milky Way. Deterministic, brightest
/// first.
std::vector<Star> makeStars();

/// Equatorial directions of the galactic pole and the galactic centre.
dvec3 galaxyPole();
dvec3 galaxyCentre();
