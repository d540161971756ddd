// The helicopter's shell: a table of cross-sections. The fields between the table's lines are skin, glass or doors.
#include <algorithm>

#include "geometry/Loft.h"
#include "models/HelicopterShape.h"

namespace heli {
namespace {

/// The right half of a cross-section: the roof's middle, its half, the roof's edge, the windows' top, their sill, the
/// widest point, the lower side, the chine, the belly's half and its middle.
constexpr std::size_t POINTS = 10;
struct Row {
    double y, x[POINTS], z[POINTS];
};

const Row ROWS[] = {
    {7.00,
     {0, .05, .09, .11, .12, .12, .11, .08, .04, 0},
     {-.40, -.41, -.43, -.45, -.47, -.49, -.53, -.56, -.58, -.58}},
    {6.92,
     {0, .16, .27, .32, .35, .36, .34, .26, .14, 0},
     {-.22, -.23, -.27, -.33, -.40, -.48, -.60, -.70, -.75, -.76}},
    {6.75,
     {0, .27, .46, .54, .58, .60, .57, .45, .24, 0},
     {-.07, -.08, -.13, -.20, -.30, -.44, -.63, -.79, -.86, -.87}},
    {6.45, {0, .40, .70, .79, .84, .86, .82, .66, .34, 0}, {.09, .085, .03, -.05, -.16, -.37, -.66, -.87, -.96, -.98}},
    {6.05,
     {0, .50, .90, .97, 1.02, 1.05, 1.00, .82, .42, 0},
     {.25, .25, .22, .14, .04, -.30, -.68, -.92, -1.02, -1.04}},
    {5.62,
     {0, .50, .91, 1.03, 1.10, 1.13, 1.08, .88, .45, 0},
     {.756, .756, .72, .50, .15, -.30, -.70, -.96, -1.06, -1.08}},
    {5.20,
     {0, .50, .92, 1.10, 1.17, 1.19, 1.14, .92, .46, 0},
     {1.25, 1.25, 1.19, .90, .22, -.30, -.72, -.98, -1.08, -1.10}},
    {4.80,
     {0, .50, .94, 1.13, 1.19, 1.20, 1.15, .92, .46, 0},
     {1.37, 1.365, 1.27, .93, .22, -.30, -.72, -.99, -1.09, -1.10}},
    {4.20,
     {0, .50, .95, 1.15, 1.20, 1.20, 1.15, .92, .46, 0},
     {1.46, 1.45, 1.35, .95, .22, -.30, -.72, -1.0, -1.09, -1.10}},
    {3.40,
     {0, .50, .96, 1.15, 1.20, 1.20, 1.15, .92, .46, 0},
     {1.50, 1.49, 1.38, .95, .22, -.30, -.72, -1.0, -1.09, -1.10}},
    {2.90,
     {0, .50, .96, 1.15, 1.20, 1.20, 1.15, .92, .46, 0},
     {1.50, 1.49, 1.38, .95, .22, -.30, -.72, -1.0, -1.09, -1.10}},
    {1.10,
     {0, .50, .96, 1.15, 1.20, 1.20, 1.15, .92, .46, 0},
     {1.50, 1.49, 1.38, .95, .22, -.30, -.72, -1.0, -1.09, -1.10}},
    {-1.2,
     {0, .50, .96, 1.15, 1.20, 1.20, 1.15, .92, .46, 0},
     {1.50, 1.49, 1.38, .95, .22, -.30, -.72, -1.0, -1.08, -1.09}},
    {-2.2,
     {0, .50, .95, 1.14, 1.18, 1.18, 1.13, .90, .45, 0},
     {1.50, 1.49, 1.38, .95, .22, -.28, -.68, -.95, -1.03, -1.04}},
    {-3.2,
     {0, .49, .93, 1.10, 1.13, 1.12, 1.06, .84, .42, 0},
     {1.50, 1.49, 1.37, .96, .26, -.22, -.56, -.79, -.87, -.88}},
    {-4.4,
     {0, .44, .84, .99, 1.01, .98, .90, .70, .35, 0},
     {1.49, 1.48, 1.36, 1.00, .38, -.02, -.28, -.45, -.52, -.53}},
    {-5.6, {0, .36, .69, .81, .83, .79, .71, .54, .27, 0}, {1.46, 1.45, 1.34, 1.04, .53, .22, .03, -.09, -.14, -.15}},
    {-7.0, {0, .27, .52, .60, .61, .58, .51, .38, .19, 0}, {1.42, 1.41, 1.31, 1.08, .70, .49, .37, .29, .25, .24}},
    {-8.6, {0, .18, .35, .41, .41, .39, .34, .25, .13, 0}, {1.42, 1.41, 1.33, 1.16, .91, .78, .71, .66, .63, .62}},
    {-10.1, {0, .10, .20, .24, .24, .23, .20, .15, .08, 0}, {1.46, 1.45, 1.40, 1.28, 1.13, 1.05, 1.00, .96, .94, .94}},
    {-10.5,
     {0, .03, .07, .08, .08, .08, .07, .05, .02, 0},
     {1.34, 1.33, 1.31, 1.27, 1.22, 1.18, 1.15, 1.13, 1.12, 1.12}},
};
constexpr std::size_t ROW_COUNT = std::size(ROWS);

std::size_t rowAt(double y) {
    const auto found = std::find_if(std::begin(ROWS), std::end(ROWS), [y](const Row& row) { return row.y == y; });
    return static_cast<std::size_t>(found - std::begin(ROWS));
}

/// A field of rows and lines, without its upper limits.
struct Area {
    double front, back;
    std::size_t upper, lower;

    bool has(std::size_t row, std::size_t line) const {
        return ROWS[row].y <= front && ROWS[row].y > back && line >= upper && line < lower;
    }
};
// Windscreen, quarter lights, the doors' windows, the chin windows.
const Area WINDOWS[] = {{6.05, 5.2, 0, 2}, {6.05, 5.2, 2, 4}, {5.2, 4.2, 3, 4}, {6.75, 6.05, 4, 6}};
const Area DOORS[] = {{5.2, 4.2, 3, 6}, {2.9, 1.1, 2, 7}, {-2.2, -3.2, 3, 5}};

bool inAny(const Area* areas, std::size_t count, std::size_t row, std::size_t line) {
    return std::any_of(areas, areas + count, [&](const Area& area) { return area.has(row, line); });
}
bool isWindow(std::size_t row, std::size_t line) {
    return inAny(WINDOWS, std::size(WINDOWS), row, line);
}

dvec3 pointAt(std::size_t row, std::size_t line) {
    return {ROWS[row].x[line], ROWS[row].y, ROWS[row].z[line]};
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
    for (std::size_t line = 0; line + 1 < POINTS; ++line) {  // the tip of the nose
        half.triangle(paints().skin, {0.0, 7.03, -0.49}, pointAt(0, line), pointAt(0, line + 1));
    }
    for (const Area& window : WINDOWS) addFrame(half, window);
    return Mesh{}.addPair(half);
}

/// The parts of the cabin's inside that are visible through the windows and around the doors.
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

/// A door on the right with its handle, slightly outside the shell.
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
        // The cockpit doors have their hinge at the front edge; the others have their origin in the middle.
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
