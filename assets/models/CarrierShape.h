// The parts of the carrier's model, in the frame of its plan.
#pragma once

#include "geometry/Model.h"
#include "geometry/Shapes.h"
#include "plan/CarrierPlan.h"
#include "text/SceneText.h"

namespace carrier {

/// The flight deck's markings, projected onto the deck from above.
std::shared_ptr<const Texture> deckTexture();
/// The hull's sides.
std::shared_ptr<const Texture> hullTexture();
/// Walls and roofs of island, sponsons and fittings.
std::shared_ptr<const Texture> wallTexture();

struct Paints {
    PaintRef wall, hull, deck, rail, net;
    PaintRef glass;                                                              ///< the bridges' windows
    PaintRef floor, grey, dark, white, black, yellow, red, orange, steel, pane;  ///< plain, drawn as one surface
};
/// One set for all models of the ship, so that parts with the same paint are drawn together.
const Paints& paints();

Mesh hullAndDeck();   ///< a closed shell that carries aircraft
Mesh island();        ///< the island's decks, bridge, funnel
Mesh islandMasts();   ///< masts, aerials and radars on the island
Mesh deckEdge();      ///< catwalks, nets, rafts, aerials, boats along the deck's edges
Mesh sponsons();      ///< platforms below the deck's edge
Mesh armament();      ///< the weapons on them
Mesh deckVehicles();  ///< tractors and the like beside the island

Json lensPrefab();  ///< the landing lens, origin at the middle of its foot, shining aft
void writeLensModels(const std::string& folder);
Mesh lensStand();  ///< the stand below the lens, always drawn at true size

Json wakes();  ///< the node "wakes": foam and bow wave, stopped until they are played

}  // namespace carrier
