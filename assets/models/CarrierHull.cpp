// The carrier's hull and flight deck: one mesh, so that whatever stands on the deck stands on the hull's object.
#include <algorithm>
#include <cmath>

#include "engine/math/jMath.h"
#include "models/CarrierShape.h"
#include "world/Layout.h"

namespace carrier {
namespace {

constexpr double DECK_THICKNESS = 2.0;

struct Edge {
    double y, x;
};
// From the stern to the bow.
const std::vector<Edge> PORT{{STERN, -19.0}, {-146.0, -22.5}, {-118.0, -26.0}, {-95.0, -31.0}, {-72.0, -36.0},
                             {-40.0, -38.8}, {28.0, -38.8},   {46.0, -30.0},   {62.0, -22.0},  {95.0, -18.5},
                             {120.0, -16.5}, {140.0, -14.0},  {150.0, -10.0},  {BOW, -6.0}};
const std::vector<Edge> STARBOARD{{STERN, 19.0}, {-146.0, 22.5}, {-120.0, 25.5}, {-98.0, 31.0}, {-84.0, 36.2},
                                  {44.0, 36.2},  {58.0, 28.0},   {74.0, 23.5},   {95.0, 21.0},  {120.0, 18.0},
                                  {140.0, 14.5}, {150.0, 10.0},  {BOW, 6.0}};

double edgeAt(const std::vector<Edge>& edges, double y) {
    for (std::size_t i = 1; i < edges.size(); ++i) {
        if (y > edges[i].y) continue;
        const double t = (y - edges[i - 1].y) / (edges[i].y - edges[i - 1].y);
        return edges[i - 1].x + t * (edges[i].x - edges[i - 1].x);
    }
    return edges.back().x;
}

/// Every place where an edge bends, and every few metres on the ramp.
std::vector<double> deckStations() {
    std::vector<double> stations;
    for (const auto* edges : {&PORT, &STARBOARD}) {
        for (const Edge& edge : *edges) stations.push_back(edge.y);
    }
    for (double y = RAMP_START; y < BOW; y += 4.0) stations.push_back(y);
    std::sort(stations.begin(), stations.end());
    const auto close = [](double a, double b) { return b - a < 0.01; };
    stations.erase(std::unique(stations.begin(), stations.end(), close), stations.end());
    return stations;
}

/// Port edge, starboard edge, on the deck and under it.
Ring deckRing(double y) {
    const double top = deckHeight(y), port = portEdge(y), starboard = starboardEdge(y);
    return {{port, y, top}, {starboard, y, top}, {starboard, y, top - DECK_THICKNESS}, {port, y, top - DECK_THICKNESS}};
}

Mesh deckSlab(const PaintRef& deck, const PaintRef& side) {
    Mesh mesh;
    const std::vector<double> stations = deckStations();
    for (std::size_t i = 0; i + 1 < stations.size(); ++i) {
        const Ring a = deckRing(stations[i]), b = deckRing(stations[i + 1]);
        mesh.quad(deck, a[0], a[1], b[1], b[0]);
        mesh.quad(side, a[1], a[2], b[2], b[1]);
        mesh.quad(side, a[2], a[3], b[3], b[2]);
        mesh.quad(side, a[3], a[0], b[0], b[3]);
    }
    const Ring stern = deckRing(STERN), bow = deckRing(BOW);
    mesh.quad(side, stern[3], stern[2], stern[1], stern[0]);
    mesh.quad(side, bow[0], bow[1], bow[2], bow[3]);
    return mesh;
}

/// The hull at one place: the keel's depth and the half breadth at the waterline.
struct Frame {
    double y, keel, breadth;
};
const std::vector<Frame> FRAMES{{-147.0, -1.5, 14.0}, {-140.0, -5.0, 16.5}, {-120.0, -9.5, 18.2}, {-80.0, -10.2, 19.0},
                                {0.0, -10.2, 19.0},   {60.0, -10.2, 18.2},  {95.0, -10.2, 14.8},  {118.0, -10.0, 9.2},
                                {130.0, -9.5, 5.2},   {138.0, -7.0, 2.6},   {143.0, -1.0, 1.2},   {147.0, 6.0, 0.8},
                                {150.5, 13.0, 0.6}};

constexpr double BOOT_TOP = 0.6;  // the dark bottom paint reaches this far above the waterline

/// Half a hull's outline from the keel up: the immersed part in shares of its depth, the rest in shares of its height
/// and of the way out to the deck's edge.
Ring hullHalf(const Frame& frame, double edge) {
    const double top = deckHeight(frame.y) - DECK_THICKNESS + 0.05;
    const double line = std::max(BOOT_TOP, frame.keel + 0.05 * (top - frame.keel));
    const double b = frame.breadth, flare = std::abs(edge) - 0.4 - b, sign = edge < 0.0 ? -1.0 : 1.0;
    const auto low = [&](double share, double half) {
        return dvec3(sign * half * b, frame.y, frame.keel + share * (line - frame.keel));
    };
    const auto high = [&](double share, double out) {
        return dvec3(sign * (b + out * flare), frame.y, line + share * (top - line));
    };
    return {low(0.00, 0.10),  low(0.08, 0.70),  low(0.40, 0.95),  low(1.00, 1.00),
            high(0.30, 0.10), high(0.69, 0.45), high(0.88, 0.90), high(1.00, 1.00)};
}

Mesh hull(const PaintRef& side, const PaintRef& bottom) {
    std::vector<Ring> rings;
    for (const Frame& frame : FRAMES) {
        Ring ring = hullHalf(frame, starboardEdge(frame.y));
        const Ring port = hullHalf(frame, portEdge(frame.y));
        ring.insert(ring.end(), port.rbegin(), port.rend());
        rings.push_back(ring);
    }
    Mesh painted;
    const Mesh plain = loft(side, rings);
    for (const Mesh::Triangle& t : plain.surfaces()[0].triangles) {
        const bool low = std::max({t[0].z, t[1].z, t[2].z}) < BOOT_TOP + 0.01;
        painted.triangle(low ? bottom : side, t[0], t[1], t[2]);
    }
    return painted;
}

/// Lifts on the starboard edge and the opening in the transom.
Mesh sideBays(const PaintRef& dark, const PaintRef& side) {
    Mesh mesh;
    for (const double y : {-60.0, 25.0}) {
        mesh.add(box(dark, {34.6, y - 9.0, 17.9}, {36.4, y + 9.0, 18.0}));
        mesh.add(box(side, {36.1, y - 9.5, 18.6}, {36.9, y + 9.5, 19.8}));
    }
    return mesh.add(box(dark, {-9.0, FRAMES[0].y - 0.1, 9.0}, {9.0, FRAMES[0].y + 1.0, 15.5}));
}

}  // namespace

double deckHeight(double y) {
    if (y <= RAMP_START) return DECK_HEIGHT;
    const double radius = (BOW - RAMP_START) / std::sin(RAMP_ANGLE * jMath::DEG2RAD);
    const double along = std::min(y, BOW) - RAMP_START;
    return DECK_HEIGHT + radius - std::sqrt(radius * radius - along * along);
}

double portEdge(double y) {
    return edgeAt(PORT, y);
}
double starboardEdge(double y) {
    return edgeAt(STARBOARD, y);
}

dvec3 onStrip(double along, double right) {
    const double angle = STRIP_ANGLE * jMath::DEG2RAD;
    return {STRIP_X - along * std::sin(angle) + right * std::cos(angle),
            STERN + along * std::cos(angle) + right * std::sin(angle), DECK_HEIGHT};
}

Part hullAndDeck() {
    const PaintRef side = paint("hull", {0.24, 0.26, 0.28}, 0.7);
    const PaintRef bottom = paint("boot", {0.10, 0.035, 0.03}, 0.8);
    const PaintRef dark = paint("bay", {0.02, 0.02, 0.025}, 0.9);
    Paint deck = *paint("deck", {1.0, 1.0, 1.0}, 0.95);
    deck.texture = deckTexture();
    Mesh mesh = deckSlab(std::make_shared<const Paint>(deck), side);
    mesh.add(hull(side, bottom)).add(sideBays(dark, side));
    return {"LiaoNingJian_zhuTi001", {}, mesh};
}

}  // namespace carrier
