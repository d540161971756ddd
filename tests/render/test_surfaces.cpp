// What the picture shows of meshes: their images, shadows, the air before them; and what the tracks do to the scene.
#include "engine/track/Track.h"
#include "render/PictureScene.h"
#include "support/TestScene.h"

namespace {

const dvec3 EYE(112.0, 16.0, 40.0);  // looks north

class Surfaces : public testing::Test {
protected:
    Surfaces() {
        Environment& environment = scene.world().getEnvironment();
        environment.time_of_day = 12.0f;
        environment.cloudiness = 0.0f;
        scene.open();
        scene.look(EYE, {});
    }

    /// At a position relative to the eye: metres to the right, ahead, up.
    Node* add(MeshSurface surface, const dvec3& offset) { return scene.addAt(std::move(surface), EYE, offset); }
    Snapshot shoot() {
        scene.draw(2);
        return scene.capture();
    }

    PictureScene scene;
};

std::shared_ptr<const ImageData> makeImage(const std::filesystem::path& file, const Quarters& quarters) {
    writeImage(file, quarters);
    auto image = std::make_shared<ImageData>();
    image->name = image->file = file.string();
    image->size = std::filesystem::file_size(file);
    return image;
}

TEST_F(Surfaces, ImagesAreUprightAndWhatIsMissingHasAStandIn) {
    const TestFolder folder;
    MeshSurface wall = makeWall(4.0f, 4.0f), bare = makeWall(4.0f, 4.0f), broken = makeWall(4.0f, 4.0f);
    wall.material->base_texture = makeImage(folder.getPath() / "image.png",
                                            {{{255, 0, 0, 255}, {255, 0, 0, 255}, {0, 0, 255, 255}, {0, 255, 0, 255}}});
    bare.normals.clear();
    bare.uvs.clear();
    auto image = std::make_shared<ImageData>();
    image->name = "broken.png";
    image->bytes = {0x89, 'P', 'N', 'G', 1, 2, 3};
    broken.material->base_texture = image;
    add(std::move(bare), {-5.0, 12.0, 0.0});
    add(std::move(wall), {0.0, 12.0, 0.0});
    add(std::move(broken), {5.0, 12.0, 0.0});
    const Snapshot shot = shoot();
    const Color upper = pixelAt(shot, 160, 65), left = pixelAt(shot, 148, 115), right = pixelAt(shot, 172, 115);
    EXPECT_GT(upper[0], 2.0 * upper[2]);
    EXPECT_GT(left[2], 2.0 * left[1]);
    EXPECT_GT(right[1], 2.0 * right[2]);
    // The white wall is in the shade of a sun in the south, and no blacker than the sky's half.
    EXPECT_GT(luminanceAt(shot, 69, 90), 0.3);
    const Color loud = pixelAt(shot, 250, 90);
    EXPECT_GT(loud[0], 1.5 * loud[1]);
    EXPECT_GT(loud[2], 1.5 * loud[1]);
}

TEST_F(Surfaces, NormalMapsLeanTheirWay) {
    const TestFolder folder;
    constexpr int EAST = 0, WEST = 1, NORTH = 2, SOUTH = 3;
    constexpr unsigned char LEANS[][2] = {{190, 128}, {66, 128}, {128, 190}, {128, 66}};
    for (const int lean : {EAST, WEST, NORTH, SOUTH}) {
        MeshSurface board = makeWall(4.0f, 8.0f, true);
        board.material->base_color = {0.2f, 0.2f, 0.2f, 1.0f};
        const std::array<unsigned char, 4> normal{LEANS[lean][0], LEANS[lean][1], 230, 255};
        board.material->normal_texture =
            makeImage(folder.getPath() / (std::to_string(lean) + ".png"), {normal, normal, normal, normal});
        add(std::move(board), {5.0 * lean - 7.5, 20.0, -6.0});
    }
    const struct {
        float hour;
        int brighter, darker;
    } cases[] = {{8.0f, EAST, WEST}, {16.0f, WEST, EAST}, {12.0f, SOUTH, NORTH}};
    scene.world().getEnvironment().month = 12;
    for (const auto& c : cases) {
        scene.world().getEnvironment().time_of_day = c.hour;
        const Snapshot shot = shoot();
        const auto brightness = [&](int lean) {
            return luminanceAt(shot, static_cast<int>(160.0 + 217.3 * (5.0 * lean - 7.5) / 20.0), 155);
        };
        EXPECT_GT(brightness(c.brighter), 1.2 * brightness(c.darker)) << c.hour << " h";
    }
}

TEST_F(Surfaces, SmallPartsShowAtTheirPlaces) {
    const Snapshot empty = shoot();
    for (const double right : {-0.5, -0.2, 0.13, 0.41}) add(makeWall(0.02f, 0.02f), {right, 1.0, 0.0});
    const Snapshot shot = shoot();
    for (const double right : {-0.5, -0.2, 0.13, 0.41}) {
        const int x = static_cast<int>(160.0 + 217.3 * right);
        EXPECT_GT(std::fabs(luminanceAt(shot, x, 90) - luminanceAt(empty, x, 90)), 0.05) << right;
    }
}

TEST_F(Surfaces, GlassShowsWhatLiesBehindIt) {
    MeshSurface dark = makeWall(20.0f, 20.0f);
    dark.material->base_color = {0.0f, 0.0f, 0.0f, 1.0f};
    add(dark, {10.0, 30.0, 0.0});
    const int y = 60, in_sky = 120, in_dark = 200;
    const Snapshot bare = shoot();
    for (const float width : {4.0f, 80.0f}) {
        MeshSurface pane = makeWall(width, width);
        pane.material->alpha = Material::BLEND;
        pane.material->base_color = {0.5f, 0.1f, 0.1f, 0.5f};
        Node* const glass = add(pane, {0.0, 4.0, 0.0});
        const Snapshot shot = shoot();
        EXPECT_NEAR(luminanceAt(shot, in_sky, y) - luminanceAt(shot, in_dark, y),
                    0.5 * (luminanceAt(bare, in_sky, y) - luminanceAt(bare, in_dark, y)), 0.02)
            << width;
        EXPECT_LT(luminanceAt(shot, in_sky, y), luminanceAt(bare, in_sky, y) - 0.1) << width;
        scene.world().removeNode(glass);
    }
}

TEST_F(Surfaces, ShadowsOfWhatMovesAreThoseOfItsPlace) {
    Node* const ground = add(makeWall(60.0f, 60.0f, true), {0.0, 25.0, -4.0});
    Node* const mover = add(makeWall(8.0f, 8.0f, true), {-6.0, 20.0, 10.0});
    Node* const goer = add(makeWall(3.0f, 3.0f, true), {6.0, 20.0, 10.0});
    // Pixels of the large wall that differ.
    const auto countChanged = [](const Snapshot& a, const Snapshot& b) {
        int changed = 0;
        for (int y = 108; y < 180; ++y) {
            for (int x = 40; x < 280; ++x) changed += std::fabs(luminanceAt(a, x, y) - luminanceAt(b, x, y)) > 0.02;
        }
        return changed;
    };
    Snapshot before = shoot();
    for (int i = 0; i < 6; ++i) {
        mover->setPosition(mover->getPosition() + mover->getTransform().x * 1.5);
        goer->setEnabled(i < 3);
        // The ground moves on under the eye, at first with all that stands on it.
        for (Node* const node : {ground, goer}) {
            if (i < 2 || node == ground) node->setPosition(node->getPosition() + node->getTransform().y * 0.7);
        }
        const Snapshot moved = shoot();
        EXPECT_GT(countChanged(before, moved), 100) << i;
        scene.picture->setParts(PART_ALL & ~PART_SHADOW);
        shoot();
        scene.picture->setParts(PART_ALL);  // shadows are drawn anew, as a whole
        EXPECT_EQ(countChanged(shoot(), moved), 0) << i;
        before = moved;
    }
}

/// The radiance that the display shows, times the exposure: the picture's tone curve turned round.
double radianceOf(double shown) {
    double low = 0.0, high = 100.0;
    for (int i = 0; i < 60; ++i) {
        const double x = 0.5 * (low + high);
        (x * (6.2 * x + 0.5) / (x * (6.2 * x + 1.7) + 0.06) < shown ? low : high) = x;
    }
    return low + 0.004;
}

TEST_F(Surfaces, ContrastFallsToTwoPercentOverTheVisibility) {
    for (const double visibility : {300.0, 1500.0, 6000.0, 20000.0}) {
        scene.picture->setVisibility(visibility);
        // Eight bits tell 2 % from 5 % badly: over half the way it is the root of that, which they round by up to 0.003
        // when it is squared.
        const double way = 0.5 * visibility;
        MeshSurface wall = makeWall(static_cast<float>(0.2 * way), static_cast<float>(0.2 * way));
        wall.material->base_color = {0.0f, 0.0f, 0.0f, 1.0f};
        wall.material->metallic = 1.0f;  // mirrors nothing either
        Node* const node = add(std::move(wall), {0.0, way, 0.0});
        const Snapshot shot = shoot();
        double wall_sum = 0.0, horizon_sum = 0.0;
        for (int y = 88; y < 90; ++y) {
            for (int x = -10; x <= 10; ++x) {
                wall_sum += radianceOf(luminanceAt(shot, 160 + x, y));
                horizon_sum += radianceOf(luminanceAt(shot, 60 + x, y));
            }
        }
        scene.world().removeNode(node);
        const double contrast = 1.0 - wall_sum / horizon_sum;
        EXPECT_GT(contrast * contrast, 0.017) << visibility;
        EXPECT_LT(contrast * contrast, 0.05) << visibility;
    }
}

TEST(Tracks, DoWhatTheirNamesSay) {
    PictureScene scene;
    scene.loadDemo();
    scene.open();
    scene.look({112.3430, 16.8343, 60.0}, {40.0, -12.0, 0.0});
    const auto set = [&](const char* name, float value) {
        Track track;
        ASSERT_TRUE(track.load(jString("data/assets/Anim/Fly_simulator/") + name + ".anim", &scene.world()));
        track.set(value);
    };
    const auto redness = [&] {
        scene.draw(2);
        const Color ground = meanOf(scene.capture(), 0, 90, 320, 90);
        return ground[0] / ground[1];
    };
    const auto countLit = [&] {
        scene.draw(2);
        const Snapshot shot = scene.capture();
        int lit = 0;
        for (std::size_t i = 2; i < shot.rgb.size(); i += 3) lit += shot.rgb[i] > 128;
        return lit;
    };
    scene.world().getEnvironment().time_of_day = 12.0f;
    const double summer = redness();
    set("autumn", 1.0f);
    EXPECT_GT(redness(), summer + 0.05);

    for (const char* const name : {"road_light", "airport_light_brightness"}) set(name, 0.0f);
    set("airport_light_enable", 1.0f);
    scene.world().getEnvironment().time_of_day = 23.0f;
    scene.draw(40);  // the exposure follows
    int before = countLit();
    for (const char* const name : {"road_light", "airport_light_brightness"}) {
        set(name, 1.0f);
        const int after = countLit();
        EXPECT_GT(after, before + 5) << name;
        before = after;
    }
}

}  // namespace
