// A site on the globe with bodies, meshes and terrain, for the physics tests.
#pragma once

#include "engine/globe/EllipsoidModel.h"
#include "engine/physics/Body.h"
#include "engine/physics/Physics.h"
#include "engine/scene/MeshData.h"
#include "engine/scene/ObjectMeshStatic.h"
#include "engine/scene/ObjectPrefab.h"
#include "support/TestScene.h"

class PhysicsTest : public SceneTest {
protected:
    /// East, north, up at a place on the sea.
    static dmat4 site() {
        const EllipsoidModel globe;
        return globe.getWGSTransform(globe.toWorld(dvec3(112.35, 16.84, 0.0)));
    }
    /// A world transform at a local place, turned by (heading, pitch, roll).
    static dmat4 at(double east, double north, double up, const dvec3& hpr = {}) {
        return site() * dmat4(dquat(hpr), dvec3(east, north, up));
    }
    static vec3 toWorld(const dvec3& local) { return narrow(rotate(site(), local)); }
    static dvec3 toLocal(const vec3& world) { return inverse(site()).getMat3() * dvec3(world); }
    static double heightOf(const Node& node) { return (inverse(site()) * node.getWorldPosition()).z; }
    /// Difference of two transforms: metres between the origins plus those between the ends of the axes.
    static double distance(const dmat4& a, const dmat4& b) {
        return length(a.t - b.t) + length(a.x - b.x) + length(a.y - b.y) + length(a.z - b.z);
    }

    static Shape box(const vec3& size, const dvec3& center = {}, const jString& name = "box") {
        Shape shape;
        shape.size = size;
        shape.name = name;
        shape.transform = dmat4::translation(center);
        return shape;
    }
    static BodySettings settings(const jVector<Shape>& shapes, BodySettings::Kind kind = BodySettings::DYNAMIC,
                                 float mass = 1000.0f) {
        BodySettings s;
        s.kind = kind;
        s.mass = mass;
        s.shapes = shapes;
        return s;
    }
    /// An object with a body; a cube of 1 m by default.
    Object* addBody(const jString& name, const dmat4& place, const BodySettings& s = settings({box({1, 1, 1})}),
                    Node* parent = nullptr) {
        auto object = std::make_unique<Object>();
        object->setName(name);
        object->setBody(s);
        object->setTransform(place);
        return static_cast<Object*>((parent ? parent : world().getRoot())->addChild(std::move(object)));
    }

    /// A level sheet of square cells round the origin, two triangles each.
    static std::shared_ptr<MeshData> makeSheet(double size, int cells = 1) {
        MeshSurface surface;
        const auto place = [&](int post) { return static_cast<float>(size * (double(post) / cells - 0.5)); };
        for (int i = 0; i < cells; ++i) {
            for (int k = 0; k < cells; ++k) {
                for (const auto& [row, column] :
                     {std::pair(i, k), {i, k + 1}, {i + 1, k + 1}, {i, k}, {i + 1, k + 1}, {i + 1, k}}) {
                    surface.indices.push_back(static_cast<std::uint32_t>(surface.positions.size()));
                    surface.positions.push_back({place(column), place(row), 0.0f});
                }
            }
        }
        std::vector<MeshSurface> surfaces;
        surface.material = std::make_shared<Material>();
        surfaces.push_back(std::move(surface));
        return std::make_shared<MeshData>(std::move(surfaces));
    }
    ObjectMeshStatic* addMesh(const jString& name, const dmat4& place, std::shared_ptr<const MeshData> mesh,
                              Node* parent = nullptr) {
        auto object = std::make_unique<ObjectMeshStatic>(std::move(mesh));
        object->setName(name);
        object->setTransform(place);
        return static_cast<ObjectMeshStatic*>((parent ? parent : world().getRoot())->addChild(std::move(object)));
    }

    /// Frames of dt for so many seconds.
    void runSeconds(double seconds, double dt = 1.0 / 60.0) { run(static_cast<int>(std::lround(seconds / dt)), dt); }
};

/// Records the shapes that began to touch.
class ContactLog final : public BodyContactCallbackBase {
public:
    explicit ContactLog(Body* body) : m_body(body) { body->setContactCallback(this); }
    void contact(Body* body, int shape) override {
        EXPECT_EQ(body, m_body);
        shapes.push_back(shape);
        if (then) then();
    }

    std::vector<int> shapes;
    Function<void()> then;

private:
    Body* m_body;
};
