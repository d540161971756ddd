// The parts of the helicopter's prefab besides its mesh: body, effects, lights, the pilot's eye.
#pragma once

#include <string>

namespace heli {

/// Writes "HELICOPTER.prefab" into a folder (path with a final slash) that contains the mesh "HELICOPTER.glb". Throws
/// std::runtime_error when the file cannot be written.
void writePrefab(const std::string& folder);

}  // namespace heli
