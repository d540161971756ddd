// The figure in an aircraft's seat.
#pragma once

#include "geometry/Shapes.h"

struct PilotPaints {
    PaintRef helmet, visor, suit, straps;
};
/// A seated pilot, given by the eye's position inside the helmet, whose faces point outward and are invisible from
/// there. Hands are 0.2 m ahead of and 0.5 m below the eye, feet 0.63 m ahead and 0.92 m below.
Mesh seatedPilot(const PilotPaints& paints, const dvec3& eye);
