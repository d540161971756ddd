// The helicopter's shell: a table of cross-sections whose fields between the lines are skin, glass or doors.
#include <algorithm>

#include "geometry/Loft.h"
#include "models/HelicopterShape.h"

namespace heli {
namespace {

/// A cross-section's right half: the roof's middle, its half, the roof's edge, the windows' top, their sill, the widest
/// place, the lower side, the chine, the belly's half and its middle.
constexpr std::size_t POINTS = 10;
struct Row {
    double y;
    std::array<std::array<double, 2>, POINTS> p;
};

const Row ROWS[] = {{7.00,
                     {{{0, -.40},
                       {.05, -.41},
                       {.09, -.43},
                       {.11, -.45},
                       {.12, -.47},
                       {.12, -.49},
                       {.11, -.53},
                       {.08, -.56},
                       {.04, -.58},
                       {0, -.58}}}},
                    {6.92,
                     {{{0, -.22},
                       {.16, -.23},
                       {.27, -.27},
                       {.32, -.33},
                       {.35, -.40},
                       {.36, -.48},
                       {.34, -.60},
                       {.26, -.70},
                       {.14, -.75},
                       {0, -.76}}}},
                    {6.75,
                     {{{0, -.07},
                       {.27, -.08},
                       {.46, -.13},
                       {.54, -.20},
                       {.58, -.30},
                       {.60, -.44},
                       {.57, -.63},
                       {.45, -.79},
                       {.24, -.86},
                       {0, -.87}}}},
                    {6.45,
                     {{{0, .09},
                       {.40, .085},
                       {.70, .03},
                       {.79, -.05},
                       {.84, -.16},
                       {.86, -.37},
                       {.82, -.66},
                       {.66, -.87},
                       {.34, -.96},
                       {0, -.98}}}},
                    {6.05,
                     {{{0, .25},
                       {.50, .25},
                       {.90, .22},
                       {.97, .14},
                       {1.02, .04},
                       {1.05, -.30},
                       {1.00, -.68},
                       {.82, -.92},
                       {.42, -1.02},
                       {0, -1.04}}}},
                    {5.62,
                     {{{0, .756},
                       {.50, .756},
                       {.91, .72},
                       {1.03, .50},
                       {1.10, .15},
                       {1.13, -.30},
                       {1.08, -.70},
                       {.88, -.96},
                       {.45, -1.06},
                       {0, -1.08}}}},
                    {5.20,
                     {{{0, 1.25},
                       {.50, 1.25},
                       {.92, 1.19},
                       {1.10, .90},
                       {1.17, .22},
                       {1.19, -.30},
                       {1.14, -.72},
                       {.92, -.98},
                       {.46, -1.08},
                       {0, -1.10}}}},
                    {4.80,
                     {{{0, 1.37},
                       {.50, 1.365},
                       {.94, 1.27},
                       {1.13, .93},
                       {1.19, .22},
                       {1.20, -.30},
                       {1.15, -.72},
                       {.92, -.99},
                       {.46, -1.09},
                       {0, -1.10}}}},
                    {4.20,
                     {{{0, 1.46},
                       {.50, 1.45},
                       {.95, 1.35},
                       {1.15, .95},
                       {1.20, .22},
                       {1.20, -.30},
                       {1.15, -.72},
                       {.92, -1.0},
                       {.46, -1.09},
                       {0, -1.10}}}},
                    {3.40,
                     {{{0, 1.50},
                       {.50, 1.49},
                       {.96, 1.38},
                       {1.15, .95},
                       {1.20, .22},
                       {1.20, -.30},
                       {1.15, -.72},
                       {.92, -1.0},
                       {.46, -1.09},
                       {0, -1.10}}}},
                    {2.90,
                     {{{0, 1.50},
                       {.50, 1.49},
                       {.96, 1.38},
                       {1.15, .95},
                       {1.20, .22},
                       {1.20, -.30},
                       {1.15, -.72},
                       {.92, -1.0},
                       {.46, -1.09},
                       {0, -1.10}}}},
                    {1.10,
                     {{{0, 1.50},
                       {.50, 1.49},
                       {.96, 1.38},
                       {1.15, .95},
                       {1.20, .22},
                       {1.20, -.30},
                       {1.15, -.72},
                       {.92, -1.0},
                       {.46, -1.09},
                       {0, -1.10}}}},
                    {-1.2,
                     {{{0, 1.50},
                       {.50, 1.49},
                       {.96, 1.38},
                       {1.15, .95},
                       {1.20, .22},
                       {1.20, -.30},
                       {1.15, -.72},
                       {.92, -1.0},
                       {.46, -1.08},
                       {0, -1.09}}}},
                    {-2.2,
                     {{{0, 1.50},
                       {.50, 1.49},
                       {.95, 1.38},
                       {1.14, .95},
                       {1.18, .22},
                       {1.18, -.28},
                       {1.13, -.68},
                       {.90, -.95},
                       {.45, -1.03},
                       {0, -1.04}}}},
                    {-3.2,
                     {{{0, 1.50},
                       {.49, 1.49},
                       {.93, 1.37},
                       {1.10, .96},
                       {1.13, .26},
                       {1.12, -.22},
                       {1.06, -.56},
                       {.84, -.79},
                       {.42, -.87},
                       {0, -.88}}}},
                    {-4.4,
                     {{{0, 1.49},
                       {.44, 1.48},
                       {.84, 1.36},
                       {.99, 1.00},
                       {1.01, .38},
                       {.98, -.02},
                       {.90, -.28},
                       {.70, -.45},
                       {.35, -.52},
                       {0, -.53}}}},
                    {-5.6,
                     {{{0, 1.46},
                       {.36, 1.45},
                       {.69, 1.34},
                       {.81, 1.04},
                       {.83, .53},
                       {.79, .22},
                       {.71, .03},
                       {.54, -.09},
                       {.27, -.14},
                       {0, -.15}}}},
                    {-7.0,
                     {{{0, 1.42},
                       {.27, 1.41},
                       {.52, 1.31},
                       {.60, 1.08},
                       {.61, .70},
                       {.58, .49},
                       {.51, .37},
                       {.38, .29},
                       {.19, .25},
                       {0, .24}}}},
                    {-8.6,
                     {{{0, 1.42},
                       {.18, 1.41},
                       {.35, 1.33},
                       {.41, 1.16},
                       {.41, .91},
                       {.39, .78},
                       {.34, .71},
                       {.25, .66},
                       {.13, .63},
                       {0, .62}}}},
                    {-10.1,
                     {{{0, 1.46},
                       {.10, 1.45},
                       {.20, 1.40},
                       {.24, 1.28},
                       {.24, 1.13},
                       {.23, 1.05},
                       {.20, 1.00},
                       {.15, .96},
                       {.08, .94},
                       {0, .94}}}},
                    {-10.5,
                     {{{0, 1.34},
                       {.03, 1.33},
                       {.07, 1.31},
                       {.08, 1.27},
                       {.08, 1.22},
                       {.08, 1.18},
                       {.07, 1.15},
                       {.05, 1.13},
                       {.02, 1.12},
                       {0, 1.12}}}}};
constexpr std::size_t ROW_COUNT = std::size(ROWS);

std::size_t rowAt(double y) {
    const auto found = std::find_if(std::begin(ROWS), std::end(ROWS), [y](const Row& row) { return row.y == y; });
    return static_cast<std::size_t>(found - std::begin(ROWS));
}

/// A field of rows and lines, the higher ends left out.
struct Area {
    double front, back;
    std::size_t upper, lower;

    bool has(std::size_t row, std::size_t line) const {
        return ROWS[row].y <= front && ROWS[row].y > back && line >= upper && line < lower;
    }
};
// Windscreen, quarter lights, the doors' windows, the chin's lights.
const Area WINDOWS[] = {{6.05, 5.2, 0, 2}, {6.05, 5.2, 2, 4}, {5.2, 4.2, 3, 4}, {6.75, 6.05, 4, 6}};
const Area DOORS[] = {{5.2, 4.2, 3, 6}, {2.9, 1.1, 2, 7}, {-2.2, -3.2, 3, 5}};

bool inAny(const Area* areas, std::size_t count, std::size_t row, std::size_t line) {
    return std::any_of(areas, areas + count, [&](const Area& area) { return area.has(row, line); });
}
bool isWindow(std::size_t row, std::size_t line) {
    return inAny(WINDOWS, std::size(WINDOWS), row, line);
}

dvec3 pointAt(std::size_t row, std::size_t line) {
    return {ROWS[row].p[line][0], ROWS[row].y, ROWS[row].p[line][1]};
}

/// The right half's field behind a row and below a line.
void addField(Mesh& mesh, const PaintRef& paint, std::size_t row, std::size_t line) {
    mesh.quad(paint, pointAt(row, line), pointAt(row + 1, line), pointAt(row + 1, line + 1), pointAt(row, line + 1));
}

/// Bars along a window's border.
void addFrame(Mesh& mesh, const Area& area) {
    constexpr double WIDTH = 0.035;
    const std::size_t front = rowAt(area.front), back = rowAt(area.back);
    for (const std::size_t line : {area.upper, area.lower}) {
        Ring along;
        for (std::size_t row = front; row <= back; ++row) along.push_back(pointAt(row, line));
        mesh.add(tube(paints().dark, along, WIDTH, 5));
    }
    for (const std::size_t row : {front, back}) {
        Ring across;
        for (std::size_t line = area.upper; line <= area.lower; ++line) across.push_back(pointAt(row, line));
        mesh.add(tube(paints().dark, across, WIDTH, 5));
    }
}

Mesh shell() {
    Mesh half;
    for (std::size_t row = 0; row + 1 < ROW_COUNT; ++row) {
        for (std::size_t line = 0; line + 1 < POINTS; ++line) {
            if (inAny(DOORS, std::size(DOORS), row, line)) continue;
            addField(half, isWindow(row, line) ? paints().glass : paints().skin, row, line);
        }
    }
    for (std::size_t line = 0; line + 1 < POINTS; ++line) {  // the nose's tip
        half.triangle(paints().skin, {0.0, 7.03, -0.49}, pointAt(0, line), pointAt(0, line + 1));
    }
    for (const Area& window : WINDOWS) addFrame(half, window);
    return Mesh{}.addPair(half);
}

/// What is seen of the cabin's inside through the windows and round the doors.
Mesh lining() {
    Mesh half;
    for (std::size_t row = rowAt(6.75); row < rowAt(-3.2); ++row) {
        for (std::size_t line = 0; line + 1 < POINTS; ++line) {
            if (!isWindow(row, line)) addField(half, paints().dark, row, line);
        }
    }
    const dmat4 smaller({0.975, 0, 0}, {0, 0.985, 0}, {0, 0, 0.975}, {});
    return insideOut(Mesh{}.addPair(half).transformed(smaller));
}

/// A door on the right, with its handle, standing a little out of the shell.
Mesh door(const Area& area, bool window) {
    Mesh mesh;
    for (std::size_t row = rowAt(area.front); row < rowAt(area.back); ++row) {
        for (std::size_t line = area.upper; line < area.lower; ++line) {
            addField(mesh, isWindow(row, line) ? paints().glass : paints().skin, row, line);
        }
    }
    Mesh placed = mesh.moved({0.012, 0.0, 0.0});
    if (window) addFrame(placed, {area.front, area.back, 3, 4});
    const double y = area.back + 0.14;
    return placed.add(box(paints().metal, {1.19, y, -0.12}, {1.235, y + 0.16, -0.08}));
}

}  // namespace

std::vector<Part> doors() {
    std::vector<Part> parts;
    for (std::size_t i = 0; i < std::size(DOORS); ++i) {
        const Area& area = DOORS[i];
        // The cockpit's doors hang on their front edge; the others have their middle as origin.
        const dvec3 right(1.2, i == 0 ? area.front : (area.front + area.back) / 2.0, i == 2 ? 0.5 : 0.1);
        const Mesh mesh = door(area, i == 0);
        const std::string number = std::to_string(i);
        parts.push_back({"dl_" + number, {-right.x, right.y, right.z}, mesh.mirrored()});
        parts.push_back({"dr_" + number, right, mesh});
    }
    return parts;
}

Part fuselage() {
    Mesh mesh = shell();
    mesh.add(lining()).add(cockpit()).add(engines()).add(tailUnit()).add(landingGear()).add(antennas());
    return {"fuselage", {}, mesh};
}

}  // namespace heli
