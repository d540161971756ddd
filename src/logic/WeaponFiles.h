// Paths of the prefabs of weapons and effects, under the runtime root.
#pragma once

namespace weapons {

constexpr const char* MISSILE = "data/assets/Targets/MODELS/ZSJ_CN_Z18_Missile/ZSJ_CN_Z18_Missile.prefab";
constexpr const char* TORPEDO = "data/HARBOR_PROJECT/prefabs/yulei_Z18F/yulei.prefab";
constexpr const char* EXPLOSION = "data/art/prefab/vfx/explosion/explosion.prefab";
constexpr const char* AIRCRAFT_EXPLOSION = "data/art/prefab/vfx/explosion_1/explosion_1.prefab";
constexpr const char* WATER_EXPLOSION = "data/HARBOR_PROJECT/prefabs/vfx/water_explosion/water_explosion.prefab";
constexpr const char* WATER_DROP = "data/HARBOR_PROJECT/prefabs/vfx/water_drop/water_drop.prefab";
constexpr const char* DECOY = "data/HARBOR_PROJECT/prefabs/vfx/decoy/decoy.prefab";

}  // namespace weapons
