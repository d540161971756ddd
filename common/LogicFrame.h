// The order of one frame with a scene logic, shared by the application, the tests and the benches.
#pragma once

#include <engine/core/Engine.h>

#include "common/LogicBase.h"

/// Actions that an application adds to the frame at three points; these do nothing. Any class with the same member
/// functions can replace it.
struct FrameSteps {
    void begun() {}       ///< clock advanced, input dispatched: run scene commands
    void moved(float) {}  ///< logic updated: move further bodies; the frame's time in seconds
    void placed() {}      ///< physics stepped, camera placed: draw, run observers of the scene
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
