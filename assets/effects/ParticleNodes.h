// Pieces that the prefabs of effects are put together from.
#pragma once

#include <string>

#include "text/SceneText.h"

/// Files that `writeParticlePictures` makes, as prefabs name them.
constexpr const char* SMOKE_PICTURE = "data/art/prefab/vfx/textures/smoke.png";  ///< a torn billow
constexpr const char* FLAME_PICTURE = "data/art/prefab/vfx/textures/flame.png";  ///< a lick with a hot core
constexpr const char* SPRAY_PICTURE = "data/art/prefab/vfx/textures/spray.png";  ///< drops with gaps between them

/// A particle system; with a picture unless that is empty.
Json particleSystem(const std::string& name, const dvec3& position, Json settings, const std::string& picture);
/// A point light that has nothing to be seen itself.
Json glow(const dvec3& position, const dvec3& color, double intensity, double range);
/// Writes a prefab whose top node is `top`, with `children` below it.
void writeEffect(const std::string& path, const std::string& comment, Json top, const Json& children);
