// An oscillation between two limits.
#pragma once

/// Advances an angle by speed * direction for dt seconds; clamps it at +-limit and there reverses the direction.
inline void swing(float& angle, int& direction, float speed, float limit, float dt) {
    angle += dt * speed * static_cast<float>(direction);
    if (angle >= limit) {
        angle = limit;
        direction = -direction;
    } else if (angle <= -limit) {
        angle = -limit;
        direction = -direction;
    }
}
