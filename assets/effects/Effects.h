// What makes the files of weapons and effects. Each writes below the runtime root that it is given and throws
// std::runtime_error when a file cannot be written.
#pragma once

#include <string>

/// The pictures that particles are drawn with, into "data/art/prefab/vfx/textures/".
void writeParticlePictures(const std::string& root);
/// Explosions, and the fire and smoke of what burns.
void writeFireEffects(const std::string& root);
/// What throws water up, and the decoy.
void writeWaterEffects(const std::string& root);
/// Missile and torpedo: models and prefabs with exhaust and wake.
void writeWeapons(const std::string& root);
