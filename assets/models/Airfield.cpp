// The airfield's buildings, the hill's mast, the target's vehicle, and the pictures of the pavement.
#include "engine/math/jMath.h"
#include "geometry/Canvas.h"
#include "geometry/Model.h"
#include "geometry/Shapes.h"
#include "plan/AirfieldPlan.h"
#include "plan/Builders.h"
#include "plan/Layout.h"
#include "text/Files.h"
#include "text/SceneText.h"

namespace {

struct Paints {
    PaintRef wall = paint("wall", {0.52, 0.51, 0.47}, 0.9);
    PaintRef roof = paint("roof", {0.23, 0.27, 0.29}, 0.7);
    PaintRef door = paint("door", {0.16, 0.20, 0.22}, 0.7);
    PaintRef glass = paint("glass", {0.03, 0.05, 0.06}, 0.1);
    PaintRef steel = paint("steel", {0.35, 0.36, 0.36}, 0.5, 0.3);
    PaintRef red = paint("red", {0.55, 0.06, 0.04}, 0.7);
    PaintRef white = paint("white", {0.72, 0.72, 0.70}, 0.7);
    PaintRef green = paint("green", {0.10, 0.14, 0.07}, 0.8);
    PaintRef tyre = paint("tyre", {0.02, 0.02, 0.02}, 0.95);
};

/// A hall with a barrel roof and a door to the apron on its -X side.
Mesh hangar(const Paints& paints, const dvec3& middle, double depth, double length) {
    const dvec3 half{depth / 2.0, length / 2.0, 0.0};
    constexpr double WALL = 8.5, RISE = 4.5;
    Mesh mesh = box(paints.wall, middle - half, middle + half + dvec3(0, 0, WALL));
    const dvec3 low = middle - half, high = middle + half;
    std::vector<Ring> rings;
    for (const double x : {low.x, high.x}) {
        Ring ring;
        for (int i = 0; i <= 10; ++i) {
            const double angle = jMath::PI * i / 10.0;
            ring.emplace_back(x, middle.y + half.y * std::cos(angle), WALL + RISE * std::sin(angle));
        }
        rings.push_back(ring);
    }
    mesh.add(loft(paints.roof, rings));
    return mesh.add(box(paints.door, {low.x - 0.15, low.y + 3.0, 0.0}, {low.x, high.y - 3.0, 7.6}));
}

Mesh tower(const Paints& paints) {
    const dvec3 foot = airfield::TOWER;
    const double top = airfield::TOWER_HEIGHT - 6.0;
    Mesh mesh = box(paints.wall, foot + dvec3(-9, -12, 0), foot + dvec3(9, 12, 6));
    mesh.add(cylinder(paints.wall, foot, foot + dvec3(0, 0, top - 1.5), 3.4, 2.8, 16));
    mesh.add(cylinder(paints.wall, foot + dvec3(0, 0, top - 1.5), foot + dvec3(0, 0, top), 2.8, 4.6, 8));
    mesh.add(cylinder(paints.glass, foot + dvec3(0, 0, top), foot + dvec3(0, 0, top + 3.0), 4.2, 5.0, 8));
    mesh.add(cylinder(paints.roof, foot + dvec3(0, 0, top + 3.0), foot + dvec3(0, 0, top + 3.6), 5.3, 4.6, 8));
    return mesh.add(cylinder(paints.steel, foot + dvec3(0, 0, top + 3.6), foot + dvec3(0, 0, top + 6.0), 0.1, 0.05, 6));
}

Mesh sheds(const Paints& paints) {
    Mesh mesh = box(paints.wall, {255, -205, 0}, {285, -165, 9});
    mesh.add(box(paints.glass, {254.9, -203, 4.8}, {285.1, -167, 6.6}));
    mesh.add(box(paints.roof, {254, -206, 9}, {286, -164, 9.6}));
    for (const double y : {110.0, 128.0, 146.0}) {
        mesh.add(cylinder(paints.white, {290, y, 0}, {290, y, 9}, 6.5, 20));
        mesh.add(cylinder(paints.white, {290, y, 9}, {290, y, 10.4}, 6.5, 0.5, 20));
    }
    return mesh;
}

Mesh windsock(const Paints& paints, const dvec3& foot) {
    Mesh mesh = cylinder(paints.white, foot, foot + dvec3(0, 0, 6.5), 0.08, 8);
    for (int i = 0; i < 5; ++i) {
        const dvec3 a = foot + dvec3(0, -0.7 * i, 6.3 - 0.12 * i), b = foot + dvec3(0, -0.7 * (i + 1), 6.18 - 0.12 * i);
        mesh.add(cylinder(i % 2 ? paints.white : paints.red, a, b, 0.45 - 0.05 * i, 0.40 - 0.05 * i, 10));
    }
    return mesh;
}

Part buildings() {
    const Paints paints;
    Mesh mesh = tower(paints);
    for (const double y : airfield::HANGARS) mesh.add(hangar(paints, {airfield::HANGAR_X, y, 0}, 44.0, 48.0));
    mesh.add(sheds(paints)).add(windsock(paints, {-60, -1050, 0})).add(windsock(paints, {-60, 1050, 0}));
    return {"airfield_buildings", {}, mesh};
}

/// Painted in bands of red and white; its foot is below the surface of the slope.
Part mast() {
    const Paints paints;
    Mesh mesh = box(paints.wall, {-4, -3, -4}, {4, 3, 3.2});
    constexpr int BANDS = 7;
    const double step = airfield::MAST_HEIGHT / BANDS;
    for (int i = 0; i < BANDS; ++i) {
        const dvec3 a{0, 0, step * i - (i == 0 ? 4.0 : 0.0)}, b{0, 0, step * (i + 1)};
        mesh.add(cylinder(i % 2 ? paints.white : paints.red, a, b, 1.1 - 0.12 * i, 1.1 - 0.12 * (i + 1), 10));
    }
    mesh.add(cylinder(paints.white, {0.6, 0, 26}, {1.6, 0, 26}, 1.4, 1.4, 16));
    return {"mast", {}, mesh};
}

/// A radar lorry: origin on the ground below its centre.
Part lorry() {
    const Paints paints;
    Mesh mesh = box(paints.tyre, {-1.1, -4.4, 0.75}, {1.1, 4.4, 1.05});
    mesh.add(taperedBox(paints.green, {-1.25, 2.3, 1.0}, {1.25, 4.5, 2.9}, 0.2));
    mesh.add(box(paints.glass, {-1.1, 4.3, 2.0}, {1.1, 4.42, 2.6}));
    mesh.add(box(paints.green, {-1.25, -4.4, 1.05}, {1.25, 2.1, 2.7}));
    mesh.add(cylinder(paints.steel, {0, -2.4, 2.7}, {0, -2.4, 3.6}, 0.35, 12));
    mesh.add(box(paints.steel, {-1.6, -2.6, 3.6}, {1.6, -2.3, 5.2}));
    for (const double y : {3.2, -1.6, -3.1})
        mesh.addPair(wheel(paints.tyre, paints.steel, {1.05, y, 0.55}, 0.55, 0.35));
    return {"lorry", {}, mesh};
}

constexpr Color ASPHALT{64, 65, 66, 255}, CONCRETE{128, 126, 120, 255}, CLEAR{96, 95, 92, 0}, WHITE{224, 224, 220, 255},
    YELLOW{210, 170, 50, 255}, RUBBER{36, 36, 38, 46};

void drawRunwayEnd(Canvas& c, int side, const std::string& number) {
    const double end = side * RUNWAY_LENGTH / 2.0;
    for (int i = 0; i < 6; ++i) {
        for (const double sign : {-1.0, 1.0}) {
            const double x = sign * (3.0 + 3.2 * i);
            c.rectangle(x - 0.9, std::min(end - side * 8.0, end - side * 38.0), x + 0.9,
                        std::max(end - side * 8.0, end - side * 38.0), WHITE);
        }
    }
    c.number(number, 0.0, end - side * 56.0, 18.0, side < 0 ? 0.0 : 180.0, WHITE);
    for (const double sign : {-1.0, 1.0}) {
        const double from = end - side * 300.0, to = end - side * 345.0;
        c.rectangle(sign * 12.0 - 3.0, std::min(from, to), sign * 12.0 + 3.0, std::max(from, to), WHITE);
    }
    for (int i = 0; i < 40; ++i) {
        const double x = ((i * 13) % 11 - 5) * 0.9, from = end - side * (260.0 + 9.0 * i);
        c.line(x, from, x, from - side * 90.0, 0.7, RUBBER);
    }
}

std::vector<unsigned char> runwayPicture() {
    const double half = RUNWAY_WIDTH / 2.0, end = RUNWAY_LENGTH / 2.0;
    Canvas canvas(96, 4096, -half, -end, half, end, ASPHALT);
    for (const double x : {-half + 1.2, half - 1.2}) canvas.line(x, -end, x, end, 0.9, WHITE);
    canvas.dashes(0.0, -end + 110.0, 0.0, end - 110.0, 0.9, 30.0, 20.0, WHITE);
    drawRunwayEnd(canvas, -1, "07");
    drawRunwayEnd(canvas, 1, "25");
    canvas.weather(8, 30.0, 3);
    return canvas.toPng();
}

/// Taxiway, its links to the runway, and the apron; transparent elsewhere.
std::vector<unsigned char> pavementPicture() {
    using namespace airfield;
    Canvas canvas(320, 3072, PAVEMENT_LEFT, -PAVEMENT_LENGTH / 2.0, PAVEMENT_RIGHT, PAVEMENT_LENGTH / 2.0, CLEAR);
    const double end = RUNWAY_LENGTH / 2.0;
    canvas.rectangle(APRON_LEFT, APRON_BACK, APRON_RIGHT, APRON_FRONT, CONCRETE);
    canvas.rectangle(TAXIWAY - 11.0, -end, TAXIWAY + 11.0, end, ASPHALT);
    for (const double y : {-end + 14.0, -420.0, 380.0, end - 14.0}) {
        canvas.rectangle(PAVEMENT_LEFT, y - 12.0, TAXIWAY, y + 12.0, ASPHALT);
        canvas.line(PAVEMENT_LEFT, y, TAXIWAY, y, 0.5, YELLOW);
    }
    for (const double y : {-200.0, 60.0}) {
        canvas.rectangle(TAXIWAY, y - 12.0, APRON_LEFT + 1.0, y + 12.0, ASPHALT);
        canvas.line(TAXIWAY, y, APRON_RIGHT - 60.0, y, 0.5, YELLOW);
    }
    canvas.line(TAXIWAY, -end + 14.0, TAXIWAY, end - 14.0, 0.5, YELLOW);
    for (double y = APRON_BACK + 30.0; y < APRON_FRONT - 20.0; y += 40.0) {
        canvas.line(APRON_RIGHT - 60.0, y, APRON_RIGHT - 12.0, y, 0.5, YELLOW);
    }
    canvas.weather(7, 25.0, 9);
    return canvas.toPng();
}

/// A model and a prefab of the same name that contains only the model.
void writePlainPrefab(const std::string& folder, const std::string& name, const std::string& comment,
                      const Part& part) {
    writeText(folder + name + ".prefab", comment, {{"node", {{"mesh", name + ".glb"}}}});
    writeModel(folder + name + ".glb", {part});
}

}  // namespace

void writeAirfield(const std::string& root) {
    const std::string prefabs = root + "/data/DEMO_PROJECT/prefabs/", terrain = root + "/data/DEMO_PROJECT/terrain/";
    writePlainPrefab(prefabs + "airfield/", "airfield", "Tower, hangars and tanks. Origin at the runway's middle.",
                     buildings());
    writePlainPrefab(prefabs + "mast/", "mast", "A radio mast. Origin at its foot.", mast());
    writePlainPrefab(root + "/data/assets/Targets/MODELS/CL_radar_lorry/", "CL_radar_lorry",
                     "A radar lorry, the target of type 1001. Origin on the ground.", lorry());
    writeFile(terrain + "runway.png", runwayPicture());
    writeFile(terrain + "pavement.png", pavementPicture());
}
