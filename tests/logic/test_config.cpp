// The configuration file, the aircraft file and the string table: defaults, replacement, bad values.
#include "engine/scene/ObjectPrefab.h"
#include "src/aircraft/AppData_AirCraft.h"
#include "src/logic/AppData.h"
#include "src/logic/StringTable.h"
#include "support/TestScene.h"

namespace {

class ConfigTest : public SceneTest {
protected:
    static constexpr const char* FILE = "config/Logic_Test_Fly.cfg";

    bool load(const std::string& text) {
        write(FILE, text);
        return data.load();
    }

    AppData& data = AppData::get();
};

/// Every accessor's answer in one comparable text.
std::string answers(const AppData& d) {
    const auto flag = [](bool value) { return value ? "1" : "0"; };
    std::string all = d.getFlightSimulationIp() + "|" + d.getLocalIp() + "|" + d.getFirstShipPath() + "|" +
                      d.getPlanePath() + "|" + d.getThirdShipPath() + "|";
    for (const int port : {d.getRecvFromFlightSimulationPort(), d.getLocalPort(), d.getSendToFlightSimulationPort(),
                           d.getDataPort(), d.getFlyMode()}) {
        all += std::to_string(port) + "|";
    }
    all += std::to_string(d.getFpsLimit()) + "|" + std::to_string(d.getHeadOffset()) + "|";
    for (const bool value :
         {d.isShowFps(), d.isRealTimeFps(), d.isVsync(), d.isShowRecvDataPrint(), d.isShowSendDataPrint(),
          d.isIgnoreOrder(), d.isShipsAutoMove(), d.isUsePhotoelectricData()}) {
        all += flag(value);
    }
    return all + "|" + d.getTargetPath(1001);
}

const std::string DEFAULTS =
    "127.0.0.1|127.0.0.1|data/assets/Targets/MODELS/JT_CN_LNJ/JT_CN_LNJ.prefab|"
    "data/assets/Targets/MODELS/FJ_CN_J15/FJ_CN_J15.prefab|data/HARBOR_PROJECT/prefabs/LNJ_2023/LNJ_2023.prefab|"
    "10004|10004|10005|6000|0|6000.000000|0.000000|00000000|";

const char* const KEYS[] = {"flightSimulation_ip",
                            "local_ip",
                            "recv_from_flightSimulation_port",
                            "local_port",
                            "send_to_flightSimulation_port",
                            "data_port",
                            "fps_limit",
                            "show_fps",
                            "real_time_fps",
                            "vsync",
                            "show_recv_data_print",
                            "show_send_data_print",
                            "head_offset",
                            "ignore_order",
                            "ships_auto_move",
                            "first_ship_path",
                            "plane_path",
                            "third_ship_path",
                            "use_photoelectric_data",
                            "fly_mode",
                            "target_type"};

TEST_F(ConfigTest, DefaultsStandInForAbsentEmptyAndMistypedValues) {
    for (const char* value : {"", "0", "0.0", "\"\"", "false", "null", "[]", "{}", "[1]", "{ \"a\": 1 }"}) {
        std::string text = "{";
        for (const char* key : KEYS) {
            if (*value) text += (text.size() > 1 ? ", \"" : "\"") + std::string(key) + "\": " + value;
        }
        ASSERT_TRUE(load(text + "}")) << value;
        EXPECT_EQ(answers(data), DEFAULTS) << value;
    }
}

TEST_F(ConfigTest, ValuesAreReadUnderTheirKeys) {
    ASSERT_TRUE(load(R"({ "flightSimulation_ip": "a", "local_ip": "b", "recv_from_flightSimulation_port": 1,
        "local_port": 2, "send_to_flightSimulation_port": 3, "data_port": 4, "fps_limit": -5.5, "show_fps": true,
        "real_time_fps": true, "vsync": true, "show_recv_data_print": true, "show_send_data_print": true,
        "head_offset": 1.5, "ignore_order": true, "ships_auto_move": true, "first_ship_path": "c", "plane_path": "d",
        "third_ship_path": "e", "use_photoelectric_data": true, "fly_mode": 2,
        "target_type": { "_1001": "f", "_1002": "g" } })"));
    EXPECT_EQ(answers(data), "a|b|c|d|e|1|2|3|4|2|-5.500000|1.500000|11111111|f");
    EXPECT_EQ(data.getTargetPath(7), "");
}

TEST_F(ConfigTest, LoadingReplacesAndFailureLeavesDefaults) {
    ASSERT_TRUE(load(R"({ "local_port": 7 })"));
    ASSERT_TRUE(load(R"({ "data_port": 8 })"));
    EXPECT_EQ(data.getLocalPort(), 10004);
    EXPECT_EQ(data.getDataPort(), 8);
    EXPECT_FALSE(load(R"({ "data_port": 8, )"));
    EXPECT_EQ(answers(data), DEFAULTS);
    std::filesystem::remove(root() / FILE);
    clearLines();
    EXPECT_FALSE(data.load());
    EXPECT_EQ(countLines("Open config file failed:config/Logic_Test_Fly.cfg, use default config"), 1);
}

TEST_F(ConfigTest, ShearGoesIntoTheChannelsView) {
    ASSERT_TRUE(load(R"({ "slaves": { "left": { "shear": [0.5, -1] }, "plain": {}, "bad": { "shear": [1] } } })"));
    int applied = 0;
    ChannelView view;
    view.apply = [&](const ChannelView&) { ++applied; };
    EXPECT_TRUE(data.applyShear("left", view));
    EXPECT_EQ(view.shear[0], 0.5f);
    EXPECT_EQ(view.shear[1], -1.0f);
    EXPECT_FALSE(data.applyShear("right", view));
    EXPECT_EQ(view.shear[0], 0.5f);
    for (const char* channel : {"plain", "bad"}) {
        view.shear[0] = view.shear[1] = 9.0f;
        EXPECT_TRUE(data.applyShear(channel, view));
        EXPECT_EQ(view.shear[0], 0.0f);
        EXPECT_EQ(view.shear[1], 0.0f);
    }
    EXPECT_EQ(applied, 3);
}

class AircraftFileTest : public SceneTest {
protected:
    AirCraftInfo read(const std::string& text) {
        write("a/b.cfg", text);
        data.setConfigPath("a/b.cfg");
        opened = data.open();
        return data.getAircraftInfo();
    }

    AppData_AirCraft& data = AppData_AirCraft::get();
    bool opened = false;
};

TEST_F(AircraftFileTest, EntriesKeepTheirOrderAndTheVectorsOfTheOneBefore) {
    const AirCraftInfo info = read(R"({ "path": "p", "type": "t", "src_pos_offset": [1, 2, 3], "ctrl_nodes": {
        "z": { "id": 5, "show_name": "甲", "node_name": "n", "open_rot": [1, 2, 3], "axis": [0, 1, 0], "type": 65538 },
        "a": { "axis": [1, 0], "digit": 0.5, "close_rot": [4, 5, 6] }, "odd": 3,
        "m": { "open_rot": [7, 8, 9], "type": -1, "digit": 0 } } })");
    ASSERT_TRUE(opened);
    ASSERT_EQ(info.parts.size(), 3);
    const auto is = [](const vec3& v, float x, float y, float z) { return v.x == x && v.y == y && v.z == z; };
    EXPECT_EQ(info.path + info.type + info.parts[0].show_name + info.parts[0].node_name, "pt甲n");
    EXPECT_EQ(info.parts[0].id, 5);
    EXPECT_EQ(info.parts[0].type, 2);
    EXPECT_EQ(info.parts[0].digit, 1.0f);
    EXPECT_TRUE(is(info.parts[0].close_rot, 0, 0, 0));
    EXPECT_TRUE(is(info.parts[1].open_rot, 1, 2, 3));
    EXPECT_TRUE(is(info.parts[1].close_rot, 4, 5, 6));
    EXPECT_TRUE(is(info.parts[1].axis, 0, 1, 0));
    EXPECT_TRUE(is(info.parts[2].open_rot, 7, 8, 9));
    EXPECT_TRUE(is(info.parts[2].axis, 0, 1, 0));
    EXPECT_EQ(info.parts[2].type, -1);
    EXPECT_EQ(info.parts[2].digit, 0.0f);
    EXPECT_EQ(countLines("a/b.cfg:3"), 1);
    EXPECT_EQ(data.getSrcPosOffset(), dvec3(1, 2, 3));
    EXPECT_EQ(data.getSrcRotDeflection(), dvec3());
    EXPECT_TRUE(is(read(R"({ "ctrl_nodes": { "x": {} } })").parts[0].axis, 0, 0, 0)) << "the next reading starts anew";
}

TEST_F(AircraftFileTest, BadFilesGiveAnEmptyAircraftAndOneWarning) {
    for (const char* text : {"", "{", "[]", R"({ "path": "p", )"}) {
        clearLines();
        const AirCraftInfo info = read(text);
        EXPECT_FALSE(opened) << text;
        EXPECT_TRUE(info.path.empty() && info.type.empty() && info.parts.empty()) << text;
        EXPECT_EQ(countLines("Open config file failed:a/b.cfg, use default config"), 1) << text;
    }
    clearLines();
    EXPECT_TRUE(read(R"({ "ctrl_nodes": [ {} ] })").parts.empty());
    EXPECT_EQ(countLines("a/b.cfg:1"), 1);
}

/// One test, because the table is read once a process.
TEST_F(SceneTest, StringTableRetriesUntilThereIsAFileAndSharesItsMisses) {
    for (int i = 1; i <= 2; ++i) {
        const jString& kept = tr("first");
        EXPECT_EQ(tr(jString("second")), "second");
        EXPECT_EQ(kept, "first");
        EXPECT_EQ(countLines("tr:string file not found:config/string.txt"), 2 * i);
    }
    write("config/string.txt", R"({ "mode.zh": "数据飞行", "number": 4 })");
    EXPECT_EQ(tr("mode.zh"), "数据飞行");
    EXPECT_EQ(tr("number"), "");
    const jString& missed = tr("a");
    EXPECT_EQ(missed, "a");
    EXPECT_EQ(tr("b"), "b");
    EXPECT_EQ(missed, "b");
    EXPECT_EQ(countLines("tr:key[b] not found in string file"), 1);
}

}  // namespace
