// Weather, time of day and visibility: the fog's value, the logic's own tracks, the scene's weather nodes.
#include <limits>

#include "LogicWorld.h"
#include "engine/memory/Allocator.h"
#include "engine/scene/ObjectOcean.h"
#include "engine/track/Track.h"

namespace {

const std::string FOLDER = "data/assets/Anim/Fly_simulator/";

class EnvironmentTest : public LogicTest {
protected:
    ~EnvironmentTest() override { finish(); }

    /// Makes the logic and initialises it; `loaded` then has the tracks in the order in which they were told.
    void begin() {
        finish();
        m_base = CreateLogic(&world(), nullptr);
        m_base->m_signal_13_track_loaded.append([this](Track* track) { loaded.append(track); });
        printedBy([this] { m_base->init(); });
    }
    void finish() {
        jDelete(m_base);
        m_base = nullptr;
        loaded.clear();
    }
    Logic_Test_Fly& fly() { return *static_cast<Logic_Test_Fly*>(m_base); }
    void writeTrack(const std::string& file) { write(FOLDER + file, R"({ "channels": [] })"); }
    static int countTrackBlocks() {
        const auto is_track = [](const MemInfo& info) { return info.function == "Logic_Test_Fly::load_track"; };
        const jVector<MemInfo> infos = memGetInfos();
        return static_cast<int>(std::count_if(infos.begin(), infos.end(), is_track));
    }

    jVector<Track*> loaded;

private:
    LogicBase* m_base = nullptr;
};

TEST_F(EnvironmentTest, VisibilityIsShownAndBecomesTheFogsValue) {
    begin();
    std::vector<std::pair<float, int>> told;
    fly().m_signal_20_fog.append([&](float value) { told.emplace_back(value, fly().getVisibilityDistance()); });
    constexpr int HUGE_STEPS = std::numeric_limits<int>::max();
    const struct {
        int steps;
        float fog;
        const char* metres;
        int kept;
    } cases[] = {{1, 0.39f, "300", 1},     {2, 0.57f, "600", 2},
                 {13, 0.85f, "3900", 13},  {14, 0.88f, "4200", 14},
                 {-7, 0.39f, "-2100", -7}, {HUGE_STEPS, 1.01f, "2147483400", HUGE_STEPS / 300}};
    for (const auto& c : cases) {
        told.clear();
        fly().setVisibilityDistance(c.steps);
        EXPECT_EQ(told, (std::vector<std::pair<float, int>>{{c.fog, c.kept}})) << c.steps;
        EXPECT_EQ(fly().getVisibilityText(), std::string("能见度：") + c.metres);
    }
    fly().use_visibility_set_fog(6000);
    EXPECT_EQ(fly().getFogVisibility(), 6000);
    EXPECT_EQ(fly().getVisibilityDistance(), HUGE_STEPS / 300) << "the user's own setting stays";
}

TEST_F(EnvironmentTest, EachOwnTrackIsThereTwiceAndItsFirstCopyIsSet) {
    for (const char* file :
         {"runway_wet.anim", "TOD.anim", "airport_light_enable.anim", "airport_light_brightness.anim"}) {
        writeTrack(file);
    }
    write(FOLDER + "road_light.anim", "{");
    const int before = countTrackBlocks();
    begin();
    std::string names;
    for (Track* track : loaded) names += track->getName().substr(FOLDER.size()) + " ";
    EXPECT_EQ(names,
              "runway_wet.anim TOD.anim airport_light_enable.anim airport_light_brightness.anim "
              "runway_wet.anim airport_light_brightness.anim ");
    EXPECT_EQ(countTrackBlocks() - before, 6);
    for (const auto& [name, times] : {std::pair("snow", 2), {"autumn", 1}, {"road_light", 1}, {"", 4}}) {
        EXPECT_EQ(countLines(name + std::string(*name ? ".anim\"" : "") + " load failed"), times) << name;
    }

    clearLines();
    const std::string wet = FOLDER + "runway_wet.anim";
    const struct {
        std::function<void()> call;
        int track;
        float position;
    } cases[] = {{[&] { fly().setRain(0.6f); }, 0, 0.6f},
                 {[&] { fly().setTod(0.75f); }, 1, 0.75f},
                 {[&] { fly().setAirportLightEnable(true); }, 2, 1.0f},
                 {[&] { fly().setAirportLightBrightness(0.5f); }, 3, 0.5f},
                 {[&] { fly().set_anim(wet, 150.0f); }, 0, 1.0f},
                 {[&] { fly().set_anim(wet, 33.0f); }, 0, 0.33f},
                 {[&] { fly().set_anim(wet, NAN); }, 0, 0.33f},
                 {[&] { fly().set_anim("runway_wet.anim", 80.0f); }, 0, 0.33f}};
    for (const auto& c : cases) {
        c.call();
        EXPECT_EQ(loaded[c.track]->get(), c.position) << &c - cases;
    }
    EXPECT_EQ(loaded[4]->get() + loaded[5]->get(), 0.0f) << "the second copies";
    EXPECT_TRUE(lines().empty()) << lines().front();
    finish();
    EXPECT_EQ(countTrackBlocks(), before);
}

TEST_F(EnvironmentTest, WeatherNodesAreFoundAndTheOceanKeepsItsOwnState) {
    addNode("ocean");
    begin();
    EXPECT_EQ(fly().getOcean(), nullptr) << "of that name, but no sea";
    world().removeNode(world().getNodeByName("ocean"));

    auto* const ocean = add(std::make_unique<ObjectOcean>());
    ocean->setName("ocean");
    Node *const rain = addNode("rain"), *const hail = addNode("hail"), *const snow = addNode("snow");
    for (const bool enabled : {false, true}) {
        rain->setEnabled(enabled);
        begin();
        EXPECT_EQ(fly().isRaining(), enabled);
        EXPECT_TRUE(fly().getRainNode() == rain && fly().getHailNode() == hail && fly().getSnowNode() == snow);
        EXPECT_EQ(fly().getOcean(), ocean);
        EXPECT_FALSE(ocean->isUseGlobalWind());
        EXPECT_EQ(rain->isEnabled(), enabled) << "switching it is the track's";
    }
}

}  // namespace
