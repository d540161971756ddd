// The frame of a scene logic, as the application, the tests and the benches run it.
#pragma once

#include <engine/core/Engine.h>

#include "common/LogicBase.h"

/// Actions that an application adds to the frame, at three points; here they do nothing. A class with the same member
/// functions can be used instead.
struct FrameSteps {
    void begun() {}       ///< the clock has advanced, input was dispatched: scene commands
    void moved(float) {}  ///< the logic has updated: other motion of bodies, with the frame's time in seconds
    void placed() {}      ///< physics is done, the logic has placed the camera: picture, observers of the scene
};

/// Runs one frame of dt seconds. Frame thread. REQUIRES an initialised logic.
template <class Steps>
void runFrame(Engine& engine, LogicBase& logic, double dt, Steps&& steps) {
    engine.beginFrame(dt);
    steps.begun();
    logic.update(engine.getFrameTime());
    steps.moved(engine.getFrameTime());
    engine.step();
    logic.swap();
    steps.placed();
    logic.render();
    engine.endFrame();
}

inline void runFrame(Engine& engine, LogicBase& logic, double dt) {
    runFrame(engine, logic, dt, FrameSteps());
}
