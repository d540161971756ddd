// The carrier's lines: 305 m long and 75 m wide, a ramp at the bow, an angled landing strip to port, the island to
// starboard. Origin at the waterline amidships, +Y to the bow.
#pragma once

#include <vector>

#include "geometry/Model.h"
#include "geometry/Shapes.h"

namespace carrier {

constexpr double STERN = -152.0, BOW = 152.5;
constexpr double RAMP_ANGLE = 14.0;  ///< of the deck at the bow, degrees
constexpr double STRIP_ANGLE = 7.0;  ///< of the landing strip to port of the bow, degrees
constexpr double STRIP_X = 3.0;      ///< where the strip's axis crosses the stern
constexpr double STRIP_LENGTH = 198.0, STRIP_WIDTH = 26.0;

/// The island's block on the deck: what a trigger surrounds.
inline const dvec3 ISLAND_LOW{23.5, -48.0, 20.0}, ISLAND_HIGH{34.5, 6.0, 44.0};

/// Height of the deck above the waterline at a place along the ship.
double deckHeight(double y);
/// The deck's port and starboard edges there.
double portEdge(double y);
double starboardEdge(double y);
/// A point on the deck `along` metres up the landing strip from the stern and `right` of its axis.
dvec3 onStrip(double along, double right = 0.0);

/// The flight deck's markings, laid over the deck from above.
std::shared_ptr<const Texture> deckTexture();

Part hullAndDeck();            ///< "LiaoNingJian_zhuTi001"
std::vector<Part> topside();   ///< island, radars, masts, what hangs on the deck's edges
std::vector<Part> lensUnit();  ///< the landing lens, its foot's middle at the origin, shining aft

}  // namespace carrier
