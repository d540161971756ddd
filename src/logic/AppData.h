// The plug-in's configuration file.
#pragma once

#include <engine/text/Package.h>

#include "common/LogicApi.h"

/// View settings of one display channel.
struct ChannelView {
    float shear[2] = {0.0f, 0.0f};  ///< shear of the projection, right and up, in half widths and half heights
    double yaw = 0.0;               ///< rotation of the view to the right, degrees
    double fov = 45.0;              ///< vertical field of view, degrees
    Function<void(const ChannelView&)> apply;  ///< called to apply the values; may be empty
};

/// "config/Logic_Test_Fly.cfg", read once at start. Every key has a default, used when the key is missing, has
/// another type or, for texts and integers, is empty or 0.
///
///     { "flightSimulation_ip": "127.0.0.1", "fly_mode": 0, "target_type": { "_1001": "data/…/ship.prefab" } }
class LOGIC_API AppData {
public:
    static constexpr const char* PATH = "config/Logic_Test_Fly.cfg";  ///< under the runtime root

    /// The only instance; created on first use, exists until the plug-in is unloaded.
    static AppData& get();

    /// Calls `load` unless loaded since the last `close`: the application and the logic share one read of the file.
    void open();
    void close() { m_is_open = false; }
    /// Replaces the values by those of the file. False, with one warning and all defaults, when it cannot be read.
    bool load();
    bool save() const;

    jString getFlightSimulationIp() const;
    jString getLocalIp() const;
    int getRecvFromFlightSimulationPort() const;  ///< source port of the host; -1 for any
    int getLocalPort() const;                     ///< port of the receiver
    int getSendToFlightSimulationPort() const;    ///< destination port of the feedback
    int getDataPort() const;                      ///< port of the recorded-data feed
    double getFpsLimit() const;                   ///< frames per second
    bool isShowFps() const;
    bool isRealTimeFps() const;
    bool isVsync() const;
    /// Sets the view's shear ((0, 0) if not given), yaw and field of view (if given) for a channel, then calls
    /// `apply`. False, with the view unchanged, when "slaves" or the channel is missing.
    bool applyShear(const jString& channel, ChannelView& view) const;
    bool isShowRecvDataPrint() const;
    bool isShowSendDataPrint() const;
    float getHeadOffset() const;  ///< metres
    bool isIgnoreOrder() const;   ///< feedback independent of the host's order
    bool isShipsAutoMove() const;
    jString getFirstShipPath() const;
    jString getPlanePath() const;
    jString getThirdShipPath() const;
    bool isUsePhotoelectricData() const;
    int getFlyMode() const;
    /// Texts of the package "KeyControl", in file order.
    jVector<jString> getKeyControls() const;
    jVector<int> getTargetTypes() const;  ///< codes of "target_type", in file order
    /// Prefab path of a target type; empty when there is none.
    jString getTargetPath(int type) const;

private:
    AppData() = default;
    jString text(const char* key, const char* fallback) const;
    int number(const char* key, int fallback) const;

    Package m_package;
    bool m_is_open = false;
};
