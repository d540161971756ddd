// Dimensions of the aerobatic aircraft: a single-seat mid-wing monoplane, 6.65 m long, 7.5 m in span, with a tail
// wheel. Built with the fuselage level. All values are for the right side; the left side is mirrored.
#pragma once

#include <string>
#include <vector>

#include "geometry/Aerofoil.h"
#include "geometry/Loft.h"
#include "geometry/Model.h"
#include "geometry/Shapes.h"
#include "models/Sides.h"

namespace extra {

// On the ground the nose is STANDING_PITCH degrees up and the origin STANDING_HEIGHT above the ground.
constexpr double STANDING_PITCH = 10.0;
constexpr double STANDING_HEIGHT = 1.25;

inline const Rib WING_ROOT{{0.45, 0.80, -0.05}, 1.60, 0.15};
inline const Rib WING_TIP{{3.68, 0.42, -0.05}, 0.86, 0.12};
constexpr double AILERON = 0.70;  ///< chord fraction at which it begins
constexpr double AILERON_FOOT = 0.07;
inline const Rib TAIL_ROOT{{0.0, -2.78, 0.12}, 0.88, 0.09};
inline const Rib TAIL_TIP{{1.55, -2.93, 0.12}, 0.64, 0.08};
constexpr double ELEVATOR = 0.61;
constexpr double ELEVATOR_HORN = 0.87;  ///< fraction of the half span from which the whole chord turns
inline const dvec3 RUDDER_HINGE{0.0, -3.42, 0.45};
inline const dvec3 PROPELLER{0.0, 2.52, 0.02};
constexpr double PROPELLER_RADIUS = 1.0;

constexpr double CANOPY_FRONT = 0.30, CANOPY_END = -1.62;
inline const dvec3 PILOT_EYE{0.0, -0.62, 0.54};
constexpr double PANEL_Y = -0.06, PANEL_HALF = 0.31, PANEL_FOOT = 0.05, PANEL_TOP = 0.42;

constexpr double MAIN_WHEEL_RADIUS = 0.19, TAIL_WHEEL_RADIUS = 0.08;

/// Contact point of a wheel with the ground at (x, y), for the aircraft at rest on its wheels.
dvec3 contact(double x, double y);
/// The centre of a wheel with this contact point.
dvec3 wheelMiddle(double x, double y, double radius);
inline const dvec3 MAIN_PLACE{0.92, 0.85, 0.0}, TAIL_PLACE{0.0, -3.55, 0.0};  ///< (x, y) of the contacts

const Hull& fuselage();
/// The height of the cockpit's rim at a position along the fuselage.
double sill(double y);

/// A dial or window in the panel: its centre (x, z) and radius, metres.
struct Dial {
    const char* needle;  ///< the node that rotates, empty for none
    double x, z, radius;
};
const std::vector<Dial>& dials();

struct Paints {
    PaintRef skin;  ///< the livery
    PaintRef glass, dark, steel, rubber, rim, seat, cockpit, blade, blade_tip, trim, white, red, needle, hood;
    PaintRef panel, compass, horizon, climb;  ///< one texture each: the last three move separately
    PaintRef helmet, suit;
};
Paints makePaints();
std::shared_ptr<const Texture> livery();

// The pictures of the instruments. -------------------------------------------------------------------------------
std::shared_ptr<const Texture> panelFace();
/// Bands and a ball that show a section of their picture: u and v cover the whole picture.
std::shared_ptr<const Texture> compassBand();
std::shared_ptr<const Texture> horizonFace();
std::shared_ptr<const Texture> climbBand();

// The pieces. ----------------------------------------------------------------------------------------------------
Mesh airframe(const Paints& paints);                   ///< fuselage, cowling, legs, tub
std::vector<Part> surfaceParts(const Paints& paints);  ///< ailerons, elevators with the tab, rudder, wing tips
Mesh fixedSurfaces(const Paints& paints);
std::vector<Part> gearParts(const Paints& paints);  ///< wheels, their fairings, the tail wheel
Mesh legs(const Paints& paints);
std::vector<Part> cockpitParts(const Paints& paints);  ///< canopy, stick, needles, pedals, levers, bands, pilot
Mesh cockpit(const Paints& paints);
Part propeller(const Paints& paints);

}  // namespace extra
