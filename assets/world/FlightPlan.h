// The demonstration's flight: a circuit from the carrier's bow past the island and back onto the deck.
#pragma once

#include <vector>

#include "engine/math/Transform.h"

/// State of the aircraft at one time. The path's frame: X east, Y north, Z up, origin at the launch point; metres.
struct FlightState {
    double seconds = 0.0;  ///< since the start
    dvec3 place;
    dvec3 velocity;         ///< m/s
    double heading = 0.0;   ///< degrees counter-clockwise from +X
    double pitch = 0.0;     ///< nose up
    double roll = 0.0;      ///< left wing down
    double flaps = 0.0;     ///< trailing edges down, degrees
    double ailerons = 0.0;  ///< left up and right down, degrees
};

/// Rotation in degrees by which the scene's logic turns a path before it plays it from the start node.
constexpr double PATH_TURN = 67.25;

/// States at a fixed rate. The first is at rest at the launch point, the last at rest on the landing strip.
std::vector<FlightState> planFlight(double states_a_second);
