// What the run shows: the picture, its library, its screenshots.
#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "Options.h"
#include "render/Picture.h"

class Engine;

/// The picture of a run that has one. The library with the picture is loaded only when it is wanted.
class Screen {
public:
    Screen() = default;
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;

    /// Opens a window or an off-screen picture after the options and the configuration. False, with `error` saying why,
    /// when that fails. A run without a window and without screenshots opens nothing. REQUIRES an open configuration;
    /// the engine outlives this.
    bool open(const Options& options, const std::string& library, Engine& engine, std::string& error);
    /// Takes in the window's events; false once it was closed.
    bool poll() { return !m_picture || m_picture->poll(); }
    /// Draws the frame and writes the screenshots of it; false, with `error` saying why, when one cannot be written.
    bool draw(long frame, std::string& error);
    /// Writes the screenshots of the run's end, and logs those whose frames never came.
    bool finish(std::string& error);
    Picture* getPicture() const { return m_picture.get(); }

private:
    using Clock = std::chrono::steady_clock;

    void showRate();
    bool saveDue(long frame, std::string& error);

    void* m_library = nullptr;  ///< stays loaded: what it registered with the driver outlives the picture
    std::unique_ptr<Picture> m_picture;
    std::vector<Screenshot> m_screenshots;  ///< still to be written
    bool m_shows_panels = true;
    bool m_draws_always = false;  ///< else only the frames that screenshots want
    Engine* m_engine = nullptr;
    bool m_shows_rate = false, m_rate_is_instant = false;
    Clock::time_point m_rate_start = Clock::now();
    int m_rate_frames = 0;
};
