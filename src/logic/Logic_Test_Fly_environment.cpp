// The scene's own nodes that the logic works with, found once in `init`.
#include <engine/scene/ObjectTerrain.h>

#include "src/logic/Logic_Test_Fly.h"

void Logic_Test_Fly::init_environment() {
    Node* const terrain = find_node("terrain");
    m_terrain = terrain && terrain->getType() == Node::TERRAIN ? static_cast<ObjectTerrain*>(terrain) : nullptr;
}
