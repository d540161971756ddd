// Actions, their groups and managers; timers and clocks.
#include <gtest/gtest.h>

#include <cmath>

#include "engine/action/Action.h"
#include "engine/action/TimerManager.h"
#include "engine/core/Clock.h"
#include "engine/core/Engine.h"
#include "engine/memory/Allocator.h"

namespace {

/// Appends its life's events to a list.
class Recorder : public ActionInterval {
public:
    Recorder(jString label, float duration, jVector<jString>& events) : m_label(std::move(label)), m_events(events) {
        m_duration = duration;
    }
    ~Recorder() override { m_events.append(m_label + " gone"); }
    bool start() override {
        m_events.append(m_label + " start");
        return ActionInterval::start();
    }
    bool step(float dt) override {
        const bool moved = ActionInterval::step(dt);
        m_events.append(m_label + " " + std::to_string(std::lround(getElapsed() * 10)));
        if (on_step) on_step();
        return moved;
    }
    void release() override { m_events.append(m_label + " release"); }

    Function<void()> on_step;

private:
    jString m_label;
    jVector<jString>& m_events;
};

Recorder* record(const char* label, float duration, jVector<jString>& events) {
    return jNew<Recorder>({"test", "record"}, jString(label), duration, events);
}

jString joined(const jVector<jString>& events) {
    jString all;
    for (const jString& e : events) all += (all.empty() ? "" : ", ") + e;
    return all;
}

class Actions : public testing::Test {
protected:
    ~Actions() override { EXPECT_TRUE(memGetInfos().empty()) << "an action was left"; }
    jVector<jString> events;
};

}  // namespace

TEST_F(Actions, LiveFromStartToRelease) {
    ActionManager manager;
    Recorder* const action = record("a", 0.2f, events);
    action->done.append([&](Action*) {
        events.append("a done");
        manager.removeAllActions();
    });
    manager.addAction(action);
    manager.addAction(record("b", 9.0f, events));
    for (int i = 0; i < 2; ++i) manager.update(0.1f);
    EXPECT_EQ(joined(events), "a start, b start, a 1, b 1, a 2, a done, a release, a gone, b release, b gone");
    manager.addAction(record("what is left goes with the manager", 1.0f, events));
}

TEST_F(Actions, SequenceOfGroupsWaitsForTheLongestOfEach) {
    ActionManager manager;
    ActionSequence* const sequence = ActionSequence::Create();
    for (const char* label : {"a", "b"}) {
        ActionMulti* const group = ActionMulti::Create();
        group->addAction(record("-", 0.1f, events));
        group->addAction(record(label, 0.2f, events));
        group->addAction(nullptr);
        sequence->addAction(group);
    }
    EXPECT_FLOAT_EQ(sequence->getDuration(), 0.4f);
    manager.addAction(sequence);
    manager.update(0.1f);
    EXPECT_EQ(joined(events), "- start, a start, - 1, - release, - gone, a 1");
    events.clear();
    manager.update(0.18f);
    EXPECT_EQ(joined(events), "a 3, a release, a gone, - start, b start, - 1, b 1");
}

TEST_F(Actions, MayBeAddedAndRemovedFromWithinAStep) {
    ActionManager manager;
    Recorder* const first = record("a", 9.0f, events);
    Recorder* const second = record("b", 9.0f, events);
    first->on_step = [&] {
        manager.removeAllActions();
        manager.addAction(record("c", 9.0f, events));
    };
    manager.addAction(first);
    manager.addAction(second);
    second->setPause(true);
    manager.update(0.1f);
    EXPECT_EQ(joined(events), "a start, b start, a 1, c start, a release, a gone, b release, b gone");
    EXPECT_EQ(manager.getNumActions(), 1);
    events.clear();
    manager.update(0.1f);
    EXPECT_EQ(joined(events), "c 1");
}

TEST(Timers, FireInOrderAndMayRemoveEachOther) {
    TimerManager timers;
    jString fired;
    int second = 0;
    timers.addTimer(0.2f, false, [&] {
        fired += 'a';
        timers.removeTimer(second);
    });
    second = timers.addTimer(0.2f, false, [&] { fired += 'b'; });
    timers.addTimer(0.1f, true, [&] { fired += 'r'; });
    for (int i = 0; i < 4; ++i) timers.update(0.1f);
    EXPECT_EQ(fired, "rarrr");
    EXPECT_EQ(timers.getNumTimers(), 1);
}

TEST(EngineClock, ClampsLongAndRefusesSenselessFrames) {
    Engine engine;
    const struct {
        double dt;
        float frame_time;
        int clamps;
    } cases[] = {{0.016, 0.016f, 0}, {60.0, 0.1f, 1},     {-1.0, 0.0f, 1},
                 {NAN, 0.0f, 1},     {INFINITY, 0.1f, 2}, {0.0, 0.0f, 2}};
    int frame = 0;
    for (const auto& c : cases) {
        engine.beginFrame(c.dt);
        EXPECT_FLOAT_EQ(engine.getFrameTime(), c.frame_time) << c.dt;
        EXPECT_EQ(engine.getClampCount(), c.clamps) << c.dt;
        EXPECT_EQ(engine.getFrame(), ++frame);
        engine.endFrame();
    }
    EXPECT_NEAR(engine.getTime(), 0.216, 1e-12);
}
