// Pictures of particles: opacity from noise within a soft round edge, so that overlapping particles look like billows.
#include <algorithm>
#include <cmath>

#include "effects/Effects.h"
#include "effects/ParticleNodes.h"
#include "geometry/Canvas.h"
#include "plan/Noise.h"
#include "text/Files.h"

namespace {

constexpr int SIZE = 128;  // pixels

double smooth(double from, double to, double v) {
    const double t = std::clamp((v - from) / (to - from), 0.0, 1.0);
    return t * t * (3.0 - 2.0 * t);
}

std::uint8_t level(double v) {
    return static_cast<std::uint8_t>(std::lround(255.0 * std::clamp(v, 0.0, 1.0)));
}

/// Computes each pixel as a function of its position, -1 to 1 on both axes.
void writePicture(const std::string& path, const std::function<Color(double x, double y)>& made) {
    Canvas canvas(SIZE, SIZE, -1.0, -1.0, 1.0, 1.0, {255, 255, 255, 0});
    canvas.repaint([&](double x, double y, const Color&) { return made(x, y); });
    writeFile(path, canvas.toPng());
}

/// Smoke: round bumps with darker creases between them, which also shape the ragged rim. No lit side, since each
/// particle is drawn with a different rotation.
Color smoke(const Noise& noise, double x, double y) {
    const double radius = std::hypot(x, y), crease = noise.ridged(1.9 * x + 5.0, 1.9 * y, 5, 0.65);
    const double wisps = noise.fractal(3.1 * x + 7.0, 3.1 * y, 5, 0.6);
    const double body = 1.0 - smooth(0.15, 0.95, radius + 0.6 * (crease - 0.6) - 0.3 * wisps);
    const double edge = 1.0 - smooth(0.75, 0.98, radius);
    const std::uint8_t grey = level(1.05 - 0.42 * crease * crease + 0.16 * wisps);
    return {grey, grey, grey, level(0.92 * body * edge)};
}

/// Hot in the middle; bright threads with gaps between them.
Color flame(const Noise& noise, double x, double y) {
    const double radius = std::hypot(x, y), crest = noise.ridged(1.7 * x + 3.0, 1.7 * y, 4, 0.6);
    const double heat = 1.0 - smooth(0.05, 0.95, radius + 0.6 * (1.0 - crest) * radius);
    const double edge = 1.0 - smooth(0.75, 0.98, radius);
    return {255, level(0.5 + 0.45 * heat * heat), level(0.2 + 0.5 * heat * heat * heat),
            level(heat * edge * (0.15 + 0.85 * smooth(0.4, 0.85, crest)))};
}

/// Drops: a soft disc multiplied with noise.
Color spray(const Noise& noise, double x, double y) {
    const double radius = std::hypot(x, y);
    const double drops = smooth(-0.15, 0.45, noise.fractal(7.0 * x, 7.0 * y, 4, 0.7));
    const double body = 1.0 - smooth(0.15, 0.95, radius);
    return {255, 255, 255, level(body * (0.35 + 0.65 * drops) * (1.0 - smooth(0.85, 0.98, radius)))};
}

}  // namespace

void writeParticlePictures(const std::string& root) {
    const Noise billows(11), tongues(12), drops(13);
    writePicture(root + "/" + SMOKE_PICTURE, [&](double x, double y) { return smoke(billows, x, y); });
    writePicture(root + "/" + FLAME_PICTURE, [&](double x, double y) { return flame(tongues, x, y); });
    writePicture(root + "/" + SPRAY_PICTURE, [&](double x, double y) { return spray(drops, x, y); });
}
