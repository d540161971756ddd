// Trigger volumes: what enters and leaves, also while sensors, triggers and callbacks come and go.
#include "engine/scene/SceneNodes.h"
#include "support/TestScene.h"

namespace {

class TriggerTest : public SceneTest {
protected:
    /// A trigger that writes "+name " and "-name " into `log`, a sensor's name after its own.
    NodeTrigger* addTrigger(const jString& name, const vec3& size, const dvec3& position = {}) {
        NodeTrigger* const trigger = add(std::make_unique<NodeTrigger>(size));
        trigger->setName(name);
        trigger->setPosition(position);
        trigger->enter.append([this, name](Node* sensor) { log += "+" + name + sensor->getName() + " "; });
        trigger->leave.append([this, name](Node* sensor) { log += "-" + name + sensor->getName() + " "; });
        return trigger;
    }
    Node* addSensor(const jString& name, const dvec3& position, const vec3& size = {}) {
        Node* const node = addNode(name, position);
        node->setSensor(true, size);
        return node;
    }
    /// What one frame reports.
    std::string frame() {
        log.clear();
        run(1);
        return log;
    }

    std::string log;
};

}  // namespace

TEST_F(TriggerTest, ReportsChangesOnceInOrderOfTheSensorsIds) {
    Node* const first = addSensor("1", {100, 0, 0});
    Node* const second = addSensor("2", {0, 0, 0});
    addTrigger("a", {10, 10, 10});
    addTrigger("b", {4, 4, 4}, {3, 0, 0});
    EXPECT_EQ(frame(), "+a2 ");
    EXPECT_EQ(frame(), "");
    first->setPosition({2, 0, 0});
    EXPECT_EQ(frame(), "+a1 +b1 ");
    second->setPosition({4.5, 0, 0});
    EXPECT_EQ(frame(), "+b2 ");
    first->setPosition({0, 0, 50});
    second->setPosition({0, 0, 50});
    EXPECT_EQ(frame(), "-a1 -a2 -b1 -b2 ");
}

TEST_F(TriggerTest, TurnedBoxesMeetExactly) {
    NodeTrigger* const trigger = addTrigger("t", {10, 10, 10});
    Node* const sensor = addSensor("s", {}, {2, 2, 2});
    const dvec3 origin = EllipsoidModel().toWorld({112, 17, 0});
    const struct {
        dvec3 trigger, sensor, hits, misses;  // (heading, pitch, roll) of both, positions of the sensor
    } cases[] = {{{}, {}, {5.9, 0, 0}, {6.1, 0, 0}},
                 {{45, 0, 0}, {}, {8.0, 0, 0}, {8.1, 0, 0}},
                 {{}, {45, 0, 0}, {5.6, 5.6, 0}, {6.4, 6.4, 0}},
                 // Edge against edge: only the cross product of the two edges separates these.
                 {{0, 0, 45}, {0, 45, 0}, {0, 0, 8.4}, {0, 0, 8.6}}};
    for (const auto& c : cases) {
        trigger->setTransform(dmat4(dquat::fromEulerZXY(c.trigger), origin));
        sensor->setTransform(dmat4(dquat::fromEulerZXY(c.sensor), origin + c.hits));
        EXPECT_EQ(frame(), "+ts ") << c.hits.x;
        sensor->setWorldPosition(origin + c.misses);
        EXPECT_EQ(frame(), "-ts ") << c.misses.x;
    }
}

TEST_F(TriggerTest, DisabledAndRemovedSensorsLeave) {
    NodeTrigger* const trigger = addTrigger("t", {10, 10, 10});
    Node* const group = addNode("group");
    auto made = std::make_unique<Node>();
    made->setName("s");
    made->setSensor(true);
    Node* sensor = group->addChild(std::move(made));
    EXPECT_EQ(frame(), "+ts ");
    for (Node* const node : {sensor, group, static_cast<Node*>(trigger)}) {
        node->setEnabled(false);
        EXPECT_EQ(frame(), "-ts ");
        node->setEnabled(true);
        EXPECT_EQ(frame(), "+ts ");
    }
    log.clear();
    sensor->setSensor(false);
    EXPECT_EQ(log, "-ts ") << "at once, and once";
    EXPECT_EQ(frame(), "");
    sensor->setSensor(true);
    EXPECT_EQ(frame(), "+ts ");
    log.clear();
    world().removeNode(group);
    EXPECT_EQ(log, "-ts ");
    trigger->setPosition({1, 0, 0});
    EXPECT_EQ(frame(), "") << "what is gone is not looked at again";
}

TEST_F(TriggerTest, CallbacksMayRemoveAnything) {
    for (const bool on_enter : {true, false}) {
        for (const char* victim : {"1", "2", "a", "b"}) {
            Node* const first = addSensor("1", {});
            Node* const second = addSensor("2", {});
            NodeTrigger* const a = addTrigger("a", {10, 10, 10});
            addTrigger("b", {10, 10, 10});
            (on_enter ? a->enter : a->leave).append([&](Node*) { world().removeNode(world().getNodeByName(victim)); });
            a->leave.append([&](Node*) { log += "! "; });
            frame();
            if (first == world().getNodeByName("1")) first->setPosition({50, 0, 0});
            if (second == world().getNodeByName("2")) second->setPosition({50, 0, 0});
            frame();
            EXPECT_EQ(world().getNodeByName(victim), nullptr) << victim;
            for (const char* name : {"1", "2", "a", "b"}) world().removeNode(world().getNodeByName(name));
        }
    }
}
