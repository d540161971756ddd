// The parts of the carrier's model, in the frame of its plan.
#pragma once

#include "geometry/Model.h"
#include "geometry/Shapes.h"
#include "plan/CarrierPlan.h"
#include "text/SceneText.h"

namespace carrier {

/// The flight deck's markings, laid over the deck from above.
std::shared_ptr<const Texture> deckTexture();
/// The hull's sides.
std::shared_ptr<const Texture> hullTexture();
/// Walls and roofs of island, sponsons and fittings.
std::shared_ptr<const Texture> wallTexture();

struct Paints {
    PaintRef wall, hull, deck, rail, net;
    PaintRef glass;                                                              ///< the bridges' windows
    PaintRef floor, grey, dark, white, black, yellow, red, orange, steel, pane;  ///< plain, drawn as one
};
/// One set for all models of the ship, so that what is painted alike is drawn together.
const Paints& paints();

Mesh hullAndDeck();   ///< a closed shell: what aircraft stand on
Mesh island();        ///< the island's decks, bridge, funnel
Mesh islandMasts();   ///< masts, aerials and radars on the island
Mesh deckEdge();      ///< catwalks, nets, rafts, aerials, boats along the deck's edges
Mesh sponsons();      ///< platforms below the deck's edge
Mesh armament();      ///< the weapons on them
Mesh deckVehicles();  ///< tractors and the like beside the island

Json lensPrefab();  ///< the landing lens, its foot's middle at the origin, shining aft
void writeLensModels(const std::string& folder);
Mesh lensStand();  ///< what the lens stands on, always drawn in its true size

Json wakes();  ///< the node "wakes": foam and bow wave, at rest until they are played

}  // namespace carrier
