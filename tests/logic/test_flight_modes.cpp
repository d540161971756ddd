// Flight modes: switching, the push by hand, playing a recorded flight; and the demonstration's own recording.
#include <array>
#include <cmath>
#include <filesystem>

#include "LogicWorld.h"
#include "support/Paths.h"

namespace {

class FlightModesTest : public LogicTest {
protected:
    static constexpr const char* PATH = "data/www.dat";

    /// A logic with a jet without a body, so that nothing but the flight moves it, and this recording.
    void begin(const std::string& path) {
        TestJet spec;
        spec.body.clear();
        writeJet(spec);
        if (!path.empty()) write(PATH, path);
        authored = addStart()->getWorldTransform();
        start();
    }

    void choose(FLY_MODE mode) {
        printedBy([&] { logic().set_fly_mode(mode); });
    }
    std::string play(int frames, double dt = 1.0 / 60.0) {
        return printedBy([&] {
            for (int i = 0; i < frames; ++i) frame(dt);
        });
    }
    /// The jet's position in the start node's frame.
    dvec3 place() {
        return inverse(world().getNodeByName("start_deck")->getWorldTransform()) *
               jet().getWorldTransform().getTranslation();
    }

    /// Frames at (time, x) along the path's X axis; heading along the start node's +Y, gear as given.
    static std::string path(std::initializer_list<std::array<double, 3>> frames) {
        std::string text;
        for (const auto& [time, x, gear] : frames) {
            text += std::to_string(time) + " " + std::to_string(x) + " 0.0 0.0 " + std::to_string(gear) +
                    " 0.0 0.0 22.75 0.0 0.0\n";
        }
        return text;
    }
    /// What the path's X axis is in the start node's frame.
    static dvec3 along(double metres) {
        return dvec3(std::cos(67.25 * M_PI / 180), std::sin(67.25 * M_PI / 180), 0.0) * metres;
    }

    dmat4 authored;  ///< of the start node
};

TEST_F(FlightModesTest, TheStartIsLoweredAndTheElapsedTimeAddsUpEachFrame) {
    begin(path({{0.0, 5.0, 1.0}, {23.0, 5.0, 1.0}, {123.0, 1005.0, 1.0}}));
    const dvec3 lowered = world().getNodeByName("start_deck")->getWorldPosition() - authored.getTranslation();
    const dvec3 up = engine().getEllipsoid().getUp(authored.getTranslation());
    EXPECT_LT(length(lowered + up * 0.2), 1e-6);

    choose(AUTO_FLY);
    EXPECT_TRUE(logic().isPlaying());
    EXPECT_EQ(logic().getPlayTime(), 23.0f);
    EXPECT_LT(length(place()), 1e-6);
    EXPECT_LT(length(jet().getWorldTransform().getY() - authored.getY()), 1e-6) << "along the start node";
    double elapsed = 0.0, wanted = 23.0;
    for (const double dt : {0.05, 0.02, 0.1, 0.04, 0.0, 0.01}) {
        play(1, dt);
        elapsed += dt;
        wanted += 3.0 * elapsed;
        EXPECT_NEAR(logic().getPlayTime(), wanted, 1e-4);
        EXPECT_LT(length(place() - along(10.0 * (wanted - 23.0))), 2e-3);
    }
}

TEST_F(FlightModesTest, OnlyDataFlightAndResetStopThePlayback) {
    begin(path({{0.0, 0.0, 1.0}, {1000.0, 1000.0, 1.0}}));
    for (const auto& [mode, playing] : {std::pair(MANUAL_FLY, false), {AUTO_FLY, true}, {DATA_FLY, false}}) {
        printedBy([&] { logic().change_flymode(); });
        EXPECT_EQ(logic().getFlyMode(), mode);
        EXPECT_EQ(logic().isPlaying(), playing);
        play(30);
    }
    choose(AUTO_FLY);
    play(30);
    const double flown = length(place());
    EXPECT_GT(flown, 1.0);
    choose(MANUAL_FLY);
    play(30);
    EXPECT_GT(length(place()), flown) << "manual flight lets it play on";
    printedBy([&] { logic().local_data_stop_fly(); });
    EXPECT_LT(length(place()), 1e-6) << "at the first frame";
    choose(AUTO_FLY);
    printedBy([&] { logic().reset(); });
    EXPECT_FALSE(logic().isPlaying());
    choose(static_cast<FLY_MODE>(7));
    printedBy([&] { logic().change_flymode(); });
    EXPECT_EQ(logic().getFlyMode(), AUTO_FLY) << "(7 + 1) % 3";
}

TEST_F(FlightModesTest, APlayedFrameMovesTheGearsFlagAtItsStep) {
    begin(path({{0.0, 0.0, 1.9}, {40.0, 1.0, 0.9}, {60.0, 2.0, -1.0}, {100.0, 2.0, 0.0}}));
    choose(AUTO_FLY);
    const struct {
        float until;
        bool open;
    } steps[] = {{37.0f, true}, {50.0f, false}, {70.0f, true}};
    for (const auto& step : steps) {
        while (logic().getPlayTime() < step.until) play(1);
        EXPECT_EQ(jet().isUndercarriageOpen(), step.open) << step.until;
    }
}

TEST_F(FlightModesTest, PlayingBeginsAgainAfterTheLastFrame) {
    begin(path({{0.0, 0.0, 1.0}, {30.0, 30.0, 1.0}}));
    choose(AUTO_FLY);
    int starts = 0;
    double farthest = 0.0;
    for (int i = 0; i < 120; ++i) {
        if (play(1).find("------Logic_Test_Fly::local_data_start_fly\n") != std::string::npos) {
            ++starts;
            EXPECT_EQ(logic().getPlayTime(), 23.0f);
            EXPECT_LT(length(place()), 1e-6);
        }
        farthest = std::max(farthest, length(place()));
    }
    // 23 + 3 n (n + 1) / 120 reaches 30 at the 17th frame after a start.
    EXPECT_EQ(starts, 7);
    EXPECT_GT(farthest, 28.0);
}

TEST_F(FlightModesTest, ShortAndMissingRecordingsRestartEachFrame) {
    for (const std::string& recording :
         {path({{0.0, 3.0, 1.0}, {22.0, 30.0, 1.0}}), std::string("// none"), std::string()}) {
        SCOPED_TRACE(recording);
        std::filesystem::remove(root() / PATH);
        begin(recording);
        choose(AUTO_FLY);
        for (int i = 0; i < 3; ++i) {
            EXPECT_NE(play(1).find("local_data_start_fly"), std::string::npos);
            EXPECT_LT(length(place()), 1e-6);
            EXPECT_TRUE(logic().isPlaying());
        }
        end();
        world().removeNode(world().getNodeByName("start_deck"));
    }
}

TEST_F(FlightModesTest, ThePushGoesAlongTheAircraftInEveryModeUntilItIsPutBack) {
    begin("");
    for (const FLY_MODE mode : {MANUAL_FLY, DATA_FLY, static_cast<FLY_MODE>(5)}) {
        choose(mode);
        const dmat4 before = jet().getWorldTransform();
        logic().on_move_foward({}, nullptr);
        play(5, 0.1);
        const dvec3 moved = jet().getWorldTransform().getTranslation() - before.getTranslation();
        EXPECT_LT(length(moved - before.getY() * 15.0), 1e-5);
        logic().on_reset_postion({}, nullptr);
        EXPECT_LT(length(place()), 1e-6);
        play(5, 0.1);
        EXPECT_LT(length(place()), 1e-6) << "the push is off";
    }
}

/// The demonstration's recording, as the build wrote it.
class DemoFlightTest : public FlightModesTest {
protected:
    DemoFlightTest() {
        std::filesystem::create_directories(root() / "data");
        std::filesystem::copy_file(std::filesystem::path(DECKVIEW_ROOT) / PATH, root() / PATH);
        begin("");
    }
};

TEST_F(DemoFlightTest, LeavesTheDeckAndEndsOnIt) {
    choose(AUTO_FLY);
    dvec3 last = place();
    EXPECT_LT(length(last), 1e-6);
    double seconds = 0.0, height = 0.0;
    printedBy([&] {
        for (; seconds < 300.0; seconds += 1.0 / 60.0) {
            frame();
            if (logic().getPlayTime() == 23.0f) break;
            last = place();
            height = std::max(height, last.z);
        }
    });
    EXPECT_NEAR(seconds, 240.0, 20.0);
    EXPECT_GT(height, 150.0);
    EXPECT_LT(std::abs(last.z), 0.01);
    EXPECT_LT(length(last), 150.0);
}

}  // namespace
