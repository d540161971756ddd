// A hash of a world's state.
#pragma once

#include <cstdint>

class World;

/// Over every node in tree order: name, local transform, enabled flag, and its body's pose and velocities. What is
/// only looked at (particles, lights, materials) is not in it.
std::uint64_t hashWorld(const World& world);
