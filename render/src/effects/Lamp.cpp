// Reads a light node; called when one was added or changed.
#include "effects/Lamp.h"

#include <algorithm>
#include <cmath>

#include "engine/math/jMath.h"
#include "engine/scene/SceneNodes.h"

Lamp readLamp(const NodeLight& light) {
    const LightSettings& settings = light.getSettings();
    const dmat4& place = light.getWorldTransform();
    Lamp lamp;
    lamp.position = place.t;
    lamp.axis = normalize(narrow(normalize(place.y)));
    lamp.range = std::fmax(settings.range, 0.0f);
    lamp.size = std::fmax(settings.size, 0.0f);
    const float strongest = std::max({settings.color.x, settings.color.y, settings.color.z, 0.0f});
    const float intensity = light.getIntensity() * strongest;
    if (light.isActive() && std::isfinite(intensity) && intensity > 0.0f) {
        lamp.intensity = intensity;
        const auto share = [strongest](float part) { return std::fmax(part / strongest, 0.0f); };
        lamp.color = {share(settings.color.x), share(settings.color.y), share(settings.color.z)};
    }
    if (settings.kind == LightSettings::SPOT) {
        const double half = std::clamp(static_cast<double>(settings.angle), 1.0, 360.0) * 0.5;
        lamp.cone = static_cast<float>(std::cos(half * jMath::DEG2RAD));
    }
    return lamp;
}
