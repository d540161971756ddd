// Flight path files: what is read of them, what is said about bad ones, the lookup, the turn to a start pose.
#include <cmath>
#include <fstream>
#include <limits>

#include "LogicWorld.h"
#include "src/kit/PlaneFlyKit.h"

namespace {

class FlightPathTest : public SceneTest {
protected:
    /// Loads a file with this content; gives what was printed.
    std::string load(const std::string& text) {
        write("data/path.dat", text);
        clearLines();
        return printedBy([&] { result = kit.init("data/path.dat"); });
    }

    /// Frames with these times, i-th at (10 i, 0, 0) and with heading 100 i.
    void loadTimes(std::initializer_list<double> times) {
        std::string text;
        int i = 0;
        for (const double time : times) {
            text += std::to_string(time) + " " + std::to_string(10 * i) + ".0 0.0 0.0 1.0 0.0 0.0 " +
                    std::to_string(100 * i) + ".0 0.0 0.0\n";
            ++i;
        }
        load(text);
        ASSERT_EQ(kit.getNumFrames(), i);
    }

    PlaneFlyKit kit;
    bool result = false;
};

const std::string GOOD = "1.0 .5 -2. 3e1\t1E0 -4.5e+0 5.0 6.0 7.0\r8.0 // ten\n";
const std::string PARSE = "EntityData file parse error, file: data/path.dat line: ";
const std::string LEFT = "mjl file parse error, file: data/path.dat line: ";
const std::string SHORT = "PlaneFlyKit::frame:";

TEST_F(FlightPathTest, ErrorsAreLoggedWithTheirLineAndTheFramesBeforeAreKept) {
    const std::string noise("\x01\xff\0\x80 1.0 /", 9);
    const struct {
        std::string text;
        int frames;
        std::vector<std::string> lines;
        bool result = false;
    } cases[] = {
        {"// only\n/* com\nments */ // here", 0, {}},
        {"/**/" + GOOD + "/* 1.0\n*/\n" + GOOD, 2, {}},
        {GOOD + "\n/* open\n\n", 1, {"Invalid annotation.", "data/path.dat line 3: a comment does not end"}, true},
        {GOOD + "/*/", 1, {"Invalid annotation.", "data/path.dat line 2: a comment does not end"}, true},
        {GOOD + "1.0 2.0 3.0", 1, {SHORT + "gra_groundPivot()", "data/path.dat line 2: a frame is not complete"}},
        {GOOD + "1.0 1.0 1.0 1.0\n1.0 1.0\n\n5 1.0 1.0 1.0",
         1,
         {SHORT + "gra_roll()", "data/path.dat line 5: a frame is not complete"}},
        {GOOD + "\n1.0 1.0 1.0 1.0 1.0 1.0 1.0 1.0 0x1F 1.0",
         1,
         {SHORT + "gra_wing1()", "data/path.dat line 3: a frame is not complete"}},
        {"1.0 1.0 1.0 1.0 1.0 1.0 1.0 1.0 1.0",
         0,
         {SHORT + "gra_wing2()", "data/path.dat line 1: a frame is not complete"}},
        {GOOD + "-0xaF " + GOOD + "\n", 1, {LEFT + "2"}},
        {"\n\n" + noise, 0, {PARSE + "3"}},
        {GOOD + "1.0 / 1.0", 0, {PARSE + "2"}},
        {GOOD + "0.0 1e999 -1e999 1e-999 1.0 1.0 1.0 1.0 1.0 1.0",
         2,
         {"data/path.dat line 2: a value is beyond what a float holds"}},
        {std::string(1 << 20, ' ') + GOOD + "/*" + std::string(1 << 20, 'x') + "*/ 1" + std::string(1 << 20, '0'),
         1,
         {LEFT + "2"}}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text.substr(0, 90));
        const std::string printed = load(c.text);
        EXPECT_EQ(kit.getNumFrames(), c.frames);
        EXPECT_EQ(lines(), c.lines);
        EXPECT_EQ(result, c.result);
        const bool to_end = c.lines.empty() || c.result || c.frames == 2;
        EXPECT_EQ(printed, to_end ? std::string(1, c.result ? '\1' : '\0') : "");
        EXPECT_EQ(kit.getFileFrames().size(), to_end ? c.frames : 0);
    }
    clearLines();
    EXPECT_TRUE(kit.init("data/none.dat"));
    EXPECT_TRUE(kit.init("data"));
    EXPECT_EQ(kit.frame(0.0f), nullptr) << "the earlier file's frames are gone";
    EXPECT_TRUE(lines().empty());
}

TEST_F(FlightPathTest, ValuesAreReadInTheirOrder) {
    load(GOOD);
    const FlyFrame& frame = *kit.getFirstFrame();
    const float values[] = {frame.time,    frame.undercarriage, frame.pitch, frame.roll,
                            frame.heading, frame.wing1,         frame.wing2};
    const float wanted[] = {1.0f, 1.0f, -4.5f, 5.0f, 6.0f, 7.0f, 8.0f};
    for (int i = 0; i < 7; ++i) EXPECT_EQ(values[i], wanted[i]) << i;
    EXPECT_EQ(frame.pivot, dvec3(0.5, -2.0, 30.0));
}

TEST_F(FlightPathTest, PlacesGoSmoothlyAndAttitudesInSteps) {
    loadTimes({10.0, 20.0, 40.0});
    const struct {
        float t;
        double x;
        float heading;
    } cases[] = {{-5.0f, 0.0, 0.0f},    {12.5f, 2.5, 0.0f},    {20.0f, 10.0, 0.0f},
                 {25.0f, 12.5, 100.0f}, {40.0f, 20.0, 100.0f}, {19.0f, 9.0, 0.0f}};
    for (const auto& c : cases) {
        const FlyFrame* const found = kit.frame(c.t);
        ASSERT_NE(found, nullptr) << c.t;
        EXPECT_NEAR(found->pivot.x, c.x, 1e-6) << c.t;
        EXPECT_EQ(found->heading, c.heading) << c.t;
    }
    for (const float t : {40.001f, std::numeric_limits<float>::infinity(), std::numeric_limits<float>::quiet_NaN()}) {
        EXPECT_EQ(kit.frame(t), nullptr) << t;
    }
}

TEST_F(FlightPathTest, FallingTimesAreSearchedFromTheFirstFrame) {
    loadTimes({50.0, 10.0, 60.0, 20.0, 5.0, 80.0});
    EXPECT_NEAR(kit.frame(55.0f)->pivot.x, 19.0, 1e-6) << "between the second frame, which is earlier, and the third";
    EXPECT_EQ(kit.frame(8.0f)->pivot.x, 0.0) << "the first frame is late enough";
    EXPECT_NEAR(kit.frame(70.0f)->pivot.x, 40.0 + 10.0 * 65.0 / 75.0, 1e-5);
}

TEST_F(FlightPathTest, TheStartPoseTurnsThePathAndMovesItsFirstFrameToTheOrigin) {
    std::string text;
    for (int i = 0; i < 4; ++i) {
        text += std::to_string(i) + ".0";
        for (int k = 0; k < 9; ++k) text += " " + std::to_string(7 * i * i - 20 + k) + ".0";
        text += "\n";
    }
    load(text);
    const dvec3 place(1.0, 2.0, 3.0), angles(67.25, 12.0, -30.0);
    kit.setStartPose(place, angles);

    // The same turn, written out: about Y by the roll, then X by the pitch, then Z by the heading.
    const auto turned = [&](const dvec3& p) {
        const double h = angles.x * M_PI / 180, a = angles.y * M_PI / 180, r = angles.z * M_PI / 180;
        const dvec3 y(p.x * std::cos(r) + p.z * std::sin(r), p.y, p.z * std::cos(r) - p.x * std::sin(r));
        const dvec3 x(y.x, y.y * std::cos(a) - y.z * std::sin(a), y.y * std::sin(a) + y.z * std::cos(a));
        return dvec3(x.x * std::cos(h) - x.y * std::sin(h), x.x * std::sin(h) + x.y * std::cos(h), x.z);
    };
    const jVector<FlyFrame>& read = kit.getFileFrames();
    ASSERT_EQ(read.size(), 4);
    for (int i = 0; i < 4; ++i) {
        // At a frame's own time the place is its own and the attitude is the one before's.
        const FlyFrame& played = *kit.frame(static_cast<float>(i));
        const FlyFrame& attitude = read[std::max(0, i - 1)];
        EXPECT_LT(length(played.pivot - (turned(read[i].pivot) - turned(read[0].pivot))), 1e-9) << i;
        EXPECT_FLOAT_EQ(played.heading, attitude.heading + 67.25f);
        EXPECT_FLOAT_EQ(played.pitch, attitude.pitch + 12.0f);
        EXPECT_FLOAT_EQ(played.roll, attitude.roll - 30.0f);
        EXPECT_EQ(played.wing2, attitude.wing2);
    }
}

}  // namespace
