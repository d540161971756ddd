// A small world with a picture of it, off screen.
#pragma once

#include <gtest/gtest.h>

#include <osg/Image>
#include <osgDB/WriteFile>

#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>
#include <memory>

#include "engine/camera/CameraControl.h"
#include "engine/core/Engine.h"
#include "engine/math/jMath.h"
#include "engine/scene/MeshData.h"
#include "engine/scene/ObjectMeshStatic.h"
#include "engine/scene/World.h"
#include "render/Picture.h"
#include "support/Paths.h"

/// Display values 0..1: red, green, blue.
using Color = std::array<double, 3>;

/// A ray through a pixel; `step` covers one metre along the view's axis.
struct Ray {
    dvec3 eye, step;
};

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
    /// Geocentric position relative to a geodetic eye that looks north: metres to the right, ahead, up.
    dvec3 placeAt(const dvec3& eye, const dvec3& offset) const {
        const EllipsoidModel& globe = engine.getEllipsoid();
        return globe.getWGSTransform(globe.toWorld(eye)) * offset;
    }
    /// Adds a node at such a position: level, its Y axis to the north.
    template <class T>
    T* addAt(T* node, const dvec3& eye, const dvec3& offset) {
        world().addChild(node);
        node->setWorldPosition(placeAt(eye, offset));
        node->setWgsHPR({});
        return node;
    }
    Node* addAt(MeshSurface surface, const dvec3& eye, const dvec3& offset) {
        auto mesh = std::make_shared<MeshData>(std::vector<MeshSurface>{std::move(surface)});
        return addAt(new ObjectMeshStatic(mesh), eye, offset);
    }
    /// Through the middle of a pixel of a `small` picture.
    Ray rayAt(int x, int y) {
        const PictureSettings size = small();
        const double slope = 2.0 * std::tan(size.fov * 0.5 * jMath::DEG2RAD) / size.height;
        const dmat4& camera = engine.getCameraControl()->getNode()->getWorldTransform();
        const dvec3 step((x + 0.5 - 0.5 * size.width) * slope, (0.5 * size.height - y - 0.5) * slope, -1.0);
        return {camera.t, rotate(camera, step)};
    }
    /// Runs frames without drawing.
    void run(int frames) {
        for (int i = 0; i < frames; ++i) {
            engine.beginFrame(1.0 / 60.0);
            engine.step();
            engine.endFrame();
        }
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

/// An upright wall that faces the eye, `width` x `height` metres, or a level one that faces upward.
inline MeshSurface makeWall(float width, float height, bool lies = false) {
    MeshSurface wall;
    const float w = 0.5f * width, h = 0.5f * height;
    for (const auto& [x, z] : {std::pair(-w, -h), {w, -h}, {w, h}, {-w, h}}) {
        wall.positions.push_back({x, lies ? z : 0.0f, lies ? 0.0f : z});
        wall.normals.push_back({0.0f, lies ? 0.0f : -1.0f, lies ? 1.0f : 0.0f});
        wall.tangents.push_back({1.0f, 0.0f, 0.0f, 1.0f});
        wall.uvs.push_back({x > 0.0f ? 1.0f : 0.0f, z > 0.0f ? 0.0f : 1.0f});
    }
    wall.indices = {0, 1, 2, 0, 2, 3};
    wall.material = std::make_shared<Material>();
    wall.material->roughness = 1.0f;
    wall.material->metallic = 0.0f;
    return wall;
}

/// Mean of a rectangle of pixels; x from the left, y from the top.
inline Color meanOf(const Snapshot& shot, int left, int top, int width, int height) {
    Color sum{};
    for (int y = top; y < top + height; ++y) {
        for (int x = left; x < left + width; ++x) {
            const unsigned char* const p = &shot.rgb[static_cast<std::size_t>(3 * (y * shot.width + x))];
            for (std::size_t i = 0; i < 3; ++i) sum[i] += p[i];
        }
    }
    for (double& value : sum) value /= 255.0 * width * height;
    return sum;
}
inline Color pixelAt(const Snapshot& shot, int x, int y) {
    return meanOf(shot, x, y, 1, 1);
}

inline double luminanceOf(const Color& color) {
    return 0.2126 * color[0] + 0.7152 * color[1] + 0.0722 * color[2];
}
inline double luminanceAt(const Snapshot& shot, int x, int y) {
    return luminanceOf(pixelAt(shot, x, y));
}

/// Metres along the view's axis; infinite where nothing was drawn but the sky.
inline float distanceAt(const Snapshot& shot, int x, int y) {
    return shot.distance[static_cast<std::size_t>(y * shot.width + x)];
}

/// Red, green, blue and opacity of an image's quarters: upper left, upper right, lower left, lower right.
using Quarters = std::array<std::array<unsigned char, 4>, 4>;

/// Writes an image of 256 x 256 pixels in the format of the file's extension.
inline void writeImage(const std::filesystem::path& file, const Quarters& quarters) {
    constexpr int SIZE = 256;
    const osg::ref_ptr<osg::Image> image = new osg::Image;
    image->allocateImage(SIZE, SIZE, 1, GL_RGBA, GL_UNSIGNED_BYTE);
    for (int i = 0; i < SIZE * SIZE; ++i) {
        const std::size_t quarter = (i / SIZE < SIZE / 2 ? 2 : 0) + (i % SIZE < SIZE / 2 ? 0 : 1);  // lowest row first
        std::copy_n(quarters[quarter].begin(), 4, image->data() + 4 * i);
    }
    std::filesystem::create_directories(file.parent_path());
    ASSERT_TRUE(osgDB::writeImageFile(*image, file)) << file;
}
