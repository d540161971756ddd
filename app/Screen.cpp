// Opens the picture when a run needs one, and draws it after the logic has placed the camera.
#include "Screen.h"

#include <dlfcn.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "Plugin.h"
#include "engine/core/Engine.h"
#include "engine/gui/UIRoot.h"
#include "engine/input/InputRouter.h"
#include "engine/text/Log.h"
#include "src/logic/AppData.h"

namespace {

Quality qualityOf(const std::string& name) {
    return name == "low" ? Quality::LOW : name == "high" ? Quality::HIGH : Quality::MEDIUM;
}

bool hasDisplay() {
    const char* const display = std::getenv("DISPLAY");
    return display && *display;
}

}  // namespace

bool Screen::open(const Options& options, const std::string& library, Engine& engine, std::string& error) {
    m_engine = &engine;
    // The logic's panels are made for the window's size.
    engine.getInput()->resize(options.size[0], options.size[1]);
    engine.getInput()->dispatch();
    PictureSettings settings;
    settings.window = !options.headless && hasDisplay();
    m_screenshots = options.screenshots;
    const AppData& config = AppData::get();
    ChannelView view;
    if (!options.channel.empty() && !config.applyShear(options.channel, view)) {
        error = std::string(AppData::PATH) + " names no channel \"" + options.channel + "\" under \"slaves\"";
        return false;
    }
    settings.shear = {view.shear[0], view.shear[1]};
    settings.yaw = view.yaw;
    settings.fov = view.fov;
    if (!settings.window && !options.headless) {
        jLog::warning("there is no display (DISPLAY is not set): the run goes on without a window, as with --headless");
    }
    if (!settings.window && m_screenshots.empty()) return true;

    settings.width = options.size[0];
    settings.height = options.size[1];
    settings.fullscreen = options.fullscreen;
    settings.quality = qualityOf(options.quality);
    settings.vsync = config.isVsync();
    m_shows_rate = config.isShowFps();
    m_rate_is_instant = config.isRealTimeFps();
    m_draws_always = settings.window;
    m_shows_panels = !options.no_panels;

    m_library = dlopen(library.c_str(), RTLD_NOW | RTLD_GLOBAL);
    const auto factory = m_library ? reinterpret_cast<PictureFactory>(dlsym(m_library, "createPicture")) : nullptr;
    if (!factory) {
        const char* const why = dlerror();
        error = why ? why : library + " makes no picture";
        return false;
    }
    if (!checkInterface(m_library, reinterpret_cast<void*>(factory), "PictureInterfaceVersion",
                        PICTURE_INTERFACE_VERSION, library, error)) {
        return false;
    }
    m_picture.reset(factory(engine, settings, error));
    engine.getInput()->dispatch();  // the window may be smaller than requested
    return m_picture != nullptr;
}

bool Screen::draw(long frame, std::string& error) {
    if (!m_picture) return true;
    if (m_shows_rate) showRate();
    const bool due = std::any_of(m_screenshots.begin(), m_screenshots.end(),
                                 [&](const Screenshot& shot) { return shot.frame == frame; });
    if (!m_draws_always && !due) return true;
    if (m_shows_panels) m_engine->updateGui();
    m_picture->draw();
    return saveDue(frame, error);
}

bool Screen::saveDue(long frame, std::string& error) {
    for (const Screenshot& shot : m_screenshots) {
        if (shot.frame == frame && !m_picture->save(shot.file, error)) return false;
    }
    std::erase_if(m_screenshots, [&](const Screenshot& shot) { return shot.frame == frame; });
    return true;
}

bool Screen::finish(std::string& error) {
    bool wants_last = false;
    for (const Screenshot& shot : m_screenshots) {
        if (shot.frame == 0) {
            wants_last = true;
        } else {
            jLog::warning("the run ended before frame %ld: %s was not written", shot.frame, shot.file.c_str());
        }
    }
    if (!wants_last) return true;
    if (m_shows_panels) m_engine->updateGui();
    m_picture->draw();
    return saveDue(0, error);
}

void Screen::showRate() {
    ++m_rate_frames;
    const Clock::time_point now = Clock::now();
    const double elapsed = std::chrono::duration<double>(now - m_rate_start).count();
    if (!m_rate_is_instant && elapsed < 1.0) return;
    char line[32];
    std::snprintf(line, sizeof line, "%.1f fps", m_rate_frames / std::max(elapsed, 1e-6));
    m_picture->setStatusLine(line);
    m_rate_start = now;
    m_rate_frames = 0;
}
