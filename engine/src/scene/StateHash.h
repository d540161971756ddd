// A hash of a world's state.
#pragma once

#include <cstdint>

class World;

/// Includes every node in tree order: name, local transform, enabled flag, and its body's pose and velocities. Excludes
/// purely visual state (particles, lights, materials).
std::uint64_t hashWorld(const World& world);
