// The demonstration's world, loaded from the runtime root of the build.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "engine/core/Engine.h"
#include "engine/scene/MeshData.h"
#include "engine/scene/ObjectMeshStatic.h"
#include "engine/scene/ObjectPrefab.h"
#include "engine/scene/ObjectTerrain.h"
#include "engine/scene/SceneNodes.h"
#include "engine/scene/World.h"
#include "engine/text/Log.h"
#include "engine/text/Package.h"
#include "support/Paths.h"

constexpr const char* JET_FOLDER = "data/assets/Targets/MODELS/FJ_CN_J15/";
constexpr double STANDING = 2.0;  ///< the jet's origin above the surface below its wheels, metres
constexpr double START = 2.2;     ///< the same at the start nodes

class DemoScene : public ::testing::Test {
protected:
    DemoScene() {
        jLog::setSink([this](jLog::Level level, const jString& line) {
            if (level != jLog::MESSAGE) m_complaints.push_back(line);
        });
        EngineSettings settings;
        settings.root = DECKVIEW_ROOT;
        m_engine = std::make_unique<Engine>(settings);
    }
    ~DemoScene() override {
        m_engine.reset();
        jLog::setSink({});
    }

    World& world() { return *m_engine->getWorld(); }
    void loadWorld() { ASSERT_TRUE(world().load("data/DEMO_PROJECT/DEMO_PROJECT.world")); }
    Node* node(const char* name) { return world().getNodeByName(name); }
    /// Loads the jet and adds it to the world.
    ObjectPrefab* addJet() {
        auto jet = std::make_unique<ObjectPrefab>(jString(JET_FOLDER) + "FJ_CN_J15.prefab");
        return static_cast<ObjectPrefab*>(world().addChild(std::unique_ptr<Node>(std::move(jet))));
    }
    void run(int frames) {
        for (int i = 0; i < frames; ++i) {
            m_engine->beginFrame(1.0 / 60.0);
            m_engine->step();
            m_engine->endFrame();
        }
    }
    /// Warnings and errors so far.
    const std::vector<std::string>& complaints() const { return m_complaints; }

    static double degreesBetween(const dvec3& a, const dvec3& b) {
        return std::acos(std::clamp(dot(a, b) / (length(a) * length(b)), -1.0, 1.0)) * jMath::RAD2DEG;
    }
    /// Bounding box, transformed by `frame`, of the vertices of a node and its descendants.
    static BoundBox vertexBox(const Node& node, const dmat4& frame) {
        BoundBox box;
        if (node.getType() == Node::MESH_STATIC) {
            for (const MeshSurface& surface : static_cast<const ObjectMeshStatic&>(node).getMesh().surfaces) {
                for (const auto& p : surface.positions) box.expand(frame * dvec3(p[0], p[1], p[2]));
            }
        }
        for (int i = 0; i < node.getNumChildren(); ++i) {
            box.expand(vertexBox(*node.getChild(i), frame * node.getChild(i)->getTransform()));
        }
        return box;
    }
    /// The same for a descendant of `top`, in top's frame.
    static BoundBox boxIn(const Node& top, const Node& node) {
        return vertexBox(node, inverse(top.getWorldTransform()) * node.getWorldTransform());
    }

private:
    std::vector<std::string> m_complaints;
    std::unique_ptr<Engine> m_engine;
};
