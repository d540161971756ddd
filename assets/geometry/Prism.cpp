// Prisms, window bands and fences over plans.
#include "geometry/Prism.h"

#include <algorithm>
#include <cmath>

#include "engine/math/jMath.h"

namespace {

/// Intersection of the lines through p and q along their directions, seen from above.
dvec3 crossing(const dvec3& p, const dvec3& along_p, const dvec3& q, const dvec3& along_q) {
    const double turn = along_p.x * along_q.y - along_p.y * along_q.x;
    const double t = ((q.x - p.x) * along_q.y - (q.y - p.y) * along_q.x) / turn;
    return p + along_p * t;
}

dvec3 inward(const dvec3& a, const dvec3& b) {
    return normalize(dvec3(a.y - b.y, b.x - a.x, 0.0));
}

/// The front face of a post before the glass, from its foot to its head.
void addPost(Mesh& mesh, const PaintRef& paint, const dvec3& foot, const dvec3& head, const dvec3& along,
             double width) {
    const dvec3 side = along * (width / 2.0), out = normalize(cross(along, head - foot)) * 0.04;
    mesh.quad(paint, foot - side + out, foot + side + out, head + side + out, head - side + out);
}

void addCap(Mesh& mesh, const PaintRef& paint, const Ring& ring, bool upward) {
    for (std::size_t i = 1; i + 1 < ring.size(); ++i) {
        if (upward) {
            mesh.triangle(paint, ring[0], ring[i], ring[i + 1]);
        } else {
            mesh.triangle(paint, ring[0], ring[i + 1], ring[i]);
        }
    }
}

/// Points around `middle`, counter-clockwise seen from the direction of `axis`.
Ring circle(const dvec3& middle, const dvec3& axis, double radius, int sides) {
    const dvec3 along = normalize(axis);
    const dvec3 across = normalize(cross(along, std::abs(along.z) < 0.9 ? dvec3(0, 0, 1) : dvec3(1, 0, 0)));
    const dvec3 other = cross(along, across);
    Ring ring;
    for (int i = 0; i < sides; ++i) {
        const double angle = 2.0 * jMath::PI * (i + 0.5) / sides;
        ring.push_back(middle + (across * std::cos(angle) + other * std::sin(angle)) * radius);
    }
    return ring;
}

}  // namespace

Plan rectangle(double x0, double y0, double x1, double y1) {
    return {{x0, y0, 0}, {x1, y0, 0}, {x1, y1, 0}, {x0, y1, 0}};
}

Plan chamfered(double x0, double y0, double x1, double y1, const std::array<double, 4>& cuts) {
    const Plan corners = rectangle(x0, y0, x1, y1);
    Plan plan;
    for (std::size_t i = 0; i < 4; ++i) {
        const dvec3 &corner = corners[i], &before = corners[(i + 3) % 4], &after = corners[(i + 1) % 4];
        if (cuts[i] <= 0.0) {
            plan.push_back(corner);
            continue;
        }
        plan.push_back(corner + normalize(before - corner) * cuts[i]);
        plan.push_back(corner + normalize(after - corner) * cuts[i]);
    }
    return plan;
}

Plan inset(const Plan& plan, double by) {
    Plan result;
    for (std::size_t i = 0; i < plan.size(); ++i) {
        const dvec3 &before = plan[(i + plan.size() - 1) % plan.size()], &here = plan[i],
                    &after = plan[(i + 1) % plan.size()];
        result.push_back(
            crossing(before + inward(before, here) * by, here - before, here + inward(here, after) * by, after - here));
    }
    return result;
}

Ring atHeight(const Plan& plan, double z) {
    Ring ring;
    for (const dvec3& p : plan) ring.emplace_back(p.x, p.y, z);
    return ring;
}

Mesh prism(const PrismPaints& paints, const Plan& plan, double z0, double z1, double draw_in) {
    const Ring low = atHeight(plan, z0), high = atHeight(inset(plan, draw_in), z1);
    Mesh mesh;
    for (std::size_t i = 0; i < low.size(); ++i) {
        const std::size_t j = (i + 1) % low.size();
        mesh.quad(paints.walls, low[i], low[j], high[j], high[i]);
    }
    addCap(mesh, paints.top, high, true);
    addCap(mesh, paints.bottom, low, false);
    return mesh;
}

Mesh windowBand(const PaintRef& glass, const PaintRef& frame, const WindowBand& band) {
    Mesh mesh = prism(glass, band.plan, band.z0, band.z1, band.draw_in);
    const Ring low = atHeight(band.plan, band.z0), high = atHeight(inset(band.plan, band.draw_in), band.z1);
    for (std::size_t i = 0; i < low.size(); ++i) {
        const std::size_t j = (i + 1) % low.size();
        const int posts = std::max(1, static_cast<int>(std::lround(length(low[j] - low[i]) / band.spacing)));
        for (int k = 0; k <= posts; ++k) {
            const double t = static_cast<double>(k) / posts;
            addPost(mesh, frame, low[i] + (low[j] - low[i]) * t, high[i] + (high[j] - high[i]) * t,
                    normalize(low[j] - low[i]), band.post);
        }
    }
    return mesh;
}

Mesh fence(const PaintRef& paint, const std::vector<dvec3>& path, double height) {
    const dvec3 up(0.0, 0.0, height);
    Mesh mesh;
    for (std::size_t i = 0; i + 1 < path.size(); ++i) {
        mesh.quad(paint, path[i], path[i + 1], path[i + 1] + up, path[i] + up);
    }
    return mesh;
}

Mesh bar(const PaintRef& paint, const dvec3& a, const dvec3& b, double width) {
    return loft(paint, {circle(a, b - a, width * 0.6, 3), circle(b, b - a, width * 0.6, 3)}, false);
}

Mesh drum(const PaintRef& paint, const dvec3& a, const dvec3& b, double radius_a, double radius_b, int sides,
          bool both) {
    const Ring low = circle(a, b - a, radius_a, sides), high = circle(b, b - a, radius_b, sides);
    Mesh mesh = loft(paint, {low, high}, false);
    addCap(mesh, paint, high, true);
    if (both) addCap(mesh, paint, low, false);
    return mesh;
}

Mesh ball(const PaintRef& paint, const dvec3& middle, double radius, int sides) {
    std::vector<Ring> rings;
    for (const double degrees : {-30.0, 12.0, 52.0}) {
        const double angle = degrees * jMath::DEG2RAD;
        rings.push_back(
            circle(middle + dvec3(0, 0, radius * std::sin(angle)), {0, 0, 1}, radius * std::cos(angle), sides));
    }
    Mesh mesh = loft(paint, rings, false);
    const Ring& top = rings.back();
    for (std::size_t i = 0; i < top.size(); ++i) {
        mesh.triangle(paint, middle + dvec3(0, 0, radius), top[i], top[(i + 1) % top.size()]);
    }
    return mesh;
}

Mesh slice(const Mesh& mesh, double from, double to) {
    Mesh result;
    for (const Mesh::Surface& surface : mesh.surfaces()) {
        for (const Mesh::Triangle& t : surface.triangles) {
            const double middle = (t[0].y + t[1].y + t[2].y) / 3.0;
            if (middle >= from && middle < to) result.triangle(surface.paint, t[0], t[1], t[2]);
        }
    }
    return result;
}
