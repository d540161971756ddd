// A site on the globe with bodies, meshes and terrain, for the physics tests.
#pragma once

#include "engine/globe/EllipsoidModel.h"
#include "engine/physics/Body.h"
#include "engine/physics/Physics.h"
#include "engine/scene/MeshData.h"
#include "engine/scene/ObjectMeshStatic.h"
#include "engine/scene/ObjectPrefab.h"
#include "engine/scene/ObjectTerrain.h"
#include "physics/PhysicsWorld.h"
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
        for (int i = 0; i <= cells; ++i) {
            for (int k = 0; k <= cells; ++k) {
                surface.positions.push_back({static_cast<float>(size * (double(k) / cells - 0.5)),
                                             static_cast<float>(size * (double(i) / cells - 0.5)), 0.0f});
            }
        }
        const auto post = [cells](int row, int column) {
            return static_cast<std::uint32_t>(row * (cells + 1) + column);
        };
        for (int i = 0; i < cells; ++i) {
            for (int k = 0; k < cells; ++k) {
                for (const std::uint32_t p :
                     {post(i, k), post(i, k + 1), post(i + 1, k + 1), post(i, k), post(i + 1, k + 1), post(i + 1, k)}) {
                    surface.indices.push_back(p);
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
    /// Ground with posts about 30 m apart at a height of up to 20 m; flat where `slope` (metres a post) is 0.
    ObjectTerrain* addTerrain(double slope) {
        std::string text = "ncols 61\nnrows 61\nxllcenter 112.342\nyllcenter 16.832\ncellsize 0.0002666666667\n";
        for (int i = 0; i < 61; ++i) {
            for (int k = 0; k < 61; ++k) text += std::to_string(20.0 + slope * (k - 30)) + (k == 60 ? "\n" : " ");
        }
        write("data/ground.asc", text);
        write(
            "data/ground.prj",
            "GEOGCS[\"WGS 84\",DATUM[\"WGS_1984\",SPHEROID[\"WGS 84\",6378137,298.257223563]],PRIMEM[\"Greenwich\",0],"
            "UNIT[\"degree\",0.0174532925199433]]");
        auto terrain = std::make_unique<ObjectTerrain>("data/ground.asc", "");
        EXPECT_TRUE(terrain->isLoaded());
        return add(std::move(terrain));
    }
    int getNumStanding() { return static_cast<PhysicsWorld*>(world().getPhysics())->getNumCollisionObjects(); }

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
