// The command line: what is refused, and the effect of each option on the run.
#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include "app/Viewer.h"
#include "engine/camera/CameraControl.h"
#include "engine/gui/UIRoot.h"
#include "engine/scene/World.h"
#include "engine/text/Log.h"
#include "render/Picture.h"
#include "src/logic/Logic_Test_Fly.h"
#include "support/FakeHost.h"
#include "support/TestScene.h"

namespace {

/// Parses a command line, with words separated by blanks.
std::optional<int> parse(const std::string& line, Options& options) {
    std::istringstream in("deckview " + line);
    std::vector<std::string> words;
    for (std::string word; in >> word;) words.push_back(word);
    std::vector<char*> arguments;
    for (std::string& word : words) arguments.push_back(word.data());
    return parseOptions(static_cast<int>(arguments.size()), arguments.data(), options);
}

TEST(Options, WrongUsageIsNamed) {
    const struct {
        const char* line;
        const char* says;
    } cases[] = {{"--no-such-option", "no-such-option"},
                 {"--step 0", "seconds above 0"},
                 {"--step 1/0", "seconds above 0"},
                 {"--step 1/60s", "seconds above 0"},
                 {"--step nan", "seconds above 0"},
                 {"--frames -3", "frames"},
                 {"--drive-ship sideways", "drive-ship"},
                 {"--set fly_mode", "KEY=VALUE"},
                 {"--size 0x10", "WIDTHxHEIGHT"},
                 {"--size 99999x10", "WIDTHxHEIGHT"},
                 {"--size 64", "WIDTHxHEIGHT"},
                 {"--quality best", "medium"},
                 {"--track TOD", "PERCENT"},
                 {"--visibility -1", "metres"},
                 {"--date 2026-2-30", "YEAR-MONTH-DAY"},
                 {"--date 2026-257-15", "YEAR-MONTH-DAY"},
                 {"--camera 1,2", "LON,LAT,HEIGHT"},
                 {"--camera 1,95,3", "LON,LAT,HEIGHT"}};
    for (const auto& c : cases) {
        testing::internal::CaptureStderr();
        Options options;
        EXPECT_EQ(parse(c.line, options), 2) << c.line;
        EXPECT_NE(testing::internal::GetCapturedStderr().find(c.says), std::string::npos) << c.line;
    }
}

/// A run in this process, without a window.
class ViewerRun {
public:
    explicit ViewerRun(const std::string& line) {
        EXPECT_EQ(parse("--headless --step 1/60 --size 64x36 " + line, m_options), std::nullopt) << line;
        const std::pair<const char*, int> ports[] = {{"local_port", findFreePort()},
                                                     {"recv_from_flightSimulation_port", 1},
                                                     {"send_to_flightSimulation_port", 1}};
        for (const auto& [key, port] : ports) m_options.overrides.emplace_back(key, std::to_string(port));
        m_viewer.emplace(m_options);
        if (!m_viewer->open(m_error)) throw std::runtime_error(m_error);
    }
    ~ViewerRun() { m_viewer->close(m_error); }

    ViewerRun& frames(int count) {
        for (int i = 0; i < count; ++i) EXPECT_TRUE(m_viewer->frame());
        return *this;
    }
    /// The picture of the first frame, brightness 0 to 1, from the upper left.
    std::vector<double> look() {
        frames(1);
        const Snapshot snapshot = m_viewer->getPicture()->capture();
        std::vector<double> grey;
        for (std::size_t i = 0; i + 2 < snapshot.rgb.size(); i += 3) {
            grey.push_back((snapshot.rgb[i] + snapshot.rgb[i + 1] + snapshot.rgb[i + 2]) / 765.0);
        }
        return grey;
    }
    Viewer* operator->() { return &*m_viewer; }

private:
    Options m_options;
    std::string m_error;
    std::optional<Viewer> m_viewer;
};

TEST(Options, DoWhatTheySay) {
    const struct {
        const char* line;
        int frames;
        std::function<bool(Viewer&)> holds;
    } cases[] = {
        {"--date 2026-3-9", 1,
         [](Viewer& v) { return v.getQuery().getWeather().month == 3 && v.getQuery().getWeather().day == 9; }},
        {"--track snow=40 --track TOD=75", 1,
         [](Viewer& v) {
             const SceneWeather weather = v.getQuery().getWeather();
             return std::fabs(weather.snow - 40.0) < 0.01 && std::fabs(weather.time - 18.0) < 0.5;
         }},
        {"--visibility 899", 1, [](Viewer& v) { return v.getQuery().getWeather().visibility == 900.0; }},
        {"--set fly_mode=1", 1, [](Viewer& v) { return v.getFlyLogic()->getFlyMode() == MANUAL_FLY; }},
        {"--airport start_runway", 1,
         [](Viewer& v) { return std::fabs(v.getQuery().getAircraft()->geodetic.x - 112.34) < 0.01; }},
        {"--aircraft data/assets/Targets/MODELS/EXTRA300S/EXTRA300S.cfg", 1,
         [](Viewer& v) { return v.getFlyLogic()->getAircraftType() == "extra300s"; }},
        {"--carrier nobody", 1, [](Viewer& v) { return !v.getQuery().getShip(); }},
        {"--drive-ship steady", 400, [](Viewer& v) { return length(v.getQuery().getShip()->velocity) > 0.5; }},
        {"--step 0.05", 2, [](Viewer& v) { return std::fabs(v.getEngine().getTime() - 0.1) < 1e-9; }},
        {"--frames 2", 2, [](Viewer& v) { return !v.frame(); }},
        {"--size 200x120", 1, [](Viewer& v) { return v.getEngine().getUIRoot()->getHeight() == 120; }},
        {"--camera 112.4,16.83,500,90,-10,5", 2,
         [](Viewer& v) {
             const Node& eye = *v.getEngine().getCameraControl()->getNode();
             const dvec3 geo = eye.getWgsPosition();
             const dmat4 level = v.getEngine().getEllipsoid().getWGSTransform(eye.getWorldPosition());
             const dvec3 ahead = -eye.getWorldTransform().getZ();
             return std::fabs(geo.z - 500.0) < 1e-3 && dot(ahead, level.x) > 0.98 &&
                    std::fabs(dot(ahead, level.z) - std::sin(-10.0 * jMath::DEG2RAD)) < 1e-3;
         }},
    };
    for (const auto& c : cases) {
        jLog::setSink([](jLog::Level, const jString&) {});
        ViewerRun run(c.line);
        run.frames(c.frames);
        EXPECT_TRUE(c.holds(*run.operator->())) << c.line;
    }
    jLog::setSink({});
}

TEST(Options, FramesFollowTheClockAtMostAtTheLimitOrTheStep) {
    using Clock = std::chrono::steady_clock;
    const Clock::time_point start = Clock::now();
    FramePacer pacer({}, 50.0);
    double sum = 0.0;
    for (int i = 0; i < 10; ++i) sum += pacer.next();
    EXPECT_GE(std::chrono::duration<double>(Clock::now() - start).count(), 0.2);
    EXPECT_GE(sum, 0.2);
    EXPECT_EQ(FramePacer(0.25, 1e-3).next(), 0.25) << "without waiting";
}

double spread(const std::vector<double>& picture) {
    const auto [low, high] = std::minmax_element(picture.begin(), picture.end());
    return *high - *low;
}

double difference(const std::vector<double>& a, const std::vector<double>& b) {
    double sum = 0.0;
    for (std::size_t i = 0; i < a.size(); ++i) sum += std::fabs(a[i] - b[i]);
    return sum / static_cast<double>(a.size());
}

std::vector<double> half(const std::vector<double>& picture, int first) {
    std::vector<double> columns;
    for (std::size_t i = 0; i < picture.size(); ++i) {
        if (static_cast<int>(i % 64) / 32 == first) columns.push_back(picture[i]);
    }
    return columns;
}

TEST(Options, ShowInThePicture) {
    const TestFolder folder;
    const std::string shot = "--no-panels --screenshot " + (folder.getPath() / "a.png").string() + "@1 ";
    const std::string deck = shot + "--camera 112.3935,16.8225,38,";
    const auto look = [](const std::string& line) { return ViewerRun(line).look(); };
    const std::string channel = R"(--channel test --set slaves={"test":{)";
    const std::vector<double> ahead = look(deck + "60"), right = look(deck + "75");
    ASSERT_GT(difference(ahead, right), 0.02) << "the views differ";
    EXPECT_LT(difference(look(deck + "60 " + channel + "\"yaw\":15}}"), right), 0.005);
    EXPECT_LT(difference(half(look(deck + "60 " + channel + "\"shear\":[1,0]}}"), 0), half(ahead, 1)), 0.02);
    EXPECT_GT(difference(look(deck + "60 " + channel + "\"fov\":20}}"), ahead), 0.02);
    EXPECT_LT(spread(look(deck + "60 --visibility 300")), 0.6 * spread(look(deck + "60 --visibility 60000")));
    EXPECT_GT(difference(look(deck + "60 --track TOD=92"), ahead), 0.1) << "night";
}

}  // namespace
