// Forces of the sea on a floating box: lift and damping at points of its hull.
#pragma once

#include <engine/math/Vec.h>
#include <engine/text/Containers.h>

#include "common/LogicApi.h"

class BodyRigid;
class ObjectOcean;

/// Lifts a body whose first shape is a box. The lift depends on the depth of its bottom face below the waves: a box of
/// volume V that is immersed by the share f of its height carries V * density * f^2 kilograms. The density is the same
/// for all bodies at first; bodies differ in mass.
class LOGIC_API Buoyancy {
public:
    /// Neither is owned; both must outlive this. If the body's node is in no world, or its first shape is no box, one
    /// line is logged and there are no points. The ocean may be null: the sea is then level.
    Buoyancy(BodyRigid* body, ObjectOcean* ocean);

    virtual float getDensity() const { return m_density; }
    virtual void setDensity(float density) { m_density = density; }
    virtual ~Buoyancy() = default;

    /// Applies the forces for the next physics step. The waves flatten with the view's height, like the drawn waves.
    void update();
    /// Sets density and damping to their defaults and the submerged ratio to 0.
    void reset();

    /// Mean immersed share of the points, 0..1, at the last update; NaN when there are no points.
    float getSubmergedRatio() const { return m_submerged_ratio; }
    float getDamping() const { return m_damping; }  ///< of a point's velocity, per second and unit of mass
    void setDamping(float damping) { m_damping = damping; }
    float getWeightOfVolume() const { return m_weight_of_volume; }  ///< gravity times the box's volume, m^4/s^2
    const jVector<dvec3>& getPoints() const { return m_points; }    ///< in the box's frame, at half its height

private:
    float push(const dvec3& place, const vec3& up, double wave_rise);

    BodyRigid* m_body;
    ObjectOcean* m_ocean;
    float m_height = 0.0f;  ///< of the box, metres
    float m_submerged_ratio = 0.0f;
    float m_damping = 0.3f;
    float m_reserved[3] = {300.0f, 0.9f, 1.0f};  ///< not used yet
    jVector<dvec3> m_points;
    float m_weight_of_volume = 0.0f;
    float m_density = 100.0f;
};
