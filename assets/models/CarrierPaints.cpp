// The carrier's materials.
#include "geometry/Canvas.h"
#include "geometry/Palette.h"
#include "models/CarrierShape.h"

namespace carrier {
namespace {

PaintRef pictured(const std::string& name, std::shared_ptr<const Texture> texture, double roughness) {
    Paint made = *paint(name, {1.0, 1.0, 1.0}, roughness);
    made.texture = std::move(texture);
    return std::make_shared<const Paint>(made);
}

/// A transparent mesh of wires, mapped by height and length along the wall. With distance its alpha tends to the
/// picture's mean opacity and therefore above or below the cutoff: nets become solid, railings disappear.
PaintRef lattice(const std::string& name, const std::array<double, 3>& color, double cell, double wire, bool posts) {
    Canvas canvas(64, 64, 0.0, 0.0, 4.0 * cell, 4.0 * cell, {255, 255, 255, 0});
    for (int i = 0; i <= 4; ++i) {
        canvas.line(0.0, i * cell, 4.0 * cell, i * cell, wire, {255, 255, 255, 255});
        if (!posts || i % 4 == 0) canvas.line(i * cell, 0.0, i * cell, 4.0 * cell, wire, {255, 255, 255, 255});
    }
    Texture texture;
    texture.png = canvas.toPng();
    const double scale = 1.0 / (4.0 * cell);
    texture.project = [scale](const dvec3& p, const dvec3& n) -> std::array<double, 2> {
        const bool flat = n.z > 0.5 || n.z < -0.5;
        const double across = flat ? p.x : p.z;
        const bool facing_end = !flat && (n.y > 0.75 || n.y < -0.75);
        return {(facing_end ? p.x : p.y) * scale, -across * scale};
    };
    Paint made = *paint(name, color, 0.8);
    made.texture = std::make_shared<const Texture>(texture);
    made.double_sided = true;
    made.cutoff = 0.4;
    return std::make_shared<const Paint>(made);
}

Paints make() {
    Paints p;
    p.wall = pictured("island", wallTexture(), 0.7);
    p.hull = pictured("hull", hullTexture(), 0.7);
    p.deck = pictured("deck", deckTexture(), 0.95);
    const std::vector<PaintRef> plain = palette("fittings", {{0.085, 0.092, 0.10},
                                                             {0.27, 0.297, 0.313},
                                                             {0.035, 0.037, 0.04},
                                                             {0.56, 0.575, 0.575},
                                                             {0.012, 0.012, 0.013},
                                                             {0.68, 0.42, 0.03},
                                                             {0.42, 0.03, 0.02},
                                                             {0.75, 0.16, 0.02},
                                                             {0.16, 0.17, 0.18},
                                                             {0.016, 0.026, 0.034}});
    PaintRef* const fields[] = {&p.floor,  &p.grey, &p.dark,   &p.white, &p.black,
                                &p.yellow, &p.red,  &p.orange, &p.steel, &p.pane};
    for (std::size_t i = 0; i < std::size(fields); ++i) *fields[i] = plain[i];
    p.glass = paint("glass", {0.012, 0.02, 0.026}, 0.12);
    p.rail = lattice("railing", {0.30, 0.325, 0.34}, 0.36, 0.055, true);
    p.net = lattice("net", {0.05, 0.052, 0.056}, 0.2, 0.06, false);
    return p;
}

}  // namespace

const Paints& paints() {
    static const Paints made = make();
    return made;
}

}  // namespace carrier
