// The carrier jet's dimensions: a fighter with two engines, two fins and canards, 22 m long, 14.7 m in span, 5.9 m
// high. Origin amidships, STANDING_HEIGHT above the ground. Values are for the right side; the left side is mirrored.
#pragma once

#include <string>
#include <vector>

#include "geometry/Aerofoil.h"
#include "geometry/Loft.h"
#include "geometry/Model.h"
#include "geometry/Shapes.h"
#include "models/Sides.h"

namespace jet {

// Ribs. ----------------------------------------------------------------------------------------------------------
inline const Rib WING_ROOT{{2.10, 1.40, 0.30}, 5.40, 0.050};
inline const Rib WING_TIP{{7.18, -3.05, 0.30}, 1.75, 0.045};
constexpr double WING_FOLD = 0.33;      ///< fraction of the span from root to tip
constexpr double AILERON_END = 0.88;    ///< end of the aileron, same fraction
constexpr double NOSE_FLAP = 0.14;      ///< chord fraction at which the leading edge flap ends
constexpr double TRAILING_FLAP = 0.74;  ///< chord fraction at which the trailing edge flaps begin
inline const Rib STABILATOR_ROOT{{2.52, -6.15, 0.16}, 3.30, 0.045};
inline const Rib STABILATOR_TIP{{4.93, -8.35, 0.16}, 1.45, 0.035};
inline const Rib CANARD_ROOT{{1.64, 4.15, 0.48}, 1.85, 0.045};
inline const Rib CANARD_TIP{{3.22, 2.75, 0.58}, 0.72, 0.035};
inline const Rib FIN_ROOT{{2.28, -4.20, 0.36}, 4.20, 0.050, {1.0, 0.0, 0.0}};
inline const Rib FIN_TIP{{2.28, -7.00, 3.88}, 1.75, 0.040, {1.0, 0.0, 0.0}};
constexpr double RUDDER = 0.68;  ///< chord fraction at which the rudder begins
constexpr double RUDDER_FOOT = 0.14, RUDDER_TOP = 0.84;

// Cockpit, engines and undercarriage. ----------------------------------------------------------------------------
constexpr double BULKHEAD = 8.9;           ///< end of the radome
constexpr double WINDSHIELD_FRONT = 7.60;  ///< front of the canopy's glass; then the bow of its halves, and its end
constexpr double CANOPY_BOW = 6.38;
constexpr double CANOPY_END = 4.20;
inline const dvec3 NOZZLE{1.22, -9.50, -0.15};
constexpr double MAIN_WHEEL_RADIUS = 0.50, NOSE_WHEEL_RADIUS = 0.31;
inline const dvec3 MAIN_WHEEL{2.17, -1.50, -1.50};  ///< centre of the wheel
inline const dvec3 NOSE_WHEEL{0.0, 4.40, -1.69};
inline const dvec3 PILOT_EYE{0.0, 5.75, 1.42};

/// The fuselage with the strakes ahead of the wings, from the bulkhead to the tail.
const Hull& fuselage();
/// The height of the cockpit's rim at a position along the fuselage.
double sill(double y);

/// The paints of one jet.
struct Paints {
    PaintRef skin;  ///< the livery
    PaintRef glass, metal, burnt, duct, gear, steel, tyre, dark, glow, cockpit, panel, screen, mirror, hud, hood;
    PaintRef helmet, suit, webbing, red;
};
Paints makePaints();
/// The livery: the whole jet from above, from below and from both sides in one picture.
std::shared_ptr<const Texture> livery();
/// The face of the instrument panel, projected along +Y.
std::shared_ptr<const Texture> instruments();

// The pieces. Moving ones are parts with the origin at their hinge, in the pose for zero angles. -----------------
Part airframe(const Paints& paints);
std::vector<Part> bodyParts(const Paints& paints);     ///< canopy, radome, airbrake, probe, ladder, intake ramps, glow
std::vector<Part> surfaceParts(const Paints& paints);  ///< canards, flaps, folding wings with ailerons, tail, rudders
std::vector<Part> gearParts(const Paints& paints);     ///< legs, doors, hook
Mesh fixedSurfaces(const Paints& paints);              ///< the fixed parts of wings and fins
Mesh engines(const Paints& paints);                    ///< intakes, nacelles, nozzles
Mesh cockpit(const Paints& paints);                    ///< tub, panel, seat, pilot
Mesh windshield(const Paints& paints);
Part canopy(const Paints& paints);

}  // namespace jet
