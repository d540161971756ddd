// The cost of a frame of the picture, by view and by part, compared with a frame in which nothing is drawn.
#include <GL/gl.h>

#include <cstring>
#include <memory>

#include "Bench.h"
#include "engine/camera/CameraControl.h"
#include "engine/core/Engine.h"
#include "engine/scene/ObjectPrefab.h"
#include "engine/scene/World.h"
#include "engine/track/Track.h"
#include "render/Picture.h"
#include "support/Paths.h"

namespace {

constexpr int FRAMES = 40, WARM_UP = 10;
constexpr int LOADING = 120;                                   // frames in which the tiles of the ground are loaded
constexpr double WANTED_RATE = 25.0, WANTED_DECK_RATE = 40.0;  // frames per second at the default quality

struct View {
    const char* name;
    dvec3 geodetic;
    dvec3 wgs_hpr;
    double hour;
    const char* track;  ///< set to its end; null for none
    double visibility;
};

// The views of the gallery, and the sea from near.
const View VIEWS[] = {
    {"deck", {112.39587, 16.82388, 27.0}, {52.0, -5.0, 0.0}, 10.0, nullptr, 20000.0},
    {"approach", {112.3698, 16.8138, 185.0}, {67.25, -3.5, 0.0}, 10.0, nullptr, 20000.0},
    {"low over the sea", {112.38, 16.80, 6.0}, {300.0, 0.0, 0.0}, 16.0, nullptr, 20000.0},
    {"cockpit", {112.3962592, 16.8240424, 23.45}, {67.25, -4.0, 0.0}, 10.0, nullptr, 20000.0},
    {"runway by night", {112.3340, 16.8335, 42.0}, {67.25, -4.0, 0.0}, 22.0, nullptr, 20000.0},
    {"deck in fog", {112.39587, 16.82388, 27.0}, {52.0, -5.0, 0.0}, 10.0, nullptr, 1500.0},
    {"deck in rain", {112.39587, 16.82388, 27.0}, {52.0, -5.0, 0.0}, 10.0, "runway_wet", 4500.0},
    {"runway in snow", {112.3345, 16.8337, 40.0}, {67.25, -5.0, 0.0}, 10.0, "snow", 9000.0},
    {"island from 5 km", {112.345, 16.795, 5000.0}, {3.0, -42.0, 0.0}, 10.0, nullptr, 20000.0},
    {"dusk", {112.3990, 16.8232, 32.0}, {290.0, -1.0, 0.0}, 18.6, nullptr, 20000.0},
};

const struct {
    const char* name;
    unsigned part;
} PARTS[] = {{"meshes", PART_MESHES}, {"shadow", PART_SHADOW}, {"terrain", PART_TERRAIN},
             {"sea", PART_SEA},       {"sky", PART_SKY},       {"effects", PART_EFFECTS}};

class Scene {
public:
    Scene(const View& view, Quality quality) {
        EngineSettings engine_settings;
        engine_settings.root = DECKVIEW_ROOT;
        m_engine = std::make_unique<Engine>(engine_settings);
        World& world = *m_engine->getWorld();
        if (!world.load("data/DEMO_PROJECT/DEMO_PROJECT.world")) std::exit(1);
        Node* const jet = world.addChild(new ObjectPrefab("data/assets/Targets/MODELS/FJ_CN_J15/FJ_CN_J15.prefab"));
        jet->setWorldTransform(world.getNodeByName("start_deck")->getWorldTransform());
        world.getEnvironment().time_of_day = static_cast<float>(view.hour);
        if (view.track) {
            m_track.load(std::string("data/assets/Anim/Fly_simulator/") + view.track + ".anim", &world);
            m_track.set(1.0f);
        }
        CameraControl& camera = *m_engine->getCameraControl();
        const EllipsoidModel globe;
        camera.getPosition() = globe.toWorld(view.geodetic);
        camera.getRotation() = globe.fromWgsHPR(camera.getPosition(), view.wgs_hpr) * dquat(dvec3(1.0, 0.0, 0.0), 90.0);
        camera.apply();
        PictureSettings settings;
        settings.quality = quality;
        std::string error;
        m_picture.reset(createPicture(*m_engine, settings, error));
        if (!m_picture) {
            std::fprintf(stderr, "%s\n", error.c_str());
            std::exit(1);
        }
        m_picture->setVisibility(view.visibility);
        for (int i = 0; i < LOADING; ++i) drawFrame();
    }

    /// Median milliseconds of a frame in which these parts are drawn, until the device has finished.
    double measure(unsigned parts) {
        m_picture->setParts(parts);
        std::vector<double> times;
        for (int i = -WARM_UP; i < FRAMES; ++i) {
            const double time = drawFrame();
            if (i >= 0) times.push_back(time * 1e3);
        }
        return bench::median(times);
    }

private:
    /// Seconds taken by drawing.
    double drawFrame() {
        m_engine->beginFrame(1.0 / 60.0);
        m_engine->step();
        const double time = bench::seconds([&] {
            m_picture->draw();
            glFinish();
        });
        m_engine->endFrame();
        return time;
    }

    std::unique_ptr<Engine> m_engine;
    Track m_track;
    std::unique_ptr<Picture> m_picture;
};

void tell(const View& view, Quality quality, bool by_part) {
    Scene scene(view, quality);
    const double whole = scene.measure(PART_ALL), floor = scene.measure(0);
    std::printf("%-18s %6.1f ms %6.1f frames/s", view.name, whole, 1e3 / whole);
    if (by_part) {
        for (const auto& part : PARTS)
            std::printf("  %s %5.1f", part.name, whole - scene.measure(PART_ALL & ~part.part));
    }
    std::printf("  nothing %4.1f", floor);
    if (quality == Quality::MEDIUM) {
        const double wanted = &view == &VIEWS[0] ? WANTED_DECK_RATE : WANTED_RATE;
        std::printf("  %s %.0f", 1e3 / whole >= wanted ? "at least" : "MISSED", wanted);
    }
    std::printf("\n");
    std::fflush(stdout);
}

}  // namespace

int main() {
    std::printf("A frame of 1280x720, medium quality; what it costs less without a part\n");
    for (const View& view : VIEWS) tell(view, Quality::MEDIUM, true);
    for (const auto& [name, quality] : {std::pair{"low", Quality::LOW}, {"high", Quality::HIGH}}) {
        std::printf("%s quality\n", name);
        for (const View& view : VIEWS) tell(view, quality, false);
    }
}
