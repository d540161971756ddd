// Parts for the prefabs of effects.
#pragma once

#include <string>

#include "text/SceneText.h"

/// Files that `writeParticlePictures` writes, as prefabs refer to them.
constexpr const char* SMOKE_PICTURE = "data/art/prefab/vfx/textures/smoke.png";  ///< a ragged puff
constexpr const char* FLAME_PICTURE = "data/art/prefab/vfx/textures/flame.png";  ///< a flame with a hot core
constexpr const char* SPRAY_PICTURE = "data/art/prefab/vfx/textures/spray.png";  ///< drops with gaps between them

/// A particle system; without a picture when `picture` is empty.
Json particleSystem(const std::string& name, const dvec3& position, Json settings, const std::string& picture);
/// A point light without a visible source.
Json glow(const dvec3& position, const dvec3& color, double intensity, double range);
/// Writes a prefab with the top node `top` and its children `children`.
void writeEffect(const std::string& path, const std::string& comment, Json top, const Json& children);
