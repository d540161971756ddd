// A small world with a picture of it, off screen.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <memory>

#include "engine/camera/CameraControl.h"
#include "engine/core/Engine.h"
#include "engine/scene/World.h"
#include "render/Picture.h"
#include "support/Paths.h"

/// An engine over a runtime root, and a picture of its world once `open` was called. Frames are 1/60 s.
class PictureScene {
public:
    explicit PictureScene(const char* root = DECKVIEW_ROOT) : engine(settingsFor(root)) {}

    void open(const PictureSettings& settings = small()) {
        std::string error;
        picture.reset(createPicture(engine, settings, error));
        ASSERT_TRUE(picture) << error;
    }
    /// 320 x 180 pixels, 45 degrees high.
    static PictureSettings small() {
        PictureSettings settings;
        settings.width = 320;
        settings.height = 180;
        return settings;
    }

    void loadDemo() { ASSERT_TRUE(world().load("data/DEMO_PROJECT/DEMO_PROJECT.world")); }
    World& world() { return *engine.getWorld(); }

    /// Looks from a geodetic place; heading clockwise from north, pitch upward, roll right wing down.
    void look(const dvec3& geodetic, const dvec3& wgs_hpr) {
        const EllipsoidModel& globe = engine.getEllipsoid();
        CameraControl& camera = *engine.getCameraControl();
        camera.getPosition() = globe.toWorld(geodetic);
        camera.getRotation() = globe.fromWgsHPR(camera.getPosition(), wgs_hpr) * dquat(dvec3(1.0, 0.0, 0.0), 90.0);
        camera.apply();
    }
    /// Runs frames and draws each.
    void draw(int frames = 1) {
        for (int i = 0; i < frames; ++i) {
            engine.beginFrame(1.0 / 60.0);
            engine.step();
            picture->draw();
            engine.endFrame();
        }
    }
    Snapshot capture(bool with_distance = false) { return picture->capture(with_distance); }

    Engine engine;
    std::unique_ptr<Picture> picture;

private:
    static EngineSettings settingsFor(const char* root) {
        EngineSettings settings;
        settings.root = root;
        return settings;
    }
};

/// Display values 0..1 of a pixel; x from the left, y from the top.
inline std::array<double, 3> pixelAt(const Snapshot& shot, int x, int y) {
    const unsigned char* const p =
        &shot.rgb[(static_cast<std::size_t>(y) * static_cast<std::size_t>(shot.width) + static_cast<std::size_t>(x)) *
                  3];
    return {p[0] / 255.0, p[1] / 255.0, p[2] / 255.0};
}

inline double luminanceAt(const Snapshot& shot, int x, int y) {
    const auto [r, g, b] = pixelAt(shot, x, y);
    return 0.2126 * r + 0.7152 * g + 0.0722 * b;
}

/// Metres along the view's axis; infinite where nothing was drawn but the sky.
inline float distanceAt(const Snapshot& shot, int x, int y) {
    return shot
        .distance[static_cast<std::size_t>(y) * static_cast<std::size_t>(shot.width) + static_cast<std::size_t>(x)];
}
