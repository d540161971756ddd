// What the helicopter's prefab holds besides its mesh: body, effects, lights, the pilot's eye.
#pragma once

#include <string>

namespace heli {

/// Writes "HELICOPTER.prefab" into a folder (ending in a slash), beside the mesh "HELICOPTER.glb" that it names. Throws
/// std::runtime_error when the file cannot be written.
void writePrefab(const std::string& folder);

}  // namespace heli
