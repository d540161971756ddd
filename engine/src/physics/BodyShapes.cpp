// Shapes, cores and mass properties of bodies; computed once for each body.
#include "physics/BodyShapes.h"

#include "engine/text/Log.h"
#include "physics/Convert.h"

namespace {

constexpr double MIN_SIZE = 1e-4;   // metres, of a shape's size
constexpr double CORE_INSET = 0.5;  // share of the smallest half extent
constexpr double SKEW = 1e-9;       // products of inertia below this share of the moments count as none

bool isSize(double v) {
    return std::isfinite(v) && v >= MIN_SIZE;
}

bool isUsable(const Shape& shape) {
    if (!isFinite(shape.transform)) return false;
    switch (shape.type) {
        case Shape::BOX:
            return isSize(shape.size.x) && isSize(shape.size.y) && isSize(shape.size.z);
        case Shape::SPHERE:
            return isSize(shape.size.x);
        case Shape::CAPSULE:
        case Shape::CYLINDER:
            return isSize(shape.size.x) && isSize(shape.size.z);
    }
    return false;
}

bool isFactor(float v) {
    return std::isfinite(v) && v >= 0.0f;
}

const char* findFault(const BodySettings& s) {
    if (s.shapes.empty()) return "no shapes";
    for (const Shape& shape : s.shapes) {
        if (!isUsable(shape)) return "a shape of unknown type or without a size";
    }
    if (s.kind == BodySettings::DYNAMIC && !(std::isfinite(s.mass) && s.mass > 0.0f)) return "no mass";
    if (!isFactor(s.inertia.x) || !isFactor(s.inertia.y) || !isFactor(s.inertia.z)) return "inertia is no number";
    if (!isFinite(dvec3(s.center_of_mass))) return "centre of mass is no number";
    if (!isFactor(s.friction) || !isFactor(s.restitution)) return "friction or restitution is no number";
    return nullptr;
}

double halfOf(float size) {
    return 0.5 * static_cast<double>(size);
}

/// Half the length of the cylinder between a capsule's two caps.
double capsuleHalf(const Shape& s) {
    return std::fmax(0.0, halfOf(s.size.z) - halfOf(s.size.x));
}

double minHalf(const Shape& s) {
    if (s.type == Shape::BOX) return halfOf(std::fmin(s.size.x, std::fmin(s.size.y, s.size.z)));
    if (s.type == Shape::CYLINDER) return halfOf(std::fmin(s.size.x, s.size.z));
    return halfOf(s.size.x);
}

std::unique_ptr<btConvexShape> makeConvex(const Shape& s, double inset) {
    const double radius = halfOf(s.size.x) - inset;
    switch (s.type) {
        case Shape::SPHERE:
            return std::make_unique<btSphereShape>(radius);
        case Shape::CAPSULE:
            return std::make_unique<btCapsuleShapeZ>(radius, 2.0 * capsuleHalf(s));
        case Shape::CYLINDER:
            return std::make_unique<btCylinderShapeZ>(btVector3(radius, radius, halfOf(s.size.z) - inset));
        case Shape::BOX:
            break;
    }
    return std::make_unique<btBoxShape>(btVector3(radius, halfOf(s.size.y) - inset, halfOf(s.size.z) - inset));
}

struct MassOfShape {
    double volume;
    btVector3 moments;  // about its own centre, for unit density
};

/// Solids of unit density. Moments after any table of them, e.g. Goldstein, Classical Mechanics.
MassOfShape measure(const Shape& s) {
    const double r = halfOf(s.size.x), pi = SIMD_PI;
    if (s.type == Shape::BOX) {
        const double x = s.size.x, y = s.size.y, z = s.size.z, v = x * y * z;
        return {v, btVector3(y * y + z * z, z * z + x * x, x * x + y * y) * (v / 12.0)};
    }
    if (s.type == Shape::SPHERE) {
        const double v = 4.0 / 3.0 * pi * r * r * r;
        return {v, btVector3(1, 1, 1) * (0.4 * v * r * r)};
    }
    const double h = s.type == Shape::CYLINDER ? static_cast<double>(s.size.z) : 2.0 * capsuleHalf(s);
    const double rod = pi * r * r * h;
    const double caps = s.type == Shape::CYLINDER ? 0.0 : 4.0 / 3.0 * pi * r * r * r;
    const double across = rod * (h * h / 12.0 + r * r / 4.0) + caps * (0.4 * r * r + 0.25 * h * h + 0.375 * h * r);
    return {rod + caps, btVector3(across, across, rod * r * r / 2.0 + caps * 0.4 * r * r)};
}

/// The inertia tensor of all shapes about a point of the object's frame, for the given mass spread by volume.
btMatrix3x3 sumInertia(const BodySettings& settings, const btVector3& center) {
    btMatrix3x3 sum(0, 0, 0, 0, 0, 0, 0, 0, 0);
    double volume = 0.0;
    for (const Shape& shape : settings.shapes) {
        const MassOfShape mass = measure(shape);
        const btTransform place = toBullet(shape.transform);
        const btMatrix3x3 r = place.getBasis();
        const btVector3 d = place.getOrigin() - center;
        const btMatrix3x3 own(mass.moments.x(), 0, 0, 0, mass.moments.y(), 0, 0, 0, mass.moments.z());
        const btVector3 x = d * d.x(), y = d * d.y(), z = d * d.z();
        const double dd = d.length2();
        const btMatrix3x3 shift(dd - x.x(), -x.y(), -x.z(), -y.x(), dd - y.y(), -y.z(), -z.x(), -z.y(), dd - z.z());
        sum += r * own * r.transpose() + shift * mass.volume;
        volume += mass.volume;
    }
    return sum * (static_cast<double>(settings.mass) / volume);
}

bool isSkew(const btMatrix3x3& m) {
    const double products = btFabs(m[0][1]) + btFabs(m[0][2]) + btFabs(m[1][2]);
    return products > SKEW * (m[0][0] + m[1][1] + m[2][2]);
}

}  // namespace

bool isUsable(const BodySettings& settings, const jString& owner) {
    const char* const fault = findFault(settings);
    if (fault) jLog::error("%s: body refused: %s", owner.c_str(), fault);
    return !fault;
}

BodyShapes::BodyShapes(const BodySettings& settings) : compound(std::make_unique<btCompoundShape>()) {
    const btVector3 center = toBullet(settings.center_of_mass);
    frame = btTransform(btMatrix3x3::getIdentity(), center);
    inertia = toBullet(settings.inertia);
    if (inertia.x() <= 0.0 || inertia.y() <= 0.0 || inertia.z() <= 0.0) {
        btMatrix3x3 tensor = sumInertia(settings, center), axes = btMatrix3x3::getIdentity();
        if (isSkew(tensor)) tensor.diagonalize(axes, 1e-12, 50);
        frame.setBasis(axes);
        inertia = btVector3(tensor[0][0], tensor[1][1], tensor[2][2]);
    }
    const btTransform to_center = frame.inverse();
    for (const Shape& shape : settings.shapes) {
        const double shrink = CORE_INSET * minHalf(shape);
        inset = children.empty() ? shrink : std::fmin(inset, shrink);
        children.push_back(makeConvex(shape, 0.0));
        cores.push_back(makeConvex(shape, shrink));
        compound->addChildShape(to_center * toBullet(shape.transform), children.back().get());
    }
}
