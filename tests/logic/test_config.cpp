// The configuration file, the aircraft file and the string table: defaults, replacement, bad values.
#include <sstream>

#include "engine/scene/ObjectPrefab.h"
#include "src/aircraft/AppData_AirCraft.h"
#include "src/logic/AppData.h"
#include "src/logic/StringTable.h"
#include "support/TestScene.h"

namespace {

constexpr const char* FILE_NAME = "config/Logic_Test_Fly.cfg";
constexpr const char* KEYS =
    "flightSimulation_ip local_ip first_ship_path plane_path third_ship_path recv_from_flightSimulation_port "
    "local_port send_to_flightSimulation_port data_port fly_mode fps_limit head_offset show_fps real_time_fps vsync "
    "show_recv_data_print show_send_data_print ignore_order ships_auto_move use_photoelectric_data target_type";

/// A file with the keys and these values in their order, separated by blanks; the last value is for all further keys.
std::string fileWith(const std::string& values) {
    std::istringstream keys(KEYS), rest(values);
    std::string text = "{ \"other\": 1", key, value;
    while (keys >> key) {
        rest >> value;
        text += ", \"" + key + "\": " + value;
    }
    return text + " }";
}

/// Every accessor's answer in the keys' order.
std::string answers(const AppData& d) {
    std::ostringstream all;
    for (const jString& text :
         {d.getFlightSimulationIp(), d.getLocalIp(), d.getFirstShipPath(), d.getPlanePath(), d.getThirdShipPath()}) {
        all << text << ' ';
    }
    all << d.getRecvFromFlightSimulationPort() << ' ' << d.getLocalPort() << ' ' << d.getSendToFlightSimulationPort()
        << ' ' << d.getDataPort() << ' ' << d.getFlyMode() << ' ' << d.getFpsLimit() << ' ' << d.getHeadOffset() << ' '
        << d.isShowFps() << d.isRealTimeFps() << d.isVsync() << d.isShowRecvDataPrint() << d.isShowSendDataPrint()
        << d.isIgnoreOrder() << d.isShipsAutoMove() << d.isUsePhotoelectricData() << ' ' << d.getTargetPath(1001);
    return all.str();
}

constexpr const char* DEFAULTS =
    "127.0.0.1 127.0.0.1 data/assets/Targets/MODELS/JT_CN_LNJ/JT_CN_LNJ.prefab "
    "data/assets/Targets/MODELS/FJ_CN_J15/FJ_CN_J15.prefab data/HARBOR_PROJECT/prefabs/LNJ_2023/LNJ_2023.prefab "
    "10004 10004 10005 6000 0 6000 0 00000000 ";

TEST_F(SceneTest, ConfigurationValuesAndTheirDefaults) {
    AppData& data = AppData::get();
    const auto load = [&](const std::string& text) {
        write(FILE_NAME, text);
        return data.load();
    };
    ASSERT_TRUE(load("{}"));
    EXPECT_EQ(answers(data), DEFAULTS);
    for (const char* bad : {"0", "\"\"", "false", "null", "[1]", "{\"a\":1}"}) {
        ASSERT_TRUE(load(fileWith(bad))) << bad;
        EXPECT_EQ(answers(data), DEFAULTS) << bad;
    }
    const std::string values = R"("a" "b" "c" "d" "e" 1 2 3 4 2 -5.5 1.5 )";
    for (std::size_t on = 0; on < 8; ++on) {
        std::string flags = "00000000", text = values;
        flags[on] = '1';
        for (const char flag : flags) text += flag == '1' ? "true " : "false ";
        ASSERT_TRUE(load(fileWith(text + R"({"_1001":"f","_1002":"g"})")));
        EXPECT_EQ(answers(data), "a b c d e 1 2 3 4 2 -5.5 1.5 " + flags + " f");
    }
    // A file replaces all values of the one before, and one that cannot be read leaves the defaults.
    EXPECT_FALSE(load(R"({ "data_port": 8, )"));
    EXPECT_EQ(answers(data), DEFAULTS);
    std::filesystem::remove(root() / FILE_NAME);
    clearLines();
    EXPECT_FALSE(data.load());
    EXPECT_EQ(countLines("Open config file failed:config/Logic_Test_Fly.cfg, use default config"), 1);
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
    EXPECT_EQ(info.path + info.type, "pt");
    std::ostringstream parts;
    for (const AirCraftPartInfo& part : info.parts) {
        parts << part.id << part.show_name << part.node_name << ' ' << part.digit << ' ' << part.type;
        for (const vec3& v : {part.open_rot, part.close_rot, part.axis}) parts << ' ' << v.x << v.y << v.z;
        parts << '\n';
    }
    EXPECT_EQ(parts.str(), "5甲n 1 2 123 000 010\n0 0.5 0 123 456 010\n0 0 -1 789 456 010\n");
    EXPECT_EQ(countLines("control node \"odd\""), 1);
    EXPECT_EQ(data.getSrcPosOffset(), dvec3(1, 2, 3));
    EXPECT_EQ(read(R"({ "ctrl_nodes": { "x": {} } })").parts[0].axis.y, 0.0f) << "the next reading starts anew";
}

/// One test, because the table is read once a process.
TEST_F(SceneTest, StringTableRetriesUntilThereIsAFileAndSharesItsMisses) {
    for (int i = 1; i <= 2; ++i) {
        EXPECT_EQ(tr("first"), "first");
        EXPECT_EQ(countLines("tr:string file not found:config/string.txt"), i);
    }
    write("config/string.txt", R"({ "mode.zh": "数据飞行", "number": 4 })");
    EXPECT_EQ(tr("mode.zh"), "数据飞行");
    EXPECT_EQ(tr("number"), "");
    const jString& missed = tr("a");
    EXPECT_EQ(tr("b"), "b");
    EXPECT_EQ(missed, "b");
    EXPECT_EQ(countLines("tr:key[b] not found in string file"), 1);
}

TEST_F(SceneTest, UnknownConfigurationKeysAreToldWhereverTheyCameFrom) {
    write(FILE_NAME, R"({ "local_ip": "127.0.0.1",
        "flightSimulationIp": "1", "target_type": { "_7": "x" }, "KeyControl": { "any": "a" },
        "slaves": { "left": { "shaer": [1, 0] } } })");
    mjl::setOverride(FILE_NAME, "vsink", "true");
    AppData::get().load();
    mjl::clearOverrides();
    for (const char* line : {":2: unknown key \"flightSimulationIp\" is ignored; the nearest known one is "
                             "\"flightSimulation_ip\"",
                             ":3: unknown key \"shaer\" is ignored; the nearest known one is \"shear\"",
                             ", overridden: unknown key \"vsink\" is ignored; the nearest known one is \"vsync\""}) {
        EXPECT_EQ(countLines(FILE_NAME + std::string(line)), 1) << line;
    }
    EXPECT_EQ(countLines("unknown key"), 3);
}

}  // namespace
