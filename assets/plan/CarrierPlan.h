// The carrier's lines: 305 m long and 75 m wide, a ramp at the bow, an angled landing strip to port, the island to
// starboard. Origin at the waterline amidships, +Y to the bow; lengths in metres.
#pragma once

#include <vector>

#include "engine/math/Transform.h"

namespace carrier {

constexpr double STERN = -152.0, BOW = 152.5;
constexpr double RAMP_ANGLE = 14.0;  ///< of the deck at the bow, degrees
constexpr double STRIP_ANGLE = 7.0;  ///< of the landing strip to port of the bow, degrees
constexpr double STRIP_X = 3.0;      ///< position where the strip's axis crosses the stern
constexpr double STRIP_LENGTH = 198.0, STRIP_WIDTH = 26.0;

/// Bounds of the island on the deck, for its trigger.
inline const dvec3 ISLAND_LOW{23.5, -48.0, 20.0}, ISLAND_HIGH{34.5, 6.0, 44.0};

/// The deck-edge lifts to starboard: centres and half length along the ship.
inline constexpr double LIFTS[] = {-60.0, 25.0};
constexpr double LIFT_HALF = 9.0;

/// Vertical extent of the paint of the hull's sides, from the keel.
constexpr double KEEL = -10.5, SIDE_TOP = 27.5;
constexpr double KNUCKLE = 12.5;  ///< height where the hull's sides end and the overhang begins

/// Height of the deck above the waterline at a position along the ship.
double deckHeight(double y);
/// The deck's port and starboard edges at a position along the ship.
double portEdge(double y);
double starboardEdge(double y);
inline double edgeOn(double side, double y) {
    return side < 0.0 ? portEdge(y) : starboardEdge(y);
}
/// Half the hull's width at the knuckle, at a position along the ship.
double hullHalf(double y);
/// All positions from the stern to the bow at which the deck's outline or slope changes.
std::vector<double> deckStations();
/// A point on the deck, `along` metres from the stern along the landing strip and `right` metres from its axis.
dvec3 onStrip(double along, double right = 0.0);

}  // namespace carrier
