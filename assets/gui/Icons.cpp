// The icons of the camera bar: light strokes with a dark rim, visible in front of any sky. They are drawn at twice the
// size at which they are shown.
#include "gui/Icons.h"

#include <cstdint>

#include "geometry/Canvas.h"
#include "text/Files.h"

namespace {

constexpr int SIZE = 32;        // pixels
constexpr double UNITS = 16.0;  // size of the icon in stroke units, y upward
constexpr Color CLEAR{18, 20, 24, 0}, RIM{18, 20, 24, 190}, STROKE{240, 244, 250, 255};

struct Point {
    double x, y;
};
using Path = std::vector<Point>;

class Icon {
public:
    /// Paths have round joints; a path of a single point is a dot.
    void add(Path path, double width) { m_strokes.push_back({std::move(path), width, 0.0}); }
    void addRing(Point center, double radius, double width) { m_strokes.push_back({{center}, width, radius}); }

    Canvas draw() const {
        Canvas canvas(SIZE, SIZE, 0.0, 0.0, UNITS, UNITS, CLEAR);
        for (const Stroke& stroke : m_strokes) drawStroke(canvas, stroke, stroke.width + 1.6, RIM);
        for (const Stroke& stroke : m_strokes) drawStroke(canvas, stroke, stroke.width, STROKE);
        return canvas;
    }

private:
    struct Stroke {
        Path path;
        double width;
        double radius;  ///< of a ring
    };

    static void drawStroke(Canvas& canvas, const Stroke& stroke, double width, const Color& color) {
        const Path& path = stroke.path;
        if (stroke.radius > 0.0) {
            canvas.circle(path[0].x, path[0].y, stroke.radius, width, color);
            return;
        }
        for (const Point& p : path) canvas.circle(p.x, p.y, width / 4.0, width / 2.0, color);
        for (std::size_t i = 1; i < path.size(); ++i) {
            canvas.line(path[i - 1].x, path[i - 1].y, path[i].x, path[i].y, width, color);
        }
    }

    std::vector<Stroke> m_strokes;
};

/// Two arrow heads to the right.
Canvas speedIcon() {
    Icon icon;
    for (const double x : {3.0, 8.5}) icon.add({{x, 3.0}, {x + 4.5, 8.0}, {x, 13.0}}, 1.8);
    return icon.draw();
}

/// A pin on a map.
Canvas placeIcon() {
    Icon icon;
    icon.addRing({8.0, 10.0}, 3.4, 1.8);
    icon.add({{5.3, 7.7}, {8.0, 2.2}, {10.7, 7.7}}, 1.8);
    return icon.draw();
}

/// A lever on its base.
Canvas leverIcon() {
    Icon icon;
    icon.add({{3.0, 3.0}, {13.0, 3.0}}, 1.8);
    icon.add({{6.0, 3.0}, {10.0, 11.0}}, 1.8);
    icon.add({{10.5, 12.0}}, 4.2);
    return icon.draw();
}

void put32(std::vector<unsigned char>& bytes, std::uint32_t value) {
    for (int shift = 0; shift < 32; shift += 8) bytes.push_back(static_cast<unsigned char>(value >> shift));
}

/// Uncompressed: blue, green, red, opacity. Layout after the public description of the format's header.
std::vector<unsigned char> toDds(const Canvas& canvas) {
    constexpr std::uint32_t HAS_CAPS_SIZE_PITCH_FORMAT = 0x100F, HAS_COLOR_AND_OPACITY = 0x41, IS_TEXTURE = 0x1000;
    std::vector<unsigned char> bytes{'D', 'D', 'S', ' '};
    for (const std::uint32_t value : {124u, HAS_CAPS_SIZE_PITCH_FORMAT, std::uint32_t{SIZE}, std::uint32_t{SIZE},
                                      std::uint32_t{4 * SIZE}, 0u, 0u}) {
        put32(bytes, value);
    }
    for (int i = 0; i < 11; ++i) put32(bytes, 0);
    for (const std::uint32_t value : {32u, HAS_COLOR_AND_OPACITY, 0u, 32u, 0xff0000u, 0xff00u, 0xffu, 0xff000000u}) {
        put32(bytes, value);
    }
    for (const std::uint32_t value : {IS_TEXTURE, 0u, 0u, 0u, 0u}) put32(bytes, value);
    for (const Color& c : canvas.getPixels()) bytes.insert(bytes.end(), {c[2], c[1], c[0], c[3]});
    return bytes;
}

}  // namespace

void writeIcons(const std::string& root) {
    const std::string folder = root + "/data/core/editor/gui/";
    writeFile(folder + "run.dds", toDds(speedIcon()));
    writeFile(folder + "position.dds", toDds(placeIcon()));
    writeFile(folder + "thr.png", leverIcon().toPng());
}
