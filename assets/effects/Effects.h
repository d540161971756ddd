// Builders of the files of weapons and effects. Each writes into the given runtime root and throws std::runtime_error
// when a file cannot be written.
#pragma once

#include <string>

/// The particles' pictures, in "data/art/prefab/vfx/textures/".
void writeParticlePictures(const std::string& root);
/// Explosions, and fire and smoke of burning objects.
void writeFireEffects(const std::string& root);
/// Water explosion, splash, and the decoy.
void writeWaterEffects(const std::string& root);
/// Missile and torpedo: models and prefabs with exhaust and wake.
void writeWeapons(const std::string& root);
