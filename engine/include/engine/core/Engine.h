// The engine: one per process at a time; owns everything that outlives a scene's logic.
#pragma once

#include <cstdint>
#include <memory>

#include "engine/Api.h"
#include "engine/globe/EllipsoidModel.h"
#include "engine/math/jMath.h"
#include "engine/text/Containers.h"

class CameraControl;
class ControlApp;
class InputRouter;
class UIRoot;
class World;
struct EngineState;

/// Interface of the host application for the plug-in. Owned by the engine.
class IApp {
public:
    explicit IApp(ControlApp* control) : m_control(control) {}
    ControlApp* getControl() const { return m_control; }

private:
    ControlApp* m_control;
};

/// Settings of a new engine.
struct EngineSettings {
    jString root = ".";      ///< the runtime root: all paths of the contract are below it
    std::uint64_t seed = 1;  ///< seed of the engine's random numbers
    jString font;            ///< path of the panels' font file; empty for the installed "WenQuanYi Micro Hei"
};

/// Owns the clock, the world, the camera control, the input state and the random numbers. Frame thread only, except
/// where a member says otherwise.
///
/// A frame is: `beginFrame(dt)`, the logic's update, `step()`, the logic's swap, `updateGui()` and the picture where
/// there is one, the logic's render, `endFrame()`. The application alone calls `beginFrame`, `step`, `updateGui` and
/// `endFrame`; a plug-in must not.
class ENGINE_API Engine {
public:
    /// REQUIRES that no other engine exists.
    explicit Engine(const EngineSettings& settings = {});
    ~Engine();
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;

    static Engine* get();  ///< null when there is none

    // Owned by the engine; never null before its destruction.
    const EllipsoidModel& getEllipsoid() const;
    World* getWorld();
    CameraControl* getCameraControl();
    IApp* getApp();
    InputRouter* getInput();
    UIRoot* getUIRoot();
    Random& getRandom();

    /// Increments the frame count, advances the clock and dispatches the queued input. A dt above 0.1 s is clamped to
    /// it and counted; NaN or negative counts as 0.
    void beginFrame(double dt);
    /// Physics, update of the transforms, contacts, particles, triggers.
    void step();
    /// Draws the panels for the picture.
    void updateGui();
    /// Ends the input of this frame.
    void endFrame();

    float getFrameTime() const;  ///< this frame's dt, seconds
    int getFrame() const;        ///< frames begun; 0 before the first
    double getTime() const;      ///< sum of all dt, seconds
    int getClampCount() const;   ///< frames whose dt was clamped

    /// Absolute path of a file below the runtime root. Empty for a path outside the root. An absolute path inside the
    /// root is returned unchanged.
    jString resolvePath(const jString& path) const;

    /// Hash of the state: transform and enabled flag of every node, bodies, and all bytes sent by the process so far.
    std::uint64_t getStateHash() const;

private:
    std::unique_ptr<EngineState> m_state;
};
