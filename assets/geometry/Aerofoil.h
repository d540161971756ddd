// Wings and tails with several ribs, divided into fixed and moving pieces along hinge lines.
#pragma once

#include <vector>

#include "geometry/Shapes.h"

/// A piece of the chord. A piece with a round nose turns about the mean line at `from` and keeps the gap in front of it
/// closed. A piece with a round back (a leading edge flap) does the same at `to`.
struct ChordPiece {
    double from = 0.0, to = 1.0;
    bool round_nose = false, round_back = false;
};

/// A piece of a wing with the symmetrical four-digit profile through ribs from root to tip; closed at both ends.
/// `steps`: number of points on each side.
Mesh aerofoil(const PaintRef& paint, const std::vector<Rib>& ribs, const ChordPiece& piece = {}, int steps = 9);
/// `count` ribs, interpolated between a and b from fraction `from` to fraction `to`.
std::vector<Rib> ribsBetween(const Rib& a, const Rib& b, double from, double to, int count = 2);
/// Half the thickness in metres at a fraction of the chord.
double halfThicknessAt(const Rib& rib, double fraction);
/// A rounded end that closes a wing's tip.
Mesh roundTip(const PaintRef& paint, const Rib& rib, const dvec3& outward, const ChordPiece& piece = {}, int steps = 9);
