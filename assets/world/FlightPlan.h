// The demonstration's flight: a circuit from the carrier's bow past the island and back onto its deck.
#pragma once

#include <vector>

#include "engine/math/Transform.h"

/// The aircraft at a moment. Places and velocities are in the path's frame: X east, Y north, Z up at the launch point.
struct FlightState {
    double seconds = 0.0;  ///< since the start
    dvec3 place;
    dvec3 velocity;         ///< metres a second
    double heading = 0.0;   ///< degrees counter-clockwise from +X
    double pitch = 0.0;     ///< nose up
    double roll = 0.0;      ///< left wing down
    double flaps = 0.0;     ///< trailing edges down, degrees
    double ailerons = 0.0;  ///< left up and right down, degrees
};

/// The turn that the scene's logic gives to a path before it plays it from the start node, degrees.
constexpr double PATH_TURN = 67.25;

/// States at a fixed rate, standing at the launch point first and on the landing strip last.
std::vector<FlightState> planFlight(double states_a_second);
