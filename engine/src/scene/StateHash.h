// A hash of a world's state.
#pragma once

#include <cstdint>

class World;

/// Over every node in tree order: name, local transform, enabled flag, and its body's pose and velocities. Two runs
/// that give the same hash every frame are the same run.
std::uint64_t hashWorld(const World& world);
