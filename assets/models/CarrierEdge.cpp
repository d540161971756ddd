// Parts along the carrier's deck edge: catwalks with railings, nets, life rafts, aerials, boats, the crane.
#include <algorithm>
#include <cmath>

#include "geometry/Prism.h"
#include "models/CarrierShape.h"
#include "plan/Layout.h"

namespace carrier {
namespace {

constexpr double WALK = 1.5;   // width, metres
constexpr double BELOW = 1.9;  // depth of the floor below the deck, metres

/// A section of the deck's edge.
struct Stretch {
    double side, from, to;
};
const Stretch WALKS[] = {{-1, -140, -112}, {-1, -104, -67}, {-1, -56, -30}, {-1, -12, 46}, {-1, 50, 64}, {-1, 78, 138},
                         {1, -118, -72},   {1, -49, 14},    {1, 36, 50},    {1, 52, 72},   {1, 90, 138}};
// Nets instead of a catwalk.
const Stretch NETS[] = {{-1, -150, -140}, {-1, -30, -12}, {1, -150, -134}};

dvec3 edgePoint(double side, double y, double out, double down) {
    return {edgeOn(side, y) + side * out, y, deckHeight(y) - down};
}

/// Positions along a stretch: its ends and the deck's stations between them.
std::vector<double> placesOn(const Stretch& s) {
    std::vector<double> places{s.from};
    for (const double y : deckStations()) {
        if (y > s.from + 1.0 && y < s.to - 1.0) places.push_back(y);
    }
    places.push_back(s.to);
    return places;
}

/// A strip between two lines along a stretch, each given as (outward, down); faces up or outward.
void strip(Mesh& mesh, const PaintRef& paint, const Stretch& s, const std::array<double, 2>& inner,
           const std::array<double, 2>& outer) {
    const std::vector<double> places = placesOn(s);
    for (std::size_t i = 0; i + 1 < places.size(); ++i) {
        const dvec3 a = edgePoint(s.side, places[i], inner[0], inner[1]),
                    b = edgePoint(s.side, places[i], outer[0], outer[1]),
                    c = edgePoint(s.side, places[i + 1], outer[0], outer[1]),
                    d = edgePoint(s.side, places[i + 1], inner[0], inner[1]);
        if (s.side > 0.0) {
            mesh.quad(paint, a, b, c, d);
        } else {
            mesh.quad(paint, d, c, b, a);
        }
    }
}

Mesh walkway(const Stretch& s) {
    const Paints& p = paints();
    Mesh mesh;
    strip(mesh, p.floor, s, {-0.4, BELOW}, {WALK, BELOW});
    strip(mesh, p.grey, s, {WALK, BELOW}, {WALK, BELOW + 0.28});
    strip(mesh, p.dark, s, {WALK, BELOW + 0.28}, {-0.4, BELOW + 0.28});
    strip(mesh, p.rail, s, {WALK, BELOW - 1.15}, {WALK + 0.01, BELOW});
    strip(mesh, p.net, s, {0.0, 0.25}, {0.95, 0.05});
    for (const double y : {s.from, s.to}) {  // end plates
        const dvec3 a = edgePoint(s.side, y, -0.4, BELOW + 0.28), b = edgePoint(s.side, y, WALK, BELOW + 0.28);
        const dvec3 up(0.0, 0.0, 0.28), end(0.0, y == s.from ? -0.1 : 0.1, 0.0);
        mesh.add(loft(p.grey, {{a, b, b + up, a + up}, {a + end, b + end, b + up + end, a + up + end}}));
    }
    for (double y = s.from + 2.0; y < s.to - 1.0; y += 6.0) {
        mesh.add(
            bar(p.grey, edgePoint(s.side, y, WALK - 0.15, BELOW + 0.25), edgePoint(s.side, y, -0.5, BELOW + 1.9), 0.2));
    }
    return mesh;
}

Mesh nets(const Stretch& s) {
    Mesh mesh;
    strip(mesh, paints().net, s, {0.0, 0.3}, {2.0, -0.1});
    for (double y = s.from; y <= s.to; y += 3.0) {
        mesh.add(bar(paints().steel, edgePoint(s.side, y, -0.1, 0.5), edgePoint(s.side, y, 2.0, -0.05), 0.09));
    }
    return mesh;
}

/// Canisters in two rows on a rack outside the catwalk.
Mesh rafts(double side, double from, int count) {
    const Paints& p = paints();
    Mesh mesh;
    for (int i = 0; i < count; ++i) {
        const double y = from + 1.75 * i;
        for (const double row : {0.0, 1.0}) {
            const dvec3 middle = edgePoint(side, y, WALK + 0.45 + 0.1 * row, BELOW + 0.1 + 0.85 * row);
            mesh.add(drum(p.white, middle - dvec3(0, 0.68, 0), middle + dvec3(0, 0.68, 0), 0.36, 0.36, 5, true));
        }
        const dvec3 rack = edgePoint(side, y - 0.87, WALK + 0.1, BELOW + 1.4);
        mesh.add(bar(p.grey, rack, rack + dvec3(side * 0.1, 0, 1.9), 0.1));
    }
    return mesh;
}

/// Whip aerials, lowered over the water during flight operations.
Mesh aerials() {
    const Stretch rows[] = {{1, -134, -120}, {1, 54, 70}, {-1, 52, 66}, {-1, -110, -106}};
    const Paints& p = paints();
    Mesh mesh;
    for (const Stretch& row : rows) {
        for (double y = row.from; y <= row.to; y += 4.8) {
            const dvec3 foot = edgePoint(row.side, y, 1.0, 1.6), tip = foot + dvec3(row.side * 7.0, 0.0, 5.2);
            mesh.add(bar(p.grey, foot - dvec3(row.side, 0, 0.8), foot + dvec3(row.side * 0.5, 0, 0.4), 0.5));
            mesh.add(drum(p.grey, foot, tip, 0.12, 0.03, 3));
        }
    }
    return mesh;
}

/// A boat in its cradle; `keel` is the position of its keel.
Mesh boat(const PaintRef& hull, const dvec3& keel, double length) {
    const double h = length / 2.0;
    const std::vector<Section> sections{{-h, 0.9, 0.95, 0.5, 0.75, 3.0},
                                        {-h * 0.5, 0.85, 1.25, 0.5, 0.85, 2.6},
                                        {h * 0.3, 0.9, 1.2, 0.5, 0.85, 2.4},
                                        {h * 0.75, 1.0, 0.75, 0.5, 0.7, 2.0},
                                        {h, 1.15, 0.1, 0.35, 0.2, 2.0}};
    Mesh mesh = body(hull, sections, 12);
    mesh.add(taperedBox(paints().white, {-0.8, -h * 0.5, 1.2}, {0.8, h * 0.35, 2.3}, 0.25));
    mesh.add(taperedBox(paints().pane, {-0.7, -h * 0.3, 1.75}, {0.7, h * 0.33, 2.15}, 0.05));
    return mesh.moved(keel);
}

/// Boats in davits below the deck's edge.
Mesh boats() {
    const Paints& p = paints();
    const struct {
        double side, y;
        bool launch;
    } places[] = {{-1, -24, true}, {-1, -16, false}, {1, -127, true}};
    Mesh mesh;
    for (const auto& place : places) {
        const dvec3 keel = edgePoint(place.side, place.y, 0.9, 5.4);
        mesh.add(boat(place.launch ? p.steel : p.orange, keel, 7.0));
        for (const double along : {-2.4, 2.4}) {
            const dvec3 foot = keel + dvec3(-place.side * 2.4, along, 3.0), head = keel + dvec3(0.0, along, 3.6);
            mesh.add(bar(p.grey, foot, head, 0.3)).add(bar(p.steel, head, keel + dvec3(0.0, along, 1.4), 0.07));
        }
    }
    return mesh;
}

/// The deck crane behind the island, with its jib stowed along the edge.
Mesh crane() {
    const Paints& p = paints();
    const dvec3 foot{34.2, -79.0, 20.0}, head = foot + dvec3(0.0, 0.0, 4.6);
    Mesh mesh = drum(p.grey, foot, head, 0.6, 0.5, 9);
    mesh.add(drum(p.steel, head, head + dvec3(0, 0, 0.25), 0.75, 0.75, 9));
    mesh.add(prism(p.yellow, chamfered(head.x - 0.4, head.y - 1.7, head.x + 0.8, head.y + 1.4, {0.3, 0.3, 0.2, 0.2}),
                   head.z + 0.25, head.z + 1.5, 0.08));
    mesh.add(
        prism(p.yellow, rectangle(head.x - 1.3, head.y + 0.1, head.x - 0.4, head.y + 1.5), head.z + 0.2, head.z + 0.8));
    mesh.add(prism(p.pane, rectangle(head.x - 1.3, head.y + 0.1, head.x - 0.4, head.y + 1.5), head.z + 0.8,
                   head.z + 1.7, 0.12));
    const dvec3 root = head + dvec3(0.3, 1.5, 1.0), tip{35.0, -64.5 - 5.2, 22.3};
    for (const double x : {-0.35, 0.35}) {
        for (const double z : {-0.3, 0.3}) {
            mesh.add(bar(p.yellow, root + dvec3(x, 0, z), tip + dvec3(x * 0.4, 0, z * 0.4), 0.12));
        }
    }
    for (int i = 0; i < 6; ++i) {
        const dvec3 a = root + (tip - root) * (i / 6.0), b = root + (tip - root) * ((i + 1) / 6.0);
        mesh.add(bar(p.yellow, a + dvec3(-0.3, 0, -0.25), b + dvec3(-0.25, 0, 0.25), 0.07));
        mesh.add(bar(p.yellow, a + dvec3(0.3, 0, 0.25), b + dvec3(0.25, 0, -0.25), 0.07));
    }
    return mesh;
}

/// Below each lift's platform: brackets and guide rails; outside it: safety nets.
Mesh liftFittings() {
    const Paints& p = paints();
    Mesh mesh;
    for (const double lift : LIFTS) {
        for (const double along : {-LIFT_HALF + 1.0, -3.0, 3.0, LIFT_HALF - 1.0}) {
            const double y = lift + along, half = hullHalf(y);
            mesh.add(prism(p.grey, rectangle(half, y - 0.25, 35.6, y + 0.25), 18.1, 18.95));
            mesh.add(bar(p.grey, {half + 0.2, y, 12.6}, {32.0, y, 18.2}, 0.4));
            mesh.add(box(p.steel, {half + 0.1, y - 0.2, 7.5}, {half + 0.5, y + 0.2, 18.5}));
        }
        strip(mesh, p.net, {1.0, lift - LIFT_HALF + 0.3, lift + LIFT_HALF - 0.3}, {0.0, 0.3}, {1.5, 0.05});
    }
    return mesh;
}

}  // namespace

Mesh deckEdge() {
    Mesh mesh;
    for (const Stretch& s : WALKS) mesh.add(walkway(s));
    for (const Stretch& s : NETS) mesh.add(nets(s));
    const struct {
        double side, from;
        int count;
    } racks[] = {{-1, -100, 9}, {-1, -10, 7}, {-1, 8, 8},  {-1, 92, 8},
                 {1, -112, 9},  {1, -46, 8},  {1, -26, 9}, {1, 96, 8}};
    for (const auto& rack : racks) mesh.add(rafts(rack.side, rack.from, rack.count));
    return mesh.add(aerials()).add(boats()).add(crane()).add(liftFittings());
}

}  // namespace carrier
