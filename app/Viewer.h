// The viewer: all objects of a run, and its frame.
#pragma once

#include <optional>
#include <string>

#include "Carrier.h"
#include "Controls.h"
#include "FramePacer.h"
#include "InputScript.h"
#include "Options.h"
#include "Plugin.h"
#include "Report.h"
#include "SceneScript.h"
#include "Screen.h"
#include "app/scene/SceneCommandQueue.h"
#include "app/scene/SceneController.h"
#include "app/scene/SceneQuery.h"
#include "engine/core/Engine.h"

/// Engine, logic and picture of one run, with its controls, commands and reports. One at a time; frame thread.
class Viewer {
public:
    /// The options outlive the viewer.
    explicit Viewer(const Options& options) : m_options(options) {}
    ~Viewer();
    Viewer(const Viewer&) = delete;
    Viewer& operator=(const Viewer&) = delete;

    /// Creates all of it, in the order of the members. False when the run cannot begin; `error` then contains the
    /// reason and what to do. Call it once.
    bool open(std::string& error);
    /// Runs one frame. False when the run is over: after the last frame, when the window was closed, or when a picture
    /// could not be written. REQUIRES an open viewer.
    bool frame();
    /// Ends the run: the last pictures, the end of the logic, the reports. False when one of these, or a picture
    /// before, could not be written; `error` then contains the reason. REQUIRES an open viewer.
    bool close(std::string& error);

    Engine& getEngine() { return *m_engine; }                         ///< REQUIRES an open viewer, like the ones below
    Logic_Test_Fly* getFlyLogic() { return m_plugin.getFlyLogic(); }  ///< null with another logic
    Picture* getPicture() { return m_screen.getPicture(); }           ///< null without one
    SceneCommandQueue& getCommands() { return m_commands; }
    const SceneQuery& getQuery() const { return *m_query; }  ///< REQUIRES the flight-test logic

private:
    struct Steps;

    bool startLogic(std::string& error);
    void endLogic();
    void giveOptionCommands();

    const Options& m_options;
    std::optional<Engine> m_engine;
    HashWriter m_hashes;
    Plugin m_plugin;
    Screen m_screen;
    InputScript m_input;
    SceneScript m_script;
    SceneCommandQueue m_commands;
    std::optional<SceneQuery> m_query;  ///< only with the flight-test logic
    std::optional<SceneController> m_controller;
    std::optional<Controls> m_controls;
    std::optional<Carrier> m_carrier;
    std::optional<FramePacer> m_pacer;
    std::optional<StatsPrinter> m_stats;
    long m_frame = 0;     ///< frames begun so far
    std::string m_error;  ///< error text of a picture that could not be written; else empty
};
