// Reads the plug-in's configuration and returns its values; loaded once when the logic is initialised.
#include "src/logic/AppData.h"

#include <engine/text/Log.h>

#include <algorithm>
#include <cstdlib>
#include <string_view>

namespace {

/// Keys of the file, then keys of each channel in "slaves".
constexpr const char* KEYS[] = {"flightSimulation_ip",
                                "local_ip",
                                "recv_from_flightSimulation_port",
                                "local_port",
                                "send_to_flightSimulation_port",
                                "data_port",
                                "fps_limit",
                                "show_fps",
                                "real_time_fps",
                                "vsync",
                                "slaves",
                                "show_recv_data_print",
                                "show_send_data_print",
                                "head_offset",
                                "ignore_order",
                                "ships_auto_move",
                                "first_ship_path",
                                "third_ship_path",
                                "plane_path",
                                "use_photoelectric_data",
                                "fly_mode",
                                "KeyControl",
                                "target_type"};
constexpr const char* CHANNEL_KEYS[] = {"shear", "yaw", "fov"};

/// Returns a key of the table; a name that is not in the table does not compile.
consteval const char* key(std::string_view name) {
    const auto found = std::ranges::find(KEYS, name, [](const char* known) { return std::string_view(known); });
    if (found == std::end(KEYS)) throw "the table of keys lacks it";
    return *found;
}

}  // namespace

AppData& AppData::get() {
    static AppData data;
    return data;
}

void AppData::open() {
    if (!m_is_open) load();
}

bool AppData::load() {
    m_is_open = true;
    m_package.clear();
    const bool read = mjl::open(PATH, m_package, false);
    m_package.warnUnknownKeys(KEYS);
    if (const Package* const channels = m_package.getPackage(key("slaves"))) {
        for (const Item& channel : *channels) {
            if (channel.getPackage()) channel.getPackage()->warnUnknownKeys(CHANNEL_KEYS);
        }
    }
    if (read) return true;
    jLog::warning("Open config file failed:%s, use default config", PATH);
    return false;
}

bool AppData::save() const {
    return mjl::save(PATH, m_package, false);
}

jString AppData::text(const char* key, const char* fallback) const {
    const jString& value = m_package.getString(key);
    return value.empty() ? jString(fallback) : value;
}

int AppData::number(const char* key, int fallback) const {
    const int value = m_package.getInt(key);
    return value == 0 ? fallback : value;
}

jString AppData::getFlightSimulationIp() const {
    return text(key("flightSimulation_ip"), "127.0.0.1");
}
jString AppData::getLocalIp() const {
    return text(key("local_ip"), "127.0.0.1");
}
int AppData::getRecvFromFlightSimulationPort() const {
    return number(key("recv_from_flightSimulation_port"), 10004);
}
int AppData::getLocalPort() const {
    return number(key("local_port"), 10004);
}
int AppData::getSendToFlightSimulationPort() const {
    return number(key("send_to_flightSimulation_port"), 10005);
}
int AppData::getDataPort() const {
    return number(key("data_port"), 6000);
}

double AppData::getFpsLimit() const {
    const double limit = m_package.getDouble(key("fps_limit"));
    return limit == 0.0 ? 6000.0 : limit;
}

bool AppData::isShowFps() const {
    return m_package.getBool(key("show_fps"));
}
bool AppData::isRealTimeFps() const {
    return m_package.getBool(key("real_time_fps"));
}
bool AppData::isVsync() const {
    return m_package.getBool(key("vsync"));
}

bool AppData::applyShear(const jString& channel, ChannelView& view) const {
    const Package* const channels = m_package.getPackage(key("slaves"));
    const Package* const settings = channels ? channels->getPackage(channel.c_str()) : nullptr;
    if (!settings) return false;
    if (!settings->getFloats("shear", view.shear, 2)) view.shear[0] = view.shear[1] = 0.0f;
    if (settings->has("yaw")) view.yaw = settings->getDouble("yaw");
    if (settings->has("fov")) {
        const double fov = settings->getDouble("fov");
        if (fov > 0.0 && fov < 180.0) {
            view.fov = fov;
        } else {
            jLog::error("%s: \"fov\" of channel \"%s\" must be between 0 and 180 degrees", PATH, channel.c_str());
        }
    }
    if (view.apply) view.apply(view);
    return true;
}

bool AppData::isShowRecvDataPrint() const {
    return m_package.getBool(key("show_recv_data_print"));
}
bool AppData::isShowSendDataPrint() const {
    return m_package.getBool(key("show_send_data_print"));
}
float AppData::getHeadOffset() const {
    return m_package.getFloat(key("head_offset"));
}
bool AppData::isIgnoreOrder() const {
    return m_package.getBool(key("ignore_order"));
}
bool AppData::isShipsAutoMove() const {
    return m_package.getBool(key("ships_auto_move"));
}

jString AppData::getFirstShipPath() const {
    return text(key("first_ship_path"), "data/assets/Targets/MODELS/JT_CN_LNJ/JT_CN_LNJ.prefab");
}

jString AppData::getPlanePath() const {
    return text(key("plane_path"), "data/assets/Targets/MODELS/FJ_CN_J15/FJ_CN_J15.prefab");
}

jString AppData::getThirdShipPath() const {
    return text(key("third_ship_path"), "data/HARBOR_PROJECT/prefabs/LNJ_2023/LNJ_2023.prefab");
}

bool AppData::isUsePhotoelectricData() const {
    return m_package.getBool(key("use_photoelectric_data"));
}
int AppData::getFlyMode() const {
    return m_package.getInt(key("fly_mode"));
}

jVector<jString> AppData::getKeyControls() const {
    jVector<jString> keys;
    const Package* const controls = m_package.getPackage(key("KeyControl"));
    if (!controls) return keys;
    for (const Item& control : *controls) keys.append(controls->getString(control.getName().c_str()));
    return keys;
}

jVector<int> AppData::getTargetTypes() const {
    jVector<int> codes;
    const Package* const paths = m_package.getPackage(key("target_type"));
    if (!paths) return codes;
    for (const Item& path : *paths) codes.append(std::atoi(path.getName().c_str() + 1));  // after the "_"
    return codes;
}

jString AppData::getTargetPath(int type) const {
    const Package* const paths = m_package.getPackage(key("target_type"));
    const jString key = std::string(1, '_').append(ToString(type));
    return paths ? paths->getString(key.c_str()) : jString();
}
