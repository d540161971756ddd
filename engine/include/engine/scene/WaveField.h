// The sea's surface: a periodic random field that physics and picture share.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

#include "engine/Api.h"
#include "engine/math/Vec.h"

/// One periodic square of the field. Sample (column, row) lies at (column, row) * length / SIZE metres east and north
/// of the field's origin and repeats with `length` both ways. The field's surface is the sum of its cascades.
struct WaveCascade {
    static constexpr int SIZE = 128;

    double length = 1.0;  ///< metres along a side
    /// Where the water of each sample is now, relative to the sample's place at rest: metres east, north and up, and
    /// how much foam it carries, 0..1. Row after row from the south-west.
    std::vector<std::array<float, 4>> samples;
};

/// Waves of a sea state, as a function of time, seed and state alone. Places are metres (east, north) from the field's
/// origin; phases are kept in double precision and are periodic, so that the field is as good after days as at once.
class ENGINE_API WaveField {
public:
    static constexpr int NUM_CASCADES = 2;

    explicit WaveField(std::uint64_t seed);
    ~WaveField();

    /// The state of the sea: wind speed 10 m above it, m/s (0: flat), and the direction that the wind blows to,
    /// metres east and north (any length; zero is taken for east). The spectrum is made anew when they change.
    void setWind(double speed, double to_east, double to_north);
    /// Moves the field to a time in seconds; nothing when it is there already.
    void update(double time);

    const WaveCascade& getCascade(int i) const;
    /// Counts up with every field computed: a mirror compares it.
    std::uint32_t getRevision() const;

    /// Displacement of the water whose place at rest is (east, north): metres east, north, up.
    vec3 getDisplacement(double east, double north) const;
    /// Height of the surface above (east, north), metres above the mean level: the horizontal displacement is inverted
    /// in three steps.
    float getHeight(double east, double north) const;

private:
    struct State;
    std::unique_ptr<State> m_state;
};
