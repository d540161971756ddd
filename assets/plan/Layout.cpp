// Poses on the ellipsoid for the objects of the demonstration.
#include "plan/Layout.h"

#include <cmath>

#include "engine/globe/EllipsoidModel.h"
#include "engine/math/jMath.h"

namespace {

const EllipsoidModel GLOBE;

dmat4 frameAt(const dvec3& geodetic, double heading) {
    const dvec3 world = GLOBE.toWorld(geodetic);
    return {GLOBE.fromWgsHPR(world, {heading, 0.0, 0.0}), world};
}

}  // namespace

dmat4 airfieldFrame() {
    return frameAt({DEMO_CENTRE.x, DEMO_CENTRE.y, AIRFIELD_HEIGHT}, RUNWAY_HEADING);
}

dmat4 carrierFrame() {
    // Off the island's windward side, with open water below the approach from astern.
    constexpr double BEARING = 110.0, DISTANCE = 5200.0;
    const dmat4 centre = GLOBE.getWGSTransform(GLOBE.toWorld(DEMO_CENTRE));
    const double angle = BEARING * jMath::DEG2RAD;
    dvec3 place = GLOBE.toWGS(centre * dvec3(DISTANCE * std::sin(angle), DISTANCE * std::cos(angle), 0.0));
    place.z = 0.0;
    return frameAt(place, CARRIER_HEADING);
}

dvec3 airfieldPlace(double right, double along, double height) {
    dvec3 place = GLOBE.toWGS(airfieldFrame() * dvec3(right, along, 0.0));
    place.z = AIRFIELD_HEIGHT + height;
    return place;
}

GeodeticPose poseOf(const dmat4& world) {
    return {GLOBE.toWGS(world.t), GLOBE.toWgsHPR(world)};
}

GeodeticPose deckStart() {
    const dvec3 origin = LAUNCH_POINT + dvec3(0.0, 0.0, STANDING_HEIGHT + START_EXTRA);
    return poseOf(carrierFrame() * dmat4::translation(origin));
}

GeodeticPose runwayStart() {
    constexpr double FROM_THRESHOLD = 60.0;
    return {airfieldPlace(0.0, FROM_THRESHOLD - RUNWAY_LENGTH / 2.0, STANDING_HEIGHT + START_EXTRA),
            {RUNWAY_HEADING, 0.0, 0.0}};
}
