// Wings and tails of several ribs, cut into fixed and moving pieces along hinge lines.
#pragma once

#include <vector>

#include "geometry/Shapes.h"

/// A piece of the chord. A piece with a round nose turns about the mean line at `from` and keeps the gap before it
/// closed; one with a round back (a leading edge flap) does so about `to`.
struct ChordPiece {
    double from = 0.0, to = 1.0;
    bool round_nose = false, round_back = false;
};

/// The piece of a wing with the symmetrical four-digit profile through ribs from root to tip; ends closed. `steps`
/// points lie along each of its sides.
Mesh aerofoil(const PaintRef& paint, const std::vector<Rib>& ribs, const ChordPiece& piece = {}, int steps = 9);
/// The rib at a fraction of the way through ribs, as the piece of them between two fractions needs it.
std::vector<Rib> ribsBetween(const Rib& a, const Rib& b, double from, double to, int count = 2);
/// Half the thickness at a fraction of the chord, metres.
double halfThicknessAt(const Rib& rib, double fraction);
/// A rounded end that closes a wing's tip.
Mesh roundTip(const PaintRef& paint, const Rib& rib, const dvec3& outward, const ChordPiece& piece = {}, int steps = 9);
