// Opens the picture when a run wants one, and draws it after the logic has placed the camera.
#include "Screen.h"

#include <dlfcn.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "common/LogicBase.h"
#include "engine/core/Engine.h"
#include "engine/gui/UIRoot.h"
#include "engine/input/InputRouter.h"
#include "engine/text/Log.h"
#include "engine/text/Package.h"
#include "src/logic/Logic_Test_Fly.h"

namespace {

Quality qualityOf(const std::string& name) {
    return name == "low" ? Quality::LOW : name == "high" ? Quality::HIGH : Quality::MEDIUM;
}

bool hasDisplay() {
    const char* const display = std::getenv("DISPLAY");
    return display && *display;
}

/// False when the configuration does not know the channel.
bool readChannel(const Package& config, const std::string& name, PictureSettings& settings) {
    const Package* const slaves = config.getPackage("slaves");
    const Package* const channel = slaves ? slaves->getPackage(name.c_str()) : nullptr;
    if (!channel) return false;
    float shear[2];
    if (channel->getFloats("shear", shear, 2)) settings.shear = {shear[0], shear[1]};
    settings.yaw = channel->getDouble("yaw");
    if (!channel->has("fov")) return true;
    const double fov = channel->getDouble("fov");
    if (fov > 0.0 && fov < 180.0) {
        settings.fov = fov;
    } else {
        jLog::error("%s: \"fov\" of channel \"%s\" must lie between 0 and 180 degrees", CONFIG_PATH, name.c_str());
    }
    return true;
}

}  // namespace

Screen::~Screen() {
    disconnect();
    // The library stays: what it registered with the driver outlives the picture.
    m_picture.reset();
}

bool Screen::open(const Options& options, const std::string& library, Engine& engine, std::string& error) {
    m_engine = &engine;
    // The logic makes its panels for the window's size.
    engine.getInput()->resize(options.size[0], options.size[1]);
    engine.getInput()->dispatch();
    PictureSettings settings;
    settings.window = !options.headless && hasDisplay();
    m_screenshots = options.screenshots;
    Package config;
    mjl::open(CONFIG_PATH, config, true);
    if (!options.channel.empty() && !readChannel(config, options.channel, settings)) {
        error = std::string(CONFIG_PATH) + " names no channel \"" + options.channel + "\" under \"slaves\"";
        return false;
    }
    if (!settings.window && !options.headless) {
        jLog::warning("there is no display (DISPLAY is not set): the run goes on without a window, as with --headless");
    }
    if (!settings.window && m_screenshots.empty()) return true;

    settings.width = options.size[0];
    settings.height = options.size[1];
    settings.fullscreen = options.fullscreen;
    settings.quality = qualityOf(options.quality);
    settings.vsync = config.getBool("vsync");
    m_shows_rate = config.getBool("show_fps");
    m_rate_is_instant = config.getBool("real_time_fps");
    m_draws_always = settings.window;
    m_shows_panels = !options.no_panels;

    m_library = dlopen(library.c_str(), RTLD_NOW | RTLD_GLOBAL);
    const auto factory = m_library ? reinterpret_cast<PictureFactory>(dlsym(m_library, "createPicture")) : nullptr;
    if (!factory) {
        const char* const why = dlerror();
        error = why ? why : library + " makes no picture";
        return false;
    }
    m_picture.reset(factory(engine, settings, error));
    engine.getInput()->dispatch();  // a window may have come out smaller
    return m_picture != nullptr;
}

void Screen::connect(LogicBase& logic) {
    InputRouter& input = *m_engine->getInput();
    IApp* const app = m_engine->getApp();
    input.bindKeyPress([&logic, app](const GUIEventKey& event) { logic.onKeyPress(event, app); });
    input.bindKeyRelease([&logic, app](const GUIEventKey& event) { logic.onKeyRelease(event, app); });
    input.bindMouseDown([&logic, app](const GUIEventMouse& event) { logic.onMouseDown(event, app); });
    input.bindMouseUp([&logic, app](const GUIEventMouse& event) { logic.onMouseUp(event, app); });
    input.bindMouseMove([&logic, app](const GUIEventMouse& event) { logic.onMouseMove(event, app); });
    input.bindWheel([&logic, app](const GUIEventWheel& event) { logic.onMouseWheel(event, app); });
    auto* const fly = dynamic_cast<Logic_Test_Fly*>(&logic);
    if (!m_picture || !fly) return;
    logic.m_signal_20_fog.append([this, fly](float) {
        m_picture->setVisibility(std::max(fly->getVisibilityDistance(), 1) * Logic_Test_Fly::VISIBILITY_STEP);
    });
}

void Screen::disconnect() {
    if (!m_engine) return;
    m_engine->getInput()->clearBindings();
    m_engine->getUIRoot()->clear();
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
