// Dimensions of a large naval helicopter with a boat-shaped belly, three engines over the cabin, six blades. Origin 2 m
// above the wheels' ground, +Y ahead.
#pragma once

#include <vector>

#include "geometry/Model.h"
#include "geometry/Shapes.h"

namespace heli {

inline const dvec3 HUB{0.0, 0.0, 3.3}, TAIL_HUB{0.45, -10.0, 2.4};
constexpr double ROTOR_RADIUS = 9.45, TAIL_RADIUS = 1.6;
/// The windscreen's plane; it slopes backward from its foot to its head.
inline const dvec3 SCREEN_FOOT{0.0, 6.05, 0.25}, SCREEN_HEAD{0.0, 5.2, 1.25};

inline const dvec3 NOSE_GEAR{0.0, 4.6, -1.65}, MAIN_GEAR{2.0, -2.2, -1.55};  ///< centres of the wheels
constexpr double NOSE_WHEEL = 0.35, MAIN_WHEEL = 0.45;                       ///< their radii

inline const dvec3 NAVIGATION_LIGHT{2.26, -2.0, -0.72};  ///< the right one, on its sponson

struct Paints {
    PaintRef skin, glass, lamp;                                           ///< lamp: only for the flashing light
    PaintRef dark, metal, rubber, grey, light, red, green, yellow, seat;  ///< plain, drawn as one surface
};
const Paints& paints();
/// The skin's picture, seen from all sides.
std::shared_ptr<const Texture> livery();

Part fuselage();            ///< body with cockpit, engines, tail, sponsons
std::vector<Part> doors();  ///< "dl_0" to "dl_2", "dr_0" to "dr_2", closed
Mesh engines();
Mesh tailUnit();
Mesh cockpit();
Mesh landingGear();
Mesh antennas();
std::vector<Part> fittings();  ///< sonar, winch, wipers, flashing light
Part mainRotor();              ///< "wing_pivot" and its rotating children
Part tailRotor();              ///< "tail"

}  // namespace heli
