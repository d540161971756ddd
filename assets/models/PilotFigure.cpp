// Helmet, torso and limbs, positioned relative to the eye.
#include "models/PilotFigure.h"

#include "geometry/Loft.h"

namespace {

Mesh head(const PilotPaints& paints) {
    Mesh mesh = body(paints.helmet,
                     {{-0.21, 0.01, 0.03, 0.03, 0.03},
                      {-0.19, 0.01, 0.08, 0.08, 0.08},
                      {-0.15, 0.01, 0.12, 0.115, 0.115},
                      {-0.07, 0.01, 0.135, 0.135, 0.14},
                      {0.00, 0.01, 0.122, 0.122, 0.14},
                      {0.05, 0.00, 0.09, 0.09, 0.13}},
                     24);
    mesh.add(body(paints.visor,
                  {{-0.01, 0.02, 0.130, 0.090, 0.06, 2.4},
                   {0.05, 0.02, 0.10, 0.08, 0.055, 2.4},
                   {0.085, 0.02, 0.05, 0.04, 0.035, 2.4}},
                  20));
    mesh.add(body(paints.visor, {{0.01, -0.09, 0.06, 0.05, 0.06}, {0.10, -0.11, 0.03, 0.03, 0.04}}, 12));
    return mesh.add(tube(paints.visor, {{0.03, 0.08, -0.14}, {0.08, 0.02, -0.30}, {0.16, -0.11, -0.42}}, 0.018, 8));
}

Mesh torso(const PilotPaints& paints) {
    struct Slice {
        double z, y, half_width, front, back, roundness;
    };
    const Slice slices[] = {{-0.74, -0.22, 0.18, 0.13, 0.12, 2.6}, {-0.55, -0.25, 0.18, 0.14, 0.12, 2.6},
                            {-0.36, -0.28, 0.20, 0.14, 0.12, 2.6}, {-0.26, -0.28, 0.20, 0.11, 0.11, 2.4},
                            {-0.19, -0.22, 0.10, 0.08, 0.08, 2.0}, {-0.10, -0.15, 0.07, 0.06, 0.06, 2.0}};
    std::vector<Ring> rings;
    for (const Slice& s : slices) {
        Ring ring;
        for (const dvec3& p : outline({0.0, s.y, s.half_width, s.front, s.back, s.roundness}, 20)) {
            ring.emplace_back(p.x, p.z, s.z);  // slices are horizontal
        }
        rings.push_back(ring);
    }
    return loft(paints.suit, rings);
}

}  // namespace

Mesh seatedPilot(const PilotPaints& paints, const dvec3& eye) {
    Mesh mesh = head(paints);
    mesh.add(torso(paints));
    const Ring arm{{0.21, -0.28, -0.28}, {0.29, -0.18, -0.50}, {0.25, 0.04, -0.51}, {0.17, 0.18, -0.49}};
    const Ring leg{{0.10, -0.22, -0.68}, {0.15, 0.16, -0.56}, {0.16, 0.32, -0.64}, {0.15, 0.63, -0.92}};
    mesh.addPair(tube(paints.suit, arm, 0.052, 10)).addPair(tube(paints.suit, leg, 0.078, 10));
    mesh.addPair(body(paints.visor,
                      {{0.14, -0.49, 0.04, 0.04, 0.04, 2.0, 0.18}, {0.24, -0.49, 0.035, 0.03, 0.03, 2.0, 0.17}}, 10));
    mesh.addPair(tube(paints.straps, {{0.08, -0.20, -0.19}, {0.09, -0.145, -0.30}, {0.06, -0.10, -0.58}}, 0.018, 6));
    return mesh.moved(eye);
}
