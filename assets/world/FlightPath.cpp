// Writes the recorded flight for automatic flight, with the times that a playback at 60 frames a second computes.
#include <array>
#include <charconv>
#include <cmath>
#include <string_view>

#include "engine/math/Bounds.h"
#include "plan/Builders.h"
#include "text/Files.h"
#include "world/FlightPlan.h"

namespace {

constexpr double FRAMES_A_SECOND = 60.0;

/// The clock of the playback: each frame adds three times the seconds since the start, in single precision.
class PlayClock {
public:
    float now() const { return m_time; }
    void nextFrame() {
        m_seconds += 1.0 / FRAMES_A_SECOND;
        m_time = m_time + static_cast<float>(m_seconds * 1000.0) / 1000.0f * 3.0f;
    }

private:
    double m_seconds = 0.0;
    float m_time = 23.0f;
};

/// Single precision is too coarse for a smooth acceleration some kilometres from the origin. The rounding error is fed
/// back so that it changes slowly: only its third difference is noticeable as a jerk.
class SmoothRounding {
public:
    /// At rest: the rounding error keeps its value.
    double start(double value) {
        const double rounded = static_cast<float>(value);
        m_errors.fill(rounded - value);
        return rounded;
    }
    double round(double value) {
        constexpr double POLE = 0.7;
        const double carried =
            3.0 * POLE * m_errors[0] - 3.0 * POLE * POLE * m_errors[1] + POLE * POLE * POLE * m_errors[2];
        const double rounded = static_cast<float>(value + carried);
        m_errors = {rounded - value, m_errors[0], m_errors[1]};
        return rounded;
    }

private:
    std::array<double, 3> m_errors{};
};

class SmoothPlace {
public:
    explicit SmoothPlace(const dvec3& start) : m_place(m_x.start(start.x), m_y.start(start.y), m_z.start(start.z)) {}
    void next(const dvec3& place) { m_place = {m_x.round(place.x), m_y.round(place.y), m_z.round(place.z)}; }
    const dvec3& get() const { return m_place; }

private:
    SmoothRounding m_x, m_y, m_z;
    dvec3 m_place;
};

/// The shortest digits that parse to the same float, always with a decimal point or exponent.
void appendReal(std::string& text, float value) {
    std::array<char, 32> digits;
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
    const std::string_view number(digits.data(), static_cast<std::size_t>(end - digits.data()));
    text += number;
    text += number.find_first_of(".e") == std::string_view::npos ? ".0" : "";
}

float hundredth(double value) {
    return static_cast<float>(std::round(value * 100.0) / 100.0);
}

void appendFrame(std::string& text, float time, const dvec3& place, const FlightState& state) {
    const float values[] = {time,
                            static_cast<float>(place.x),
                            static_cast<float>(place.y),
                            static_cast<float>(place.z),
                            1.0f,  // the gear is down during the whole circuit
                            hundredth(state.pitch),
                            hundredth(state.roll),
                            hundredth(state.heading),
                            hundredth(-state.flaps + state.ailerons),
                            hundredth(-state.flaps - state.ailerons)};
    for (const float value : values) {
        appendReal(text, value);
        text += ' ';
    }
    text.back() = '\n';
}

/// A point in the middle of the flight; relative to it the coordinates stay small.
dvec3 middleOf(const std::vector<FlightState>& states) {
    BoundBox box;
    for (const FlightState& state : states) box.expand(state.place);
    const dvec3 middle = box.getCenter();
    return {std::round(middle.x), std::round(middle.y), 0.0};
}

}  // namespace

void writeFlightPath(const std::string& root) {
    const std::vector<FlightState> states = planFlight(FRAMES_A_SECOND);
    const dvec3 middle = middleOf(states);
    std::string text =
        "// A circuit from the carrier's bow past the island and back onto its deck, for 60 frames a second.\n"
        "// time, x east, y north, z up, undercarriage, pitch, roll, heading, left surfaces, right surfaces\n";
    SmoothPlace rounding(states.front().place - middle);
    PlayClock clock;
    appendFrame(text, 0.0f, rounding.get(), states.front());
    for (std::size_t i = 0; i < states.size(); ++i) {
        const FlightState& state = states[i];
        const float played = clock.now();
        // Slightly earlier than the frame's time, so that the playback at that frame has passed this state.
        const float time = std::nextafter(std::nextafter(played, 0.0f), 0.0f);
        clock.nextFrame();
        const double early = (played - time) / (clock.now() - played) / FRAMES_A_SECOND;
        const bool moving = length2(state.velocity) > 0.0;
        if (moving) rounding.next(state.place - state.velocity * early - middle);
        const bool moves_next = i + 1 < states.size() && length2(states[i + 1].velocity) > 0.0;
        if (moving || moves_next || i == 0 || i + 1 == states.size()) appendFrame(text, time, rounding.get(), state);
    }
    writeFile(root + "/data/www.dat", text);
}
