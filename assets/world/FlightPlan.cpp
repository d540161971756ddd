// The flight is a chain of legs, each with smooth changes of speed, heading and slope. The lengths of three steady legs
// are solved so that the chain ends on the strip.
#include "world/FlightPlan.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <stdexcept>

#include "engine/math/jMath.h"
#include "plan/CarrierPlan.h"
#include "plan/Layout.h"

namespace {

constexpr double GRAVITY = 9.81;
const double RUN = carrier::BOW - LAUNCH_POINT.y;  ///< metres from the launch point to the bow's edge
const double GLIDE = std::tan(4.0 * jMath::DEG2RAD);
constexpr double CLIMB = 0.13;  ///< slope

double radians(double degrees) {
    return degrees * jMath::DEG2RAD;
}

/// Rises smoothly from 0 to 1 over `ramp` seconds.
double onset(double t, double ramp) {
    const double u = std::clamp(t / ramp, 0.0, 1.0);
    return 0.5 - 0.5 * std::cos(jMath::PI * u);
}
/// The integral of `onset` from 0 to t.
double onsetSum(double t, double ramp) {
    if (t <= 0.0) return 0.0;
    if (t >= ramp) return t - ramp / 2.0;
    return t / 2.0 - ramp / (2.0 * jMath::PI) * std::sin(jMath::PI * t / ramp);
}

/// Changes over a leg. Their rates rise and fall within `ramp` seconds at its ends.
struct Leg {
    double seconds = 0.0;
    double ramp = 0.0;
    double speed = 0.0;  ///< horizontal, m/s
    double turn = 0.0;   ///< degrees to the left
    double slope = 0.0;  ///< of the path, metres per metre

    double share(double t) const {
        return (onsetSum(t, ramp) - onsetSum(t - (seconds - ramp), ramp)) / (seconds - ramp);
    }
    double rate(double t) const { return (onset(t, ramp) - onset(t - (seconds - ramp), ramp)) / (seconds - ramp); }
};

/// Slope as a function of the distance run: that of the deck, rounded because the wheels reach the ramp one after the
/// other; beyond the bow it decreases to that of the climb.
double takeOffSlope(double run) {
    constexpr double FLATTENING = 200.0;
    const auto hard = [](double at) {
        const double y = LAUNCH_POINT.y + at;
        if (at >= RUN) {
            const double bow = std::tan(radians(carrier::RAMP_ANGLE));
            return bow + (CLIMB - bow) * onset(at - RUN, FLATTENING);
        }
        const double radius = (carrier::BOW - RAMP_START) / std::sin(radians(carrier::RAMP_ANGLE));
        const double along = std::max(0.0, y - RAMP_START);
        return along / std::sqrt(radius * radius - along * along);
    };
    constexpr int SAMPLES = 24;
    constexpr double REACH = 5.5;  // metres fore and aft, about the wheelbase
    double sum = 0.0, weights = 0.0;
    for (int i = 0; i < SAMPLES; ++i) {
        const double u = (i + 0.5) / SAMPLES * 2.0 - 1.0;
        const double weight = 1.0 + std::cos(jMath::PI * u);
        sum += weight * hard(run + u * REACH);
        weights += weight;
    }
    return sum / weights;
}

class Flight {
public:
    Flight();
    std::vector<FlightState> fly(double states_a_second) const;

private:
    enum LegName {
        READY,
        TAKE_OFF,
        CLIMB_OUT,
        LEVEL_OFF,
        TURN_BACK,
        TO_ISLAND,
        TURN_ALONG,
        ALONG_ISLAND,
        TURN_IN,
        LINE_UP,
        TIP_OVER,
        GLIDE_DOWN,
        TOUCH,
        STOP,
        REST
    };

    struct Moment {
        double speed, heading, turn_rate, slope;  ///< heading in degrees, turn rate in radians per second
    };
    Moment at(double t) const;
    double startOf(int leg) const;
    double duration() const { return startOf(static_cast<int>(m_legs.size())); }
    dvec3 velocityIn(int leg) const;
    void closeChain();
    static dvec3 stripPlace(double along);
    dvec3 velocityAt(double t, double run) const;
    FlightState pose(const FlightState& before, const FlightState& now, const FlightState& after, double run) const;

    std::vector<Leg> m_legs;
};

constexpr double SETTLED = 186.0;  ///< metres along the strip, where the aircraft comes to rest

Flight::Flight() : m_legs(REST + 1) {
    m_legs[READY] = {4.0, 1.0};
    m_legs[TAKE_OFF] = {11.3, 0.8, 105.0};
    m_legs[CLIMB_OUT] = {4.0, 1.0};
    m_legs[LEVEL_OFF] = {7.0, 3.0, 0.0, 0.0, -CLIMB};
    m_legs[TURN_BACK] = {50.0, 4.0, 0.0, 172.0};
    m_legs[TURN_ALONG] = {24.0, 4.0, 0.0, 75.0};
    m_legs[TURN_IN] = {42.0, 4.0, -38.0, 113.0 + carrier::STRIP_ANGLE};
    m_legs[LINE_UP] = {6.0, 1.0};
    m_legs[TIP_OVER] = {4.0, 2.0, 0.0, 0.0, -GLIDE};
    m_legs[TOUCH] = {0.5, 0.25, 0.0, 0.0, GLIDE};
    m_legs[STOP] = {3.6, 1.4, -67.0};
    m_legs[REST] = {4.0, 1.0};
    closeChain();
}

double Flight::startOf(int leg) const {
    double t = 0.0;
    for (int i = 0; i < leg; ++i) t += m_legs[static_cast<std::size_t>(i)].seconds;
    return t;
}

/// Slope without that of the take-off, which is a function of the distance.
Flight::Moment Flight::at(double t) const {
    Moment now{0.0, 90.0 - PATH_TURN, 0.0, 0.0};
    for (const Leg& leg : m_legs) {
        if (t <= 0.0) break;
        if (leg.seconds > 0.0 && leg.ramp > 0.0) {
            const double share = leg.share(std::min(t, leg.seconds));
            now.speed += leg.speed * share;
            now.heading += leg.turn * share;
            now.slope += leg.slope * share;
            if (t < leg.seconds) now.turn_rate = radians(leg.turn) * leg.rate(t);
        }
        t -= leg.seconds;
    }
    now.speed = std::max(0.0, now.speed);
    return now;
}

/// Velocity on one of the steady legs.
dvec3 Flight::velocityIn(int leg) const {
    const Moment now = at(startOf(leg));
    const double heading = radians(now.heading);
    return dvec3(std::cos(heading), std::sin(heading), now.slope + CLIMB) * now.speed;
}

dvec3 Flight::stripPlace(double along) {
    return dquat({0.0, 0.0, 1.0}, -PATH_TURN) * (carrier::onStrip(along) - LAUNCH_POINT);
}

/// Steady legs displace the end by their velocities only: a combination of three reaches any point.
void Flight::closeChain() {
    const dvec3 a = velocityIn(TO_ISLAND), b = velocityIn(ALONG_ISLAND), c = velocityIn(GLIDE_DOWN);
    const dvec3 missing = stripPlace(SETTLED) - fly(240.0).back().place;
    const double volume = dot(a, cross(b, c));
    const std::array<std::pair<int, double>, 3> lengths{{{TO_ISLAND, dot(missing, cross(b, c)) / volume},
                                                         {ALONG_ISLAND, dot(a, cross(missing, c)) / volume},
                                                         {GLIDE_DOWN, dot(a, cross(b, missing)) / volume}}};
    for (const auto& [leg, seconds] : lengths) {
        if (!(seconds > 0.0)) throw std::runtime_error("the demonstration's flight does not close");
        m_legs[static_cast<std::size_t>(leg)].seconds = seconds;
    }
}

dvec3 Flight::velocityAt(double t, double run) const {
    const Moment now = at(t);
    const double heading = radians(now.heading);
    return dvec3(std::cos(heading), std::sin(heading), now.slope + takeOffSlope(run)) * now.speed;
}

/// Integrates by the midpoint rule.
std::vector<FlightState> Flight::fly(double states_a_second) const {
    constexpr int PARTS = 8;
    const double part = 1.0 / (states_a_second * PARTS);
    const int count = static_cast<int>(duration() * states_a_second) + 1;
    std::vector<FlightState> moved;
    std::vector<double> runs;  // metres
    FlightState state;
    double run = 0.0;
    for (int i = 0; i <= count * PARTS; ++i) {
        if (i % PARTS == 0) {
            state.seconds = i * part;
            state.velocity = velocityAt(i * part, run);
            moved.push_back(state);
            runs.push_back(run);
        }
        const double middle = (i + 0.5) * part, step = at(middle).speed * part;
        state.place += velocityAt(middle, run + step / 2.0) * part;
        run += step;
    }
    std::vector<FlightState> states;
    for (std::size_t i = 0; i < moved.size(); ++i) {
        const std::size_t before = i > 0 ? i - 1 : 0, after = std::min(i + 1, moved.size() - 1);
        states.push_back(pose(moved[before], moved[i], moved[after], runs[i]));
    }
    return states;
}

/// Bank from the turn; pitch from the path and, off the deck, from the lift that the wing needs at this speed and load.
FlightState Flight::pose(const FlightState& before, const FlightState& now, const FlightState& after,
                         double run) const {
    constexpr double APPROACH_SPEED = 67.0, APPROACH_ANGLE = 7.0, MAX_ANGLE = 10.0;  // angles of attack in degrees
    constexpr double FLAPS = 14.0, FLAPS_UP = 95.0, FLAPS_DOWN = 70.0, AILERON = 0.35;
    const Moment moment = at(now.seconds);
    const double lift =
        GRAVITY + (after.velocity.z - before.velocity.z) / std::max(1e-9, after.seconds - before.seconds);
    const double sideways = moment.speed * moment.turn_rate;
    const double bank = std::atan2(sideways, std::max(1.0, lift)) * jMath::RAD2DEG;
    const double slower = APPROACH_SPEED / std::max(1.0, moment.speed);
    const double needed = APPROACH_ANGLE * std::hypot(lift, sideways) / GRAVITY * slower * slower;
    // The nose rises after the bow and lowers after touchdown.
    const double flying =
        onset((run - RUN) / std::max(1.0, moment.speed), 2.0) * (1.0 - onset(now.seconds - startOf(TOUCH), 1.6));
    const double slope = std::atan2(now.velocity.z, moment.speed) * jMath::RAD2DEG;
    const dquat attitude = dquat::fromEulerZXY(moment.heading - 90.0, slope, -bank) *
                           dquat({1.0, 0.0, 0.0}, flying * std::min(MAX_ANGLE, needed));
    const dvec3 hpr = attitude.toEulerZXY();

    FlightState posed = now;
    posed.heading = hpr.x + 90.0;
    posed.pitch = hpr.y;
    posed.roll = -hpr.z;
    posed.flaps = FLAPS * std::clamp((FLAPS_UP - moment.speed) / (FLAPS_UP - FLAPS_DOWN), 0.0, 1.0);
    const double ahead = std::atan2(at(now.seconds + 0.1).turn_rate * moment.speed, GRAVITY);
    posed.ailerons = AILERON * (ahead * jMath::RAD2DEG - bank) / 0.1 * flying;
    return posed;
}

}  // namespace

std::vector<FlightState> planFlight(double states_a_second) {
    return Flight().fly(states_a_second);
}
