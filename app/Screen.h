// Output of the run: the picture, its library, its screenshots.
#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "Options.h"
#include "render/Picture.h"

class Engine;

/// The picture of a run, if any. The picture's library is loaded only when a run needs it.
class Screen {
public:
    Screen() = default;
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;

    /// Opens a window or an off-screen picture, by the options and the configuration. A run without a window and
    /// without screenshots opens nothing. False on failure, with the reason in `error`. REQUIRES an open configuration;
    /// the engine outlives this object.
    bool open(const Options& options, const std::string& library, Engine& engine, std::string& error);
    /// Queues the window's events. False after the window was closed.
    bool poll() { return !m_picture || m_picture->poll(); }
    /// Draws the frame and writes its screenshots. False when one cannot be written, with the reason in `error`.
    bool draw(long frame, std::string& error);
    /// Writes the screenshots of the last frame, and logs the screenshots of frames that the run did not reach.
    bool finish(std::string& error);
    Picture* getPicture() const { return m_picture.get(); }

private:
    using Clock = std::chrono::steady_clock;

    void showRate();
    bool saveDue(long frame, std::string& error);

    void* m_library = nullptr;  ///< never unloaded: the driver keeps pointers into it after the picture is destroyed
    std::unique_ptr<Picture> m_picture;
    std::vector<Screenshot> m_screenshots;  ///< not yet written
    bool m_shows_panels = true;
    bool m_draws_always = false;  ///< false: only the frames with screenshots
    Engine* m_engine = nullptr;
    bool m_shows_rate = false, m_rate_is_instant = false;
    Clock::time_point m_rate_start = Clock::now();
    int m_rate_frames = 0;
};
