// The sea's mean level and state.
#include "engine/scene/ObjectOcean.h"

#include <cmath>

#include "engine/globe/EllipsoidModel.h"

dvec3 ObjectOcean::getWorldPoint(const dvec3& world) const {
    const EllipsoidModel globe;
    const dvec3 geo = globe.toWGS(world);
    return globe.toWorld(dvec3(geo.x, geo.y, 0.0));
}

bool ObjectOcean::setParameter(const jString& parameter, float value) {
    if (parameter != "beaufort") return Object::setParameter(parameter, value);
    setBeaufort(static_cast<int>(std::lround(std::fmin(std::fmax(value, 0.0f), 12.0f))));
    return true;
}
