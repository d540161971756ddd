// The frame of a scene logic, as the application, the tests and the benches run it.
#pragma once

#include <engine/core/Engine.h>

#include "common/LogicBase.h"

/// What an application adds to the frame, at its three places; these do nothing. A class with the same operations takes
/// its place.
struct FrameSteps {
    void begun() {}       ///< the clock has moved and this frame's input was handed out: scene commands
    void moved(float) {}  ///< the logic has updated: what else moves bodies, for a frame of so many seconds
    void placed() {}      ///< physics is done and the logic has placed the camera: picture, what observes the scene
};

/// One frame of dt seconds. Frame thread; the logic was initialised.
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
