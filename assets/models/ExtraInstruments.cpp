// The faces of the aerobatic aircraft's instruments.
#include <cmath>

#include "engine/math/jMath.h"
#include "geometry/Lettering.h"
#include "models/ExtraShape.h"

namespace extra {
namespace {

const Color FACE{14, 15, 16, 255}, WHITE{226, 228, 226, 255}, GREEN{60, 170, 80, 255}, RED{200, 44, 36, 255},
    YELLOW{230, 190, 50, 255}, BOARD{62, 66, 70, 255}, FRAME{24, 26, 28, 255};

double onDial(double part) {
    return (225.0 - 270.0 * part) * jMath::DEG2RAD;
}

/// A dial's scale from lower left over the top to lower right. `zone` returns a mark's colour for its position 0..1.
template <class Zone>
void scale(Canvas& canvas, const Dial& dial, const std::vector<std::string>& figures, Zone zone) {
    canvas.circle(dial.x, dial.z, dial.radius * 0.5, dial.radius, FACE);
    constexpr int MARKS = 40;
    for (int i = 0; i <= MARKS; ++i) {
        const double part = static_cast<double>(i) / MARKS, a = onDial(part), r = dial.radius;
        const double inner = i % 5 == 0 ? 0.76 : 0.84;
        canvas.line(dial.x + std::cos(a) * r * inner, dial.z + std::sin(a) * r * inner, dial.x + std::cos(a) * r * 0.93,
                    dial.z + std::sin(a) * r * 0.93, i % 5 == 0 ? 0.0022 : 0.0013, zone(part));
    }
    for (std::size_t i = 0; i < figures.size(); ++i) {
        const double a = onDial(static_cast<double>(i) / static_cast<double>(figures.size() - 1));
        letter(canvas, figures[i], dial.x + std::cos(a) * dial.radius * 0.58,
               dial.z + std::sin(a) * dial.radius * 0.58 - 0.004, 0.008, 0, WHITE);
    }
}

void drawDials(Canvas& canvas) {
    const auto plain = [](double) { return WHITE; };
    scale(canvas, dials()[0], {"0", "50", "100", "150", "200", "250"}, [](double p) {
        return p < 0.25 ? WHITE : p < 0.65 ? GREEN : p < 0.88 ? YELLOW : RED;
    });
    scale(canvas, dials()[1], {"0", "2", "4", "6", "8", "10"}, plain);
    scale(canvas, dials()[2], {"0", "5", "10", "15", "20", "25", "30"}, [](double p) { return p < 0.9 ? GREEN : RED; });
    scale(canvas, dials()[3], {"-10", "-5", "0", "5", "10"},
          [](double p) { return p < 0.08 || p > 0.92 ? RED : WHITE; });
    scale(canvas, dials()[4], {"0", "6", "12"}, plain);
    scale(canvas, dials()[5], {"50", "100", "150"}, plain);
    for (const Dial& dial : dials()) {
        if (*dial.needle == '\0')
            canvas.line(dial.x, dial.z, dial.x + dial.radius * 0.5, dial.z + dial.radius * 0.4, 0.003, YELLOW);
    }
    const char* const names[] = {"KTS", "ALT", "RPM", "G"};
    for (std::size_t i = 0; i < 4; ++i) letter(canvas, names[i], dials()[i].x, dials()[i].z + 0.014, 0.007, 0, WHITE);
}

}  // namespace

std::shared_ptr<const Texture> panelFace() {
    const double width = 2.0 * PANEL_HALF, height = PANEL_TOP - PANEL_FOOT;
    Canvas canvas(1024, 612, -PANEL_HALF, PANEL_FOOT, PANEL_HALF, PANEL_TOP, BOARD);
    canvas.weather(4, 0.02, 3);
    for (const Dial& dial : dials()) canvas.circle(dial.x, dial.z, dial.radius * 0.55, dial.radius * 1.1, FRAME);
    drawDials(canvas);
    // Frames of the windows, the slip indicator's tube, and the figures' boxes.
    canvas.rectangle(-0.085, 0.195, 0.148, 0.345, FRAME);
    canvas.rectangle(-0.108, 0.362, 0.108, 0.408, FRAME);
    canvas.rectangle(-0.05, 0.163, 0.05, 0.187, {210, 214, 190, 255});
    for (const double x : {-0.011, 0.011}) canvas.line(x, 0.163, x, 0.187, 0.002, FACE);
    for (const double x : {-0.055, 0.055}) canvas.rectangle(x - 0.042, 0.060, x + 0.042, 0.078, FACE);
    for (const auto& [x, z] : {std::pair(-0.215, 0.285), {0.215, 0.285}, {-0.215, 0.145}}) {
        canvas.rectangle(x - 0.018, z - 0.012, x + 0.018, z + 0.006, {4, 5, 5, 255});
    }
    letter(canvas, "FUEL L", -0.055, 0.082, 0.006, 0, WHITE);
    for (int i = 0; i < 7; ++i) {
        const double x = -0.27 + 0.09 * i;
        canvas.circle(x, 0.068, 0.006, 0.006, i % 3 == 0 ? RED : FRAME);
    }
    Texture texture{canvas.toPng(), {1.0 / width, 0, 0}, {0, 0, -1.0 / height}, {0.5, PANEL_TOP / height}, {}};
    return std::make_shared<const Texture>(texture);
}

std::shared_ptr<const Texture> compassBand() {
    Canvas canvas(1024, 64, 0.0, -5.0, 360.0, 17.5, FACE);
    for (int at = 0; at < 360; at += 10) {
        canvas.line(at + 0.01, -5.0, at + 0.01, at % 30 == 0 ? 3.0 : 0.0, 1.2, WHITE);
        if (at % 30 == 0) {
            const std::string name = at == 0     ? "N"
                                     : at == 90  ? "E"
                                     : at == 180 ? "S"
                                     : at == 270 ? "W"
                                                 : std::to_string(at / 10);
            letter(canvas, name, at == 0 ? 6.0 : at, 6.0, 8.0, 0, at % 90 == 0 ? YELLOW : WHITE);
        }
    }
    // A third of the circle is visible.
    Texture texture{canvas.toPng(), {1.0 / 0.6, 0, 0}, {0, 0, -1.0 / 0.034}, {0.0, (0.385 + 0.017) / 0.034}, {}};
    return std::make_shared<const Texture>(texture);
}

std::shared_ptr<const Texture> horizonFace() {
    Canvas canvas(256, 512, -1.0, -90.0, 1.0, 90.0, {112, 74, 38, 255});
    canvas.rectangle(-1.0, 0.0, 1.0, 90.0, {52, 120, 190, 255});
    canvas.line(-1.0, 0.0, 1.0, 0.0, 1.2, WHITE);
    for (int at = -80; at <= 80; at += 5) {
        if (at == 0) continue;
        const double half = at % 10 == 0 ? 0.34 : 0.16;
        canvas.line(-half, at, half, at, 0.7, WHITE);
    }
    // The window shows 60 degrees of it.
    const double per_metre = 1.0 / (0.13 * 3.0);
    Texture texture{canvas.toPng(), {1.0 / 0.15, 0, 0}, {0, 0, -per_metre}, {0.5, 0.5 + 0.27 * per_metre}, {}};
    return std::make_shared<const Texture>(texture);
}

std::shared_ptr<const Texture> climbBand() {
    Canvas canvas(64, 512, -10.0, -80.0, 10.0, 80.0, FACE);
    for (int at = -75; at <= 75; at += 5)
        canvas.line(-10.0, at, at % 10 == 0 ? 0.0 : -5.0, at, 0.8, at == 0 ? YELLOW : WHITE);
    for (int at = -60; at <= 60; at += 20)
        letter(canvas, std::to_string(std::abs(at / 10)), 5.0, at - 3.0, 7.0, 0, WHITE, 0.18);
    const double per_metre = 1.0 / (0.13 * 2.5);
    Texture texture{
        canvas.toPng(), {1.0 / 0.04, 0, 0}, {0, 0, -per_metre}, {0.5 - 0.118 / 0.04, 0.5 + 0.27 * per_metre}, {}};
    return std::make_shared<const Texture>(texture);
}

}  // namespace extra
