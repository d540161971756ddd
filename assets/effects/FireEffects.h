// Fire as parts of other prefabs.
#pragma once

#include "text/SceneText.h"

/// Flames that lick up from an area (full extents, metres) for `duration` seconds; 0 without end.
Json flames(const std::string& name, const dvec3& area, double duration);
/// The smoke of such flames, black below, thinning as it leans into the wind: `rate` puffs a second that live for
/// `life` seconds.
Json plume(const dvec3& area, double rate, double duration, double life);
