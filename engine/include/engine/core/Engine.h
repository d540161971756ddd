// The engine: one per process at a time; owns everything that lives longer than a scene's logic.
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

/// The host application as the plug-in sees it. Owned by the engine.
class IApp {
public:
    explicit IApp(ControlApp* control) : m_control(control) {}
    ControlApp* getControl() const { return m_control; }

private:
    ControlApp* m_control;
};

/// Settings of a new engine.
struct EngineSettings {
    jString root = ".";      ///< the runtime root: every path of the contract lies under it
    std::uint64_t seed = 1;  ///< of the engine's random numbers
    jString font;            ///< path of the panels' font file; empty for the installed "WenQuanYi Micro Hei"
};

/// Owns the clock, the world, the camera control, the input state and the random numbers. Frame thread only, except
/// where a member says otherwise.
///
/// A frame is: `beginFrame(dt)`, the logic's update, `step()`, the logic's swap, `updateGui()` and the picture where
/// there is one, the logic's render, `endFrame()`.
class ENGINE_API Engine {
public:
    /// REQUIRES that no other engine lives.
    explicit Engine(const EngineSettings& settings = {});
    ~Engine();
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;

    static Engine* get();  ///< null when there is none

    const EllipsoidModel& getEllipsoid() const;
    World* getWorld();
    CameraControl* getCameraControl();
    IApp* getApp();
    InputRouter* getInput();
    UIRoot* getUIRoot();
    Random& getRandom();

    /// Counts the frame, moves the clock and hands out the input that waits. A dt above 0.1 s is clamped to it and
    /// counted; NaN or negative counts as 0.
    void beginFrame(double dt);
    /// Physics, transforms written back, contacts, particles, triggers.
    void step();
    /// Draws the panels for the picture.
    void updateGui();
    /// Ends the input of this frame.
    void endFrame();

    float getFrameTime() const;  ///< this frame's dt, seconds
    int getFrame() const;        ///< frames begun; 0 before the first
    double getTime() const;      ///< sum of all dt, seconds
    int getClampCount() const;   ///< frames whose dt was clamped

    /// The absolute path of a file of the runtime root. A path that leads out of the root gives an empty string.
    /// An absolute path inside the root is kept.
    jString resolvePath(const jString& path) const;

    /// A hash of the state: every node's transform and enabled flag, bodies, the bytes that the process has sent so
    /// far.
    std::uint64_t getStateHash() const;

private:
    std::unique_ptr<EngineState> m_state;
};
