// Reads the settings of particles, lights and bodies from scene files, over their defaults.
#include "engine/physics/Body.h"
#include "engine/scene/ObjectParticles.h"
#include "engine/scene/SceneNodes.h"
#include "scene/NodeLoader.h"

namespace {

constexpr int MAX_PARTICLES = 100000;

constexpr const char* LIGHT_KINDS[] = {"point", "spot"};
constexpr const char* BODY_KINDS[] = {"static", "dynamic", "driven"};

bool readShapeType(const DataReader& in, Shape& shape) {
    static constexpr const char* NAMES[] = {"sphere", "capsule", "box", "cylinder"};
    static constexpr Shape::Type TYPES[] = {Shape::SPHERE, Shape::CAPSULE, Shape::BOX, Shape::CYLINDER};
    int index = 2;
    if (in.has("type") && !in.read("type", index, NAMES)) return false;
    shape.type = TYPES[index];
    return true;
}

bool readShape(const DataReader& in, Shape& shape) {
    if (!readShapeType(in, shape)) return false;
    dvec3 position, hpr;
    in.read("name", shape.name);
    in.read("size", shape.size);
    in.read("position", position);
    in.read("hpr", hpr);
    in.warnUnknownKeys();
    shape.transform = dmat4(dquat::fromEulerZXY(hpr), position);
    return true;
}

}  // namespace

void readParticles(const DataReader& in, ParticleSettings& s) {
    in.read("spawn_rate", s.spawn_rate);
    in.read("life", s.life);
    in.read("life_spread", s.life_spread);
    in.read("velocity", s.velocity);
    in.read("velocity_spread", s.velocity_spread);
    in.read("emitter_size", s.emitter_size);
    in.read("size", s.size);
    in.read("size_spread", s.size_spread);
    in.read("growth", s.growth);
    in.read("drag", s.drag);
    in.read("buoyancy", s.buoyancy);
    in.read("wind", s.wind);
    in.read("color", s.color);
    in.read("end_color", s.end_color);
    in.read("additive", s.additive);
    in.read("emitting", s.emitting);
    in.read("delay", s.delay);
    in.read("duration", s.duration);
    if (in.read("max_particles", s.max_particles)) s.max_particles = std::clamp(s.max_particles, 0, MAX_PARTICLES);
}

void readLight(const DataReader& in, LightSettings& s) {
    in.read("kind", s.kind, LIGHT_KINDS);
    in.read("color", s.color);
    in.read("intensity", s.intensity);
    in.read("range", s.range);
    in.read("angle", s.angle);
    in.read("size", s.size);
    in.warnUnknownKeys();
}

void readBody(const DataReader& in, BodySettings& s) {
    in.read("kind", s.kind, BODY_KINDS);
    in.read("mass", s.mass);
    in.read("inertia", s.inertia);
    in.read("center_of_mass", s.center_of_mass);
    in.read("friction", s.friction);
    in.read("restitution", s.restitution);
    in.read("linear_damping", s.linear_damping);
    in.read("angular_damping", s.angular_damping);
    in.read("group", s.group);
    in.read("mask", s.mask);
    in.read("enabled", s.enabled);
    for (const Item& item : in.getArray("shapes")) {
        const Package* const package = in.asPackage(item, "a shape");
        Shape shape;
        if (package && readShape(DataReader(*package, in.getFile()), shape)) s.shapes.append(shape);
    }
    in.warnUnknownKeys();
}
