// The sea's surface: a periodic random field shared by physics and picture.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

#include "engine/Api.h"
#include "engine/math/Vec.h"

/// One periodic square of the field. Sample (column, row) is at (column, row) * length / SIZE metres east and north of
/// the field's origin and repeats with `length` in both directions. The field's surface is the sum of its cascades.
struct WaveCascade {
    static constexpr int SIZE = 128;

    double length = 1.0;  ///< side in metres
    /// Per sample: current displacement of the water from its position at rest, metres east, north and up, and its
    /// amount of foam, 0..1. Row by row from the south-west.
    std::vector<std::array<float, 4>> samples;
};

/// Waves of a sea state as a function of time, seed and state only. Positions are metres (east, north) from the field's
/// origin; phases are periodic and in double precision, so that the accuracy does not decrease with time.
class ENGINE_API WaveField {
public:
    static constexpr int NUM_CASCADES = 2;

    explicit WaveField(std::uint64_t seed);
    ~WaveField();

    /// Sets the sea state: wind speed 10 m above the sea, m/s (0: flat), and the direction that the wind blows to, east
    /// and north (any length; zero counts as east). A change recomputes the spectrum.
    void setWind(double speed, double to_east, double to_north);
    /// Computes the field for a time in seconds; no effect when it is current.
    void update(double time);

    const WaveCascade& getCascade(int i) const;
    /// Incremented with every computed field; mirrors compare it.
    std::uint32_t getRevision() const;

    /// Displacement of the water with the position at rest (east, north): metres east, north, up.
    vec3 getDisplacement(double east, double north) const;
    /// Height of the surface at (east, north), metres above the mean level: the horizontal displacement is inverted in
    /// three steps.
    float getHeight(double east, double north) const;

private:
    struct State;
    std::unique_ptr<State> m_state;
};
