// Fire as a part of other prefabs.
#pragma once

#include "text/SceneText.h"

/// Flames that rise from an area (full extents, metres) for `duration` seconds; 0 means forever.
Json flames(const std::string& name, const dvec3& area, double duration);
/// The smoke of such flames, black at the bottom and thinner as the wind bends it: `rate` puffs per second, each with a
/// life of `life` seconds.
Json plume(const dvec3& area, double rate, double duration, double life);
