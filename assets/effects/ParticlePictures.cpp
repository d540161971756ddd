// Pictures of particles: opacity drawn from noise within a soft round edge, so that overlapping ones make billows.
#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "effects/Effects.h"
#include "effects/ParticleNodes.h"
#include "geometry/Canvas.h"
#include "world/Noise.h"

namespace {

constexpr int SIZE = 128;  // pixels

double smooth(double from, double to, double v) {
    const double t = std::clamp((v - from) / (to - from), 0.0, 1.0);
    return t * t * (3.0 - 2.0 * t);
}

std::uint8_t level(double v) {
    return static_cast<std::uint8_t>(std::lround(255.0 * std::clamp(v, 0.0, 1.0)));
}

/// Pixels from a function of the place, -1 to 1 each way.
void writePicture(const std::string& path, const std::function<Color(double x, double y)>& made) {
    Canvas canvas(SIZE, SIZE, -1.0, -1.0, 1.0, 1.0, {255, 255, 255, 0});
    canvas.repaint([&](double x, double y, const Color&) { return made(x, y); });
    const std::vector<unsigned char> png = canvas.toPng();
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream file(path, std::ios::binary);
    file.write(reinterpret_cast<const char*>(png.data()), static_cast<std::streamsize>(png.size()));
    file.close();
    if (!file) throw std::runtime_error("cannot write " + path);
}

/// Billows: bumps of several sizes, lighter on top of each, torn at the rim.
Color smoke(const Noise& noise, double x, double y) {
    const double bumps = noise.fractal(3.1 * x + 7.0, 3.1 * y, 4, 0.55), radius = std::hypot(x, y);
    const double body = 1.0 - smooth(0.25, 0.95, radius - 0.45 * bumps);
    const double edge = 1.0 - smooth(0.8, 0.98, radius);
    const double shade = 0.82 + 0.3 * noise.fractal(4.0 * x, 4.0 * y - 0.35, 3);
    const std::uint8_t grey = level(shade);
    return {grey, grey, grey, level(body * edge * (0.75 + 0.25 * bumps))};
}

/// Hot in the middle; tongues run outward.
Color flame(const Noise& noise, double x, double y) {
    const double radius = std::hypot(x, y), bumps = noise.ridged(2.3 * x + 3.0, 2.3 * y, 4, 0.5);
    const double heat = 1.0 - smooth(0.05, 0.95, radius + 0.5 * (1.0 - bumps) * radius);
    const double edge = 1.0 - smooth(0.75, 0.98, radius);
    return {255, level(0.62 + 0.45 * heat * heat), level(0.35 + 0.55 * heat * heat * heat),
            level(heat * edge * (0.55 + 0.6 * bumps))};
}

/// Drops: what the noise leaves of a soft disc.
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
