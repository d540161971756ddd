// Animated objects on the carrier's deck: a deck hand who waves two wands, and a flag on its staff.
#include <cmath>

#include "geometry/Loft.h"
#include "geometry/Model.h"
#include "geometry/Prism.h"
#include "plan/Builders.h"
#include "text/SceneText.h"

namespace {

constexpr const char* FOLDER = "data/assets/Targets/MODELS/JT_CN_LNJ/";
constexpr dvec3 SHOULDER{0.21, 0.0, 1.45};  ///< the right one

struct Clothes {
    PaintRef jersey = paint("deck_jersey", {0.62, 0.5, 0.04}, 0.9);
    PaintRef trousers = paint("deck_trousers", {0.05, 0.06, 0.09}, 0.9);
    PaintRef skin = paint("deck_skin", {0.5, 0.33, 0.24}, 0.7);
    PaintRef helmet = paint("deck_helmet", {0.65, 0.52, 0.05}, 0.5);
    PaintRef boots = paint("deck_boots", {0.02, 0.02, 0.02}, 0.8);
};

/// Horizontal slices from the feet upward.
Mesh upright(const PaintRef& paint, const std::vector<Section>& slices) {
    std::vector<Ring> rings;
    for (const Section& s : slices) {
        Ring ring;
        for (const dvec3& p : outline({0.0, s.y, s.half_width, s.up, s.down, s.roundness}, 16)) {
            ring.emplace_back(p.x, p.z, s.z);
        }
        rings.push_back(ring);
    }
    return loft(paint, rings);
}

Mesh standingFigure(const Clothes& c) {
    Mesh mesh = upright(c.jersey, {{0.0, 0.86, 0.17, 0.12, 0.12, 2.6},
                                   {0.0, 1.10, 0.17, 0.12, 0.11, 2.6},
                                   {0.0, 1.36, 0.21, 0.13, 0.12, 2.6},
                                   {0.0, 1.49, 0.19, 0.09, 0.10, 2.4},
                                   {0.0, 1.54, 0.08, 0.07, 0.07}});
    mesh.add(upright(c.skin,
                     {{0.0, 1.52, 0.06, 0.06, 0.06}, {0.02, 1.60, 0.07, 0.08, 0.07}, {0.02, 1.70, 0.07, 0.09, 0.08}}));
    mesh.add(upright(c.helmet,
                     {{0.0, 1.63, 0.10, 0.08, 0.12}, {0.01, 1.72, 0.11, 0.12, 0.13}, {0.01, 1.80, 0.05, 0.06, 0.06}}));
    mesh.addPair(tube(c.trousers, {{0.09, 0.0, 0.92}, {0.12, 0.02, 0.5}, {0.14, -0.02, 0.08}}, 0.085, 10));
    return mesh.addPair(box(c.boots, {0.08, -0.1, 0.0}, {0.20, 0.2, 0.1}));
}

/// Stretched forward and slightly up, with a wand in the hand.
Mesh arm(const Clothes& c) {
    Paint lit = *paint("deck_wand", {0.9, 0.35, 0.03}, 0.5);
    lit.emission = {0.9, 0.3, 0.02};
    const dvec3 s = SHOULDER, hand = s + dvec3(0.06, 0.55, 0.12);
    Mesh mesh = tube(c.jersey, {s, s + dvec3(0.08, 0.25, -0.02), hand}, 0.05, 10);
    mesh.add(ball(c.skin, hand - dvec3(0.0, 0.0, 0.04), 0.05));
    return mesh.add(
        drum(std::make_shared<const Paint>(lit), hand, hand + dvec3(0.02, 0.25, 0.4), 0.022, 0.022, 8, true));
}

/// On a staff along Z, flying along +X; the cloth has folds.
Mesh flag() {
    constexpr double STAFF = 6.0, LENGTH = 2.6, DEPTH = 1.7;
    constexpr int FOLDS = 16;
    const PaintRef staff = paint("flag_staff", {0.75, 0.76, 0.76}, 0.5);
    Paint cloth[2] = {*paint("flag_blue", {0.02, 0.07, 0.3}, 0.9), *paint("flag_white", {0.8, 0.8, 0.78}, 0.9)};
    Mesh mesh = drum(staff, {0, 0, 0}, {0, 0, STAFF}, 0.05, 0.03, 8, true);
    mesh.add(ball(staff, {0, 0, STAFF - 0.02}, 0.07));
    const auto edge = [&](int i, double z) {
        const double along = static_cast<double>(i) / FOLDS;
        return dvec3(0.03 + LENGTH * along, 0.16 * along * std::sin(9.0 * along + 0.6 * z), z - 0.25 * along * along);
    };
    for (int half = 0; half < 2; ++half) {
        cloth[half].double_sided = true;
        const auto paint_of_half = std::make_shared<const Paint>(cloth[half]);
        const double top = STAFF - 0.15 - half * DEPTH / 2.0, bottom = top - DEPTH / 2.0;
        for (int i = 0; i < FOLDS; ++i) {
            mesh.quad(paint_of_half, edge(i, bottom), edge(i + 1, bottom), edge(i + 1, top), edge(i, top));
        }
    }
    return mesh;
}

void writeFigure(const std::string& root, const std::string& name, const char* what, const std::vector<Part>& parts) {
    // Cloth and people: nothing may collide with them.
    writeText(root + "/" + FOLDER + name + ".prefab", what, {{"node", {{"collider", false}, {"mesh", name + ".glb"}}}});
    writeModel(root + "/" + FOLDER + name + ".glb", parts);
}

}  // namespace

void writeDeckCrew(const std::string& root) {
    const Clothes clothes;
    const Mesh right = arm(clothes);
    const dvec3 left_shoulder{-SHOULDER.x, SHOULDER.y, SHOULDER.z};
    writeFigure(root, "deck_hand", "A deck hand, facing +Y; the arms turn about their Z axes.",
                {{"deck_hand_figure", {}, standingFigure(clothes)},
                 {"left_hand", left_shoulder, right.mirrored()},
                 {"right_hand", SHOULDER, right}});
    writeFigure(root, "deck_flag", "A flag on its staff; it flies along +X.", {{"deck_flag_cloth", {}, flag()}});
}
