// The logic's world with an armed jet: missile and effects as small files, targets as plates.
#pragma once

#include "LogicWorld.h"
#include "engine/memory/Allocator.h"
#include "engine/scene/ObjectParticles.h"
#include "engine/scene/ObjectPrefab.h"

class WeaponTest : public LogicTest {
protected:
    static constexpr const char* MISSILE = "data/assets/Targets/MODELS/ZSJ_CN_Z18_Missile/ZSJ_CN_Z18_Missile.prefab";
    static constexpr const char* EXPLOSION = "data/art/prefab/vfx/explosion/explosion.prefab";
    static constexpr const char* EXPLOSION_1 = "data/art/prefab/vfx/explosion_1/explosion_1.prefab";
    static constexpr const char* TARGET = "data/target.prefab";

    WeaponTest() {
        write(MISSILE, R"({ "node": { "body": { "kind": "driven", "group": 8, "mask": -9, "shapes": [
            { "type": "box", "size": [0.3, 3, 0.3] } ] } } })");
        const char* const effect = R"({ "node": { "type": "particles", "name": "effect", "particles":
            { "spawn_rate": 100, "life": 3 }, "children": [ { "type": "particles", "name": "smoke" } ] } })";
        write(EXPLOSION, effect);
        write(EXPLOSION_1, effect);
        write(TARGET, R"({ "node": { "body": { "kind": "driven", "shapes": [ { "size": [20, 20, 20] } ] } } })");
    }
    /// The jet in the air, so that nothing but what a test adds is met, with its own body left in.
    void begin() {
        TestJet spec;
        spec.body = R"({ "kind": "static", "shapes": [ { "name": "body_box", "type": "box", "size": [4, 30, 3] } ] })";
        writeJet(spec);
        addStart();
        start();
        logic().m_signal_8_effect_started.append(
            [this](SynCoder::CMDPlaySpeOnceInfo* info) { bursts.push_back(*info); });
    }
    /// A place so many metres ahead of the launch point, along the jet's nose and to its right.
    dvec3 ahead(double metres, double right = 0.0) {
        return jet().getWorldTransform() * dvec3(right, 5.0 + metres, 0.0);
    }
    static TargetInfo record(const jString& name, const dvec3& geo, const jString& path = TARGET) {
        TargetInfo info;
        info.name = name;
        info.path = path;
        info.type = 1001;
        info.pose[0] = geo.x;
        info.pose[1] = geo.y;
        info.pose[2] = geo.z;
        return info;
    }
    int countNodes(const jString& name) {
        const jVector<Node*> nodes = world().getNodes();
        return static_cast<int>(
            std::count_if(nodes.begin(), nodes.end(), [&](const Node* node) { return node->getName() == name; }));
    }

    std::vector<SynCoder::CMDPlaySpeOnceInfo> bursts;
};
