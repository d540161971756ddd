// Profiles with round noses at hinge lines.
#include "geometry/Aerofoil.h"

#include <cmath>

#include "engine/math/jMath.h"

namespace {

constexpr int ARC = 4;  // number of points of a round nose between its ends

/// Fractions of the chord, denser toward both ends of the profile, where it is curved or thin.
double fractionOf(const ChordPiece& piece, int i, int steps) {
    const double s = static_cast<double>(i) / steps;
    const double eased = piece.from <= 0.0 ? 1.0 - std::cos(s * jMath::PI / 2.0) : s;
    return piece.from + (piece.to - piece.from) * eased;
}

void addArc(Ring& ring, const Rib& rib, double fraction, double side, bool downward) {
    const double radius = halfThicknessAt(rib, fraction);
    for (int i = 1; i < ARC; ++i) {
        const double angle = jMath::PI * (downward ? i : ARC - i) / ARC;
        ring.push_back(chordPoint(rib, fraction) + rib.normal * (radius * std::cos(angle)) +
                       dvec3(0.0, side * radius * std::sin(angle), 0.0));
    }
}

Ring profile(const Rib& rib, const ChordPiece& piece, int steps) {
    Ring ring;
    for (int i = 0; i <= steps; ++i) {
        const double x = fractionOf(piece, i, steps);
        ring.push_back(chordPoint(rib, x) + rib.normal * halfThicknessAt(rib, x));
    }
    if (piece.round_back) addArc(ring, rib, piece.to, -1.0, true);
    for (int i = steps; i >= 0; --i) {
        const double x = fractionOf(piece, i, steps);
        ring.push_back(chordPoint(rib, x) - rib.normal * halfThicknessAt(rib, x));
    }
    if (piece.round_nose) addArc(ring, rib, piece.from, 1.0, false);
    return ring;
}

}  // namespace

double halfThicknessAt(const Rib& rib, double x) {
    // NACA report 460, with a closed trailing edge.
    return rib.chord * 5.0 * rib.thickness *
           (0.2969 * std::sqrt(x) - 0.1260 * x - 0.3516 * x * x + 0.2843 * x * x * x - 0.1036 * x * x * x * x);
}

Mesh aerofoil(const PaintRef& paint, const std::vector<Rib>& ribs, const ChordPiece& piece, int steps) {
    std::vector<Ring> rings;
    for (const Rib& rib : ribs) rings.push_back(profile(rib, piece, steps));
    return loft(paint, rings);
}

std::vector<Rib> ribsBetween(const Rib& a, const Rib& b, double from, double to, int count) {
    std::vector<Rib> ribs;
    for (int i = 0; i < count; ++i) ribs.push_back(between(a, b, from + (to - from) * i / (count - 1)));
    return ribs;
}

Mesh roundTip(const PaintRef& paint, const Rib& rib, const dvec3& outward, const ChordPiece& piece, int steps) {
    std::vector<Ring> rings;
    constexpr int ROWS = 4;
    for (int r = 0; r <= ROWS; ++r) {
        const double angle = jMath::PI / 2.0 * r / ROWS;
        Ring ring;
        for (int i = 0; i <= 2 * steps; ++i) {
            const bool upper = i <= steps;
            const double x = fractionOf(piece, upper ? i : 2 * steps - i, steps);
            const double half = halfThicknessAt(rib, x);
            ring.push_back(chordPoint(rib, x) + rib.normal * ((upper ? half : -half) * std::cos(angle)) +
                           outward * (1.4 * half * std::sin(angle)));
        }
        rings.push_back(ring);
    }
    return loft(paint, rings, false);
}
