// Animation tracks: keys, targets that come and go, and files that cannot be read.
#include <cmath>

#include "engine/scene/SceneNodes.h"
#include "engine/track/Track.h"
#include "support/TestScene.h"

namespace {

class TrackTest : public SceneTest {
protected:
    bool load(const std::string& channels) {
        write("data/a.anim", "{ \"channels\": [ " + channels + " ] }");
        return track.load("data/a.anim", &world());
    }

    Track track;
};

constexpr const char* HEIGHT =
    R"({ "node": "n", "parameter": "position_z", "keys": [ [0.2, 10], [0.6, 30], [0.6, 50], [1, 40] ] })";

}  // namespace

TEST_F(TrackTest, ValuesAreLinearBetweenKeysAndHoldOutside) {
    Node* const node = addNode("n");
    ASSERT_TRUE(load(HEIGHT));
    const std::pair<float, double> cases[] = {{0.0f, 10}, {0.2f, 10}, {0.4f, 20}, {0.59999f, 30}, {0.6f, 50},
                                              {0.8f, 45}, {1.0f, 40}, {9.0f, 40}, {-1.0f, 10},    {INFINITY, 40}};
    for (const auto& [position, value] : cases) {
        track.set(position);
        EXPECT_NEAR(node->getPosition().z, value, 1e-2) << position;
    }
    track.set(0.5f);
    track.set(NAN);
    EXPECT_EQ(track.get(), 0.5f);
    EXPECT_NEAR(node->getPosition().z, 25.0, 1e-4);
}

TEST_F(TrackTest, AnUnchangedValueIsNotWrittenAgain) {
    Node* const node = addNode("n");
    ASSERT_TRUE(load(R"({ "node": "n", "parameter": "enabled", "keys": [ [0, 1], [1, 1] ] },
                        { "environment": true, "parameter": "wind_east", "keys": [ [0, 7] ] })"));
    track.set(0.0f);
    EXPECT_EQ(world().getEnvironment().wind.x, 7.0f);
    node->setEnabled(false);
    world().getEnvironment().wind.x = 1.0f;
    track.set(0.5f);
    EXPECT_FALSE(node->isEnabled()) << "somebody else's setting stays until the track has something new to say";
    EXPECT_EQ(world().getEnvironment().wind.x, 1.0f);
}

TEST_F(TrackTest, NodesThatComeLaterAreSet) {
    ASSERT_TRUE(load(std::string(HEIGHT) + R"(, { "tag": "lamp", "parameter": "brightness", "keys": [ [0, 0.5] ] })"));
    track.set(1.0f);
    Node* node = addNode("n");
    const auto addLamp = [&] {
        NodeLight* const lamp = add(std::make_unique<NodeLight>(LightSettings()));
        lamp->addTag("lamp");
        return lamp;
    };
    NodeLight* const first = addLamp();
    track.set(1.0f);
    EXPECT_EQ(node->getPosition().z, 40.0);
    EXPECT_EQ(first->getIntensity(), 50.0f);
    // A successor of the same name, and one lamp more.
    world().removeNode(node);
    node = addNode("n");
    NodeLight* const second = addLamp();
    track.set(1.0f);
    EXPECT_EQ(node->getPosition().z, 40.0);
    EXPECT_EQ(second->getIntensity(), 50.0f);
}

TEST_F(TrackTest, TheHighestOfThoseThatRaiseAValueHoldsWhateverTheirOrder) {
    const std::string channel = R"("environment": true, "parameter": "cloudiness", "raise": true, "keys": [ [0, 0], )";
    write("data/rain.anim", "{ \"channels\": [ { " + channel + "[1, 1] ] } ] }");
    write("data/snow.anim", "{ \"channels\": [ { " + channel + "[1, 0.8] ] } ] }");
    Track rain, snow;
    ASSERT_TRUE(rain.load("data/rain.anim", &world()) && snow.load("data/snow.anim", &world()));
    const float& cloudiness = world().getEnvironment().cloudiness;
    const float own = cloudiness;
    const struct {
        Track& track;
        float position, result;
    } steps[] = {{rain, 0.0f, own},  {rain, 0.9f, 0.9f}, {snow, 0.0f, 0.9f}, {snow, 1.0f, 0.9f},
                 {rain, 0.0f, 0.8f}, {rain, 0.1f, 0.8f}, {snow, 0.1f, own},  {rain, 1.0f, 1.0f}};
    for (const auto& step : steps) {
        step.track.set(step.position);
        EXPECT_FLOAT_EQ(cloudiness, step.result) << &step - steps;
    }
    ASSERT_TRUE(rain.load("data/rain.anim", &world())) << "a new load starts anew";
    EXPECT_EQ(cloudiness, own);
    snow.set(1.0f);
    snow.release();
    EXPECT_EQ(cloudiness, own);
}

TEST_F(TrackTest, BadChannelsAreLeftOutAndBadFilesRefused) {
    for (const char* bad : {R"({ "parameter": "enabled", "keys": [ [0, 0] ] })",
                            R"({ "node": "n", "parameter": "enabled", "keys": [ [0, "x"] ] })",
                            R"({ "node": "n", "parameter": "enabled", "keys": [ [1e300, 0] ] })",
                            R"({ "node": "n", "parameter": "enabled", "keys": [ ] })", "5",
                            R"({ "environment": true, "parameter": "gravity", "keys": [ [0, 0] ] })"}) {
        clearLines();
        Node* const node = addNode("n");
        ASSERT_TRUE(load(std::string(bad) + ", " + HEIGHT)) << bad;
        EXPECT_EQ(countLines("data/a.anim:1: "), 1) << bad;
        track.set(1.0f);
        EXPECT_EQ(node->getPosition().z, 40.0) << "the good channel works";
        EXPECT_TRUE(node->isEnabled());
        world().removeNode(node);
    }
    write("data/other.anim", R"({ "node": { } })");
    for (const char* path : {"data/other.anim", "data/missing.anim"}) {
        clearLines();
        EXPECT_FALSE(track.load(path, &world())) << path;
        EXPECT_EQ(countLines(path), 1) << path;
    }
    addNode("n");
    ASSERT_TRUE(load(R"({ "node": "n", "parameter": "volume", "keys": [ [0, 0], [1, 1] ] })"));
    for (const float position : {0.0f, 0.5f, 1.0f}) track.set(position);
    EXPECT_EQ(countLines("volume"), 1) << "said once, not every frame";
}
