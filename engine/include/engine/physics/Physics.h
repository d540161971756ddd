// The physics of a world.
#pragma once

#include "engine/Api.h"
#include "engine/math/Vec.h"

/// The physics' operations for the scene's logic.
class ENGINE_API Physics {
public:
    virtual ~Physics() = default;
    /// Acceleration in the local east-north-up frame, m/s^2; it acts along each body's own vertical.
    virtual vec3 getGravity() const = 0;
    virtual void setGravity(const vec3& gravity) = 0;
};
