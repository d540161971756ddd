// The helicopter's frame: keys, flight, height of the surface below, the particles' deflectors and the rotor wash. Runs
// last in the frame, in every flight mode.
#include <engine/core/Engine.h>
#include <engine/scene/ObjectOcean.h>
#include <engine/scene/ObjectPrefab.h>
#include <engine/scene/ObjectTerrain.h>

#include <algorithm>

#include "src/aircraft/HeliEffectsKit.h"
#include "src/aircraft/Helicopter.h"
#include "src/logic/Logic_Test_Fly.h"

namespace {

constexpr double NO_SURFACE = -1e9;   ///< metres; height when there is no surface below
constexpr float WASH_FACTOR = 10.0f;  ///< factor of the collective at height 0
constexpr float WASH_HEIGHT = 25.0f;  ///< metres of height that reduce the factor by 1

}  // namespace

void Logic_Test_Fly::update_helicopter(float dt) {
    if (!is_helicopter()) return;
    m_helicopter->updateKeys(dt);
    m_helicopter->updateFlight(dt);
    measure_helicopter_surface();
    update_deflectors();
    m_heli_effects.updatePlacement();
    m_heli_effects.updateIntensity((WASH_FACTOR - m_helicopter->getSurfaceHeight() / WASH_HEIGHT) *
                                   m_helicopter->getCollective());
}

/// Uses the higher of ground and sea, waves included.
void Logic_Test_Fly::measure_helicopter_surface() {
    const ObjectPrefab& model = *m_helicopter->getModel();
    const dvec3 geo = model.getWgsPosition();
    double surface = NO_SURFACE, ground = 0.0;
    if (m_terrain && m_terrain->getAltitudeByLonLat(geo.x, geo.y, ground)) surface = std::max(surface, ground);
    m_helicopter->setOverWater(false);
    if (m_ocean) {
        const double sea = Engine::get()->getEllipsoid().toWGS(m_ocean->getWorldPoint(model.getWorldPosition())).z;
        if (sea > surface) {
            m_helicopter->setOverWater(true);
            surface = sea;
        }
    }
    m_helicopter->setSurfaceHeight(static_cast<float>(surface));
}

void Logic_Test_Fly::set_wipers(bool on) {
    if (m_helicopter) m_helicopter->setWipersOn(on);
}
