// Sample points of a hull's box and the forces at them; called by the ship's step, before the physics step.
#include "common/ship/Buoyancy.h"

#include <engine/camera/CameraControl.h>
#include <engine/core/Engine.h>
#include <engine/physics/Physics.h>
#include <engine/scene/ObjectOcean.h>
#include <engine/scene/World.h>
#include <engine/text/Log.h>

#include <algorithm>
#include <cmath>

namespace {

constexpr int ROWS = 8, COLUMNS = 3;                       ///< along and across the hull
constexpr double FADE_END = 1000.0, FADE_LENGTH = 1000.0;  ///< metres of the view's height; equal to the drawn sea's
constexpr float DENSITY = 100.0f, DAMPING = 0.3f, NOTHING = 0.0f;

/// Factor of the wave height at the height of the view, 0..1.
double getWaveRise() {
    const CameraControl* const camera = Engine::get()->getCameraControl();
    const Node* const view = camera ? camera->getNode() : nullptr;
    return view ? jMath::getFadeOut(view->getWgsPosition().z, FADE_END, FADE_LENGTH) : 1.0;
}

}  // namespace

Buoyancy::Buoyancy(BodyRigid* body, ObjectOcean* ocean) : m_body(body), m_ocean(ocean) {
    const World* const world = body->getObject()->getWorld();
    if (!world) {
        jLog::error("%s:%s", "Buoyancy::Buoyancy", "world");
        return;
    }
    const Shape* const hull = body->getShape(0);
    if (!hull || hull->getType() != Shape::BOX) {
        jLog::warning("%s:first shape must be box", "Buoyancy::Buoyancy");
        return;
    }
    const vec3 size = hull->getSize();
    m_height = size.z;
    m_weight_of_volume = length(world->getPhysics()->getGravity() * (size.x * size.y * size.z));
    const dvec3 full(size);
    for (int i = 0; i < ROWS; ++i) {
        for (int j = 0; j < COLUMNS; ++j) {
            m_points.append(dvec3(full.x * (j / (COLUMNS - 1.0) - 0.5), full.y * (i / (ROWS - 1.0) - 0.5), 0.0));
        }
    }
}

void Buoyancy::reset() {
    m_density = DENSITY;
    m_damping = DAMPING;
    m_submerged_ratio = NOTHING;
    m_reserved[0] = 300.0f;
    m_reserved[1] = 0.9f;
    m_reserved[2] = 1.0f;
}

void Buoyancy::update() {
    m_submerged_ratio = 0.0f;
    if (!m_points.empty()) {
        const dmat4 hull = m_body->getTransform() * m_body->getShape(0)->getTransform();
        const dvec3 to_bottom = hull.getZ() * (0.5 * static_cast<double>(m_height));
        const vec3 up = narrow(hull.getZ());
        const double wave_rise = getWaveRise();
        for (const dvec3& point : m_points) m_submerged_ratio += push(hull * point - to_bottom, up, wave_rise);
    }
    m_submerged_ratio /= static_cast<float>(m_points.size());
}

/// Applies lift and damping at one point of the bottom face. Returns the immersed share there, 0..1.
float Buoyancy::push(const dvec3& place, const vec3& up, double wave_rise) {
    const dvec3 geo = Engine::get()->getEllipsoid().toWGS(place);
    double wave = 0.0;
    if (m_ocean) {
        // Reads the wave height directly: no conversion of the surface point to world coordinates and back.
        double east, north;
        m_ocean->getFieldPlace(geo.x, geo.y, east, north);
        wave = static_cast<double>(m_ocean->getField().getHeight(east, north)) * wave_rise;
    }
    const auto share = static_cast<float>(std::clamp((wave - geo.z) / static_cast<double>(m_height), 0.0, 1.0));
    if (!(share > 0.0f)) return share;
    const float square = share * share;
    m_body->addWorldForce(place,
                          up * (m_weight_of_volume * getDensity() * square / static_cast<float>(m_points.size())));
    m_body->addWorldForce(place, m_body->getWorldVelocity(place) * (m_body->getMass() * -m_damping * square));
    return share;
}
