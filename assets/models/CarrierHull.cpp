// The carrier's hull and flight deck: one mesh, so that objects on the deck touch the hull's object.
#include <algorithm>
#include <cmath>

#include "models/CarrierShape.h"
#include "plan/Layout.h"

namespace carrier {
namespace {

constexpr double SLAB = 1.1;     // thickness of the deck at its edge, metres
constexpr double OVERLAP = 0.3;  // overhang of the deck beyond the hull, metres

/// The hull below the knuckle: the keel's depth, half the breadth at the waterline, and the fullness of the section
/// below water (exponent: 1 a wedge, large a box).
struct Frame {
    double y, keel, breadth, fullness;
};
const std::vector<Frame> FRAMES{{-148.0, -1.6, 15.2, 2.0}, {-140.0, -5.0, 16.6, 2.2}, {-125.0, -8.6, 17.8, 2.6},
                                {-95.0, -10.2, 18.6, 3.6}, {-40.0, -10.2, 18.9, 4.5}, {30.0, -10.2, 18.9, 4.5},
                                {60.0, -10.2, 18.0, 3.6},  {80.0, -10.2, 15.9, 2.8},  {95.0, -10.2, 13.3, 2.3},
                                {112.0, -10.2, 9.8, 1.9},  {126.0, -10.2, 6.6, 1.7},  {136.0, -10.0, 4.3, 1.6},
                                {144.0, -9.4, 2.3, 1.5},   {149.0, -8.6, 1.0, 1.5},   {BOW - 0.2, -7.6, 0.2, 1.5}};

/// Position of the stem at a height; from RAKE_FROM on, frames lean increasingly toward it.
constexpr double RAKE_FROM = 96.0;
double stemAt(double z) {
    const struct {
        double z, y;
    } stem[] = {{-11.0, 136.0}, {-6.0, 138.5}, {0.0, 141.0}, {KNUCKLE, 147.2}, {20.0, 150.6}, {SIDE_TOP, BOW - 0.2}};
    for (std::size_t i = 1; i < std::size(stem); ++i) {
        if (z > stem[i].z) continue;
        return stem[i - 1].y + (stem[i].y - stem[i - 1].y) * (z - stem[i - 1].z) / (stem[i].z - stem[i - 1].z);
    }
    return BOW - 0.2;
}
double raked(double y, double z) {
    return y < RAKE_FROM ? y : RAKE_FROM + (y - RAKE_FROM) * (stemAt(z) - RAKE_FROM) / (BOW - 0.2 - RAKE_FROM);
}

Frame frameAt(double y) {
    if (y <= FRAMES.front().y) return {y, FRAMES.front().keel, FRAMES.front().breadth, FRAMES.front().fullness};
    for (std::size_t i = 1; i < FRAMES.size(); ++i) {
        const Frame &a = FRAMES[i - 1], &b = FRAMES[i];
        if (y > b.y) continue;
        const double t = (y - a.y) / (b.y - a.y);
        const auto mix = [t](double from, double to) { return from + t * (to - from); };
        return {y, mix(a.keel, b.keel), mix(a.breadth, b.breadth), mix(a.fullness, b.fullness)};
    }
    return {y, FRAMES.back().keel, FRAMES.back().breadth, FRAMES.back().fullness};
}

/// Half the width at a height below the knuckle: convex below water, concave above.
double halfAt(const Frame& frame, double z) {
    if (z < 0.0) {
        const double up = (z - frame.keel) / -frame.keel;
        return frame.breadth * std::pow(1.0 - std::pow(1.0 - up, frame.fullness), 1.0 / frame.fullness);
    }
    return frame.breadth + (hullHalf(frame.y) - frame.breadth) * std::pow(z / KNUCKLE, 1.6);
}

/// Heights of the section's points below the knuckle, from the keel upward.
std::vector<double> heightsOf(const Frame& frame) {
    std::vector<double> heights;
    for (const double share : {0.9, 0.3, 0.0}) heights.push_back(share * frame.keel);
    for (const double z : {4.5, 9.0, KNUCKLE}) heights.push_back(z);
    return heights;
}

/// One side of the hull from the keel to the underside of the deck. In a lift's bay the side is vertical.
Ring sideOf(double y, double side, bool bay) {
    const Frame frame = frameAt(y);
    Ring ring{{side * 0.02, raked(y, frame.keel), frame.keel}};
    const auto add = [&](double half, double z) { ring.emplace_back(side * half, raked(y, z), z); };
    for (const double z : heightsOf(frame)) add(halfAt(frame, z), z);
    const double top = deckHeight(y) - SLAB + 0.02, half = hullHalf(y);
    const double edge = bay ? half + 0.2 : std::max(0.15, std::abs(edgeOn(side, y)) - OVERLAP);
    const double reach = std::clamp((edge - half) / 10.0, 0.0, 1.0);
    const double low = top - 2.6 - 0.8 * reach, shoulder = std::min(low - 0.4, KNUCKLE + 0.3 + 1.6 * reach);
    // A concave flare at the bow, a flat underside where the overhang is wide.
    for (const double t : {0.35, 0.7}) add(half + std::pow(t, 1.2) * (edge - half), shoulder + t * (low - shoulder));
    add(edge, low);
    add(edge, top);
    return ring;
}

Ring sectionAt(double y, bool bay) {
    Ring ring = sideOf(y, 1.0, bay);
    const Ring port = sideOf(y, -1.0, false);
    ring.insert(ring.end(), port.rbegin(), port.rend());
    return ring;
}

bool inBay(double y) {
    return std::any_of(std::begin(LIFTS), std::end(LIFTS), [y](double lift) { return std::abs(y - lift) < LIFT_HALF; });
}

std::vector<double> hullStations() {
    std::vector<double> stations;
    for (const Frame& frame : FRAMES) stations.push_back(frame.y);
    for (const double y : deckStations()) {
        if (y > FRAMES.front().y && y < FRAMES.back().y) stations.push_back(y);
    }
    for (double y = 99.0; y < 150.0; y += 5.0) stations.push_back(y);
    std::sort(stations.begin(), stations.end());
    const auto close = [](double a, double b) { return b - a < (b > 147.0 ? 0.1 : 1.2); };
    stations.erase(std::unique(stations.begin(), stations.end(), close), stations.end());
    return stations;
}

Mesh hull() {
    std::vector<Ring> rings;
    for (const double y : hullStations()) {
        const bool before = inBay(y - 0.01), after = inBay(y + 0.01);
        rings.push_back(sectionAt(y, before));
        if (before != after) rings.push_back(sectionAt(y, after));
    }
    return loft(paints().hull, rings);
}

/// Port edge, starboard edge, on the deck and below it. The last metres of the deck are rounded downward.
Ring deckRing(double y) {
    const double top = deckHeight(y) - (y < STERN + 0.5 ? 0.5 : 0.0), low = deckHeight(y) - SLAB;
    const double port = portEdge(y), starboard = starboardEdge(y);
    return {{port, y, top}, {starboard, y, top}, {starboard, y, low}, {port, y, low}};
}

Mesh deckSlab() {
    std::vector<double> stations = deckStations();
    stations.insert(stations.begin() + 1, STERN + 1.5);
    Mesh mesh;
    for (std::size_t i = 0; i + 1 < stations.size(); ++i) {
        const Ring a = deckRing(stations[i]), b = deckRing(stations[i + 1]);
        mesh.quad(paints().deck, a[0], a[1], b[1], b[0]);
        mesh.quad(paints().hull, a[1], a[2], b[2], b[1]);
        mesh.quad(paints().hull, a[2], a[3], b[3], b[2]);
        mesh.quad(paints().hull, a[3], a[0], b[0], b[3]);
    }
    const Ring stern = deckRing(stations.front()), bow = deckRing(stations.back());
    mesh.quad(paints().hull, stern[3], stern[2], stern[1], stern[0]);
    mesh.quad(paints().hull, bow[0], bow[1], bow[2], bow[3]);
    return mesh;
}

}  // namespace

Mesh hullAndDeck() {
    Mesh mesh = deckSlab();
    mesh.add(hull());
    const std::vector<Section> bulb{{116.0, -6.6, 0.2, 0.4, 0.4}, {124.0, -6.9, 2.2, 2.6, 2.6},
                                    {134.0, -7.0, 2.9, 3.1, 3.1}, {142.0, -6.9, 2.7, 2.9, 2.9},
                                    {146.5, -6.7, 1.7, 1.9, 1.9}, {148.0, -6.5, 0.3, 0.4, 0.4}};
    return mesh.add(body(paints().hull, bulb, 14));
}

}  // namespace carrier
