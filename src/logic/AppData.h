// The plug-in's configuration file.
#pragma once

#include <engine/text/Package.h>

#include "common/LogicApi.h"

/// One display channel's view, as its projection is set up.
struct ChannelView {
    float shear[2] = {0.0f, 0.0f};             ///< sideways and upward shear of the projection, half widths and heights
    double yaw = 0.0;                          ///< turn of the view to the right, degrees
    double fov = 45.0;                         ///< vertical field of view, degrees
    Function<void(const ChannelView&)> apply;  ///< puts the values into effect; may be empty
};

/// "config/Logic_Test_Fly.cfg", read once at start, with a default for every key: it stands in for a key that is
/// missing, of another type or, for texts and integers, empty or 0.
///
///     { "flightSimulation_ip": "127.0.0.1", "fly_mode": 0, "target_type": { "_1001": "data/…/ship.prefab" } }
class LOGIC_API AppData {
public:
    static constexpr const char* PATH = "config/Logic_Test_Fly.cfg";  ///< under the runtime root

    /// The one instance; made on first use, lives until the plug-in is unloaded.
    static AppData& get();

    /// `load`, unless it was loaded since the last `close`: the application and the logic share one reading.
    void open();
    void close() { m_is_open = false; }
    /// Replaces the values by the file's. False, with one warning and only defaults left, when it cannot be read.
    bool load();
    bool save() const;

    jString getFlightSimulationIp() const;
    jString getLocalIp() const;
    int getRecvFromFlightSimulationPort() const;  ///< the host's sending port; -1 for any
    int getLocalPort() const;                     ///< where the receiver listens
    int getSendToFlightSimulationPort() const;    ///< the host's receiving port
    int getDataPort() const;                      ///< of the recorded-data feed
    double getFpsLimit() const;                   ///< frames a second
    bool isShowFps() const;
    bool isRealTimeFps() const;
    bool isVsync() const;
    /// Stores a channel's shear in its view, (0, 0) without one, its yaw and field of view where they are given, and
    /// applies it. False, with the view left alone, when "slaves" or the channel is missing.
    bool applyShear(const jString& channel, ChannelView& view) const;
    bool isShowRecvDataPrint() const;
    bool isShowSendDataPrint() const;
    float getHeadOffset() const;  ///< metres
    bool isIgnoreOrder() const;   ///< feedback regardless of the host's order
    bool isShipsAutoMove() const;
    jString getFirstShipPath() const;
    jString getPlanePath() const;
    jString getThirdShipPath() const;
    bool isUsePhotoelectricData() const;
    int getFlyMode() const;
    /// The texts of the package "KeyControl", in file order.
    jVector<jString> getKeyControls() const;
    jVector<int> getTargetTypes() const;  ///< codes of "target_type", in file order
    /// The prefab of a target type; empty when there is none for it.
    jString getTargetPath(int type) const;

private:
    AppData() = default;
    jString text(const char* key, const char* fallback) const;
    int number(const char* key, int fallback) const;

    Package m_package;
    bool m_is_open = false;
};
