// The carrier jet's lines: a twin-engined, twin-tailed fighter with canards, 22 m long, 14.7 m in span, 5.9 m high.
// Origin amidships, STANDING_HEIGHT above the ground; everything here is of the right side, the left mirrors it.
#pragma once

#include <string>
#include <vector>

#include "geometry/Model.h"
#include "geometry/Shapes.h"

namespace jet {

// Ribs.
// -------------------------------------------------------------------------------------------------------------------
inline const Rib WING_ROOT{{2.10, 1.40, 0.30}, 5.40, 0.050};
inline const Rib WING_TIP{{7.20, -3.05, 0.30}, 1.75, 0.045};
constexpr double WING_FOLD = 0.45;      ///< of the way from root to tip
constexpr double NOSE_FLAP = 0.14;      ///< chord fraction where the leading edge flap ends
constexpr double TRAILING_FLAP = 0.74;  ///< and where the trailing edge flaps begin
inline const Rib STABILATOR_ROOT{{2.38, -6.20, 0.10}, 3.30, 0.045};
inline const Rib STABILATOR_TIP{{4.95, -8.35, 0.10}, 1.45, 0.040};
inline const Rib CANARD_ROOT{{1.45, 4.35, 0.50}, 1.90, 0.045};
inline const Rib CANARD_TIP{{3.20, 2.85, 0.62}, 0.75, 0.040};
inline const Rib FIN_ROOT{{2.28, -4.20, 0.50}, 4.10, 0.050, {1.0, 0.0, 0.0}};
inline const Rib FIN_TIP{{2.28, -6.95, 3.88}, 1.75, 0.045, {1.0, 0.0, 0.0}};
constexpr double RUDDER = 0.68;  ///< chord fraction where the rudder begins

// Engines and undercarriage.
// ----------------------------------------------------------------------------------------------
inline const dvec3 NOZZLE{1.22, -9.50, -0.15};
constexpr double MAIN_WHEEL_RADIUS = 0.50, NOSE_WHEEL_RADIUS = 0.31;
inline const dvec3 MAIN_WHEEL{2.17, -1.50, -1.50};  ///< middle
inline const dvec3 NOSE_WHEEL{0.0, 4.40, -1.69};
inline const dvec3 PILOT_EYE{0.0, 5.75, 1.42};

/// The right side for +1; for -1 mirrored.
dvec3 onSide(const dvec3& right, int side);
Mesh onSide(const Mesh& right, int side);
/// "_right" or "_left".
std::string withSide(const std::string& name, int side);

/// The paints of one jet.
struct Paints {
    PaintRef skin, radome, glass, metal, duct, gear, tyre, dark, glow, cockpit;
};
Paints freshPaints();

// The pieces. Moving ones are parts with their hinge as origin, in the pose of an aircraft that stands.
// --------------------
Part airframe(const Paints& paints);
std::vector<Part> bodyParts(const Paints& paints);     ///< canopy, radome, airbrake, probe, ladder, intake ramps, glow
std::vector<Part> surfaceParts(const Paints& paints);  ///< canards, flaps, folding wings with ailerons, tail, rudders
std::vector<Part> gearParts(const Paints& paints);     ///< legs, doors, hook
Mesh fixedSurfaces(const Paints& paints);              ///< the parts of wings and fins that do not move

}  // namespace jet
