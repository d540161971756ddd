// A body's shapes as Bullet shapes, and its mass properties.
#pragma once

#include <btBulletCollisionCommon.h>

#include <memory>
#include <vector>

#include "engine/math/Transform.h"
#include "engine/physics/Body.h"

/// Whether a body can be made with these settings. If not, one log line names `owner` and the reason.
bool isUsable(const BodySettings& settings, const jString& owner);

/// The shapes as children of one compound whose origin is the centre of mass and whose axes are the principal ones.
struct BodyShapes {
    /// REQUIRES usable settings.
    explicit BodyShapes(const BodySettings& settings);

    std::unique_ptr<btCompoundShape> compound;
    std::vector<std::unique_ptr<btConvexShape>> children;
    /// The children shrunk from all sides: swept, so that they pass through nothing.
    std::vector<std::unique_ptr<btConvexShape>> cores;
    double inset = 0.0;          ///< distance by which the thinnest child was shrunk, metres
    btTransform frame;           ///< centre of mass and principal axes in the object's frame
    btVector3 inertia{0, 0, 0};  ///< principal moments, kg m^2
};
