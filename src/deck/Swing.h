// A swing to and fro.
#pragma once

/// Moves an angle on by speed * direction for dt seconds; at a limit it stops there and turns round.
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
