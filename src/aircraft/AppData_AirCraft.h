// The aircraft configuration file.
#pragma once

#include <engine/text/Package.h>

#include "src/aircraft/AirCraftInfo.h"

/// The content of the aircraft configuration file. A missing value is empty or 0.
///
///     { "path": "data/models/jet/jet.prefab", "type": "PlaneJ15",
///       "ctrl_nodes": { "0": { "id": 0, "show_name": "左主轮", "node_name": "gear_left", "open_rot": [0, 0, 0],
///                              "close_rot": [0, 90, 0], "axis": [1, 0, 0], "type": 0, "digit": 1.0 } } }
///
/// An entry without "open_rot", "close_rot" or "axis" has the value of the previous entry; the first one has zeros.
class AppData_AirCraft final {
public:
    /// The only instance; created on first use, exists until the plug-in is unloaded.
    static AppData_AirCraft& get();

    // A flag for the caller; this class only stores it.
    virtual bool getFlag() const { return m_flag; }
    virtual void setFlag(bool flag) { m_flag = flag; }

    void setConfigPath(const jString& path) { m_config_path = path; }  ///< path under the runtime root
    const jString& getConfigPath() const { return m_config_path; }
    /// Replaces the values by those of the file. False, with one warning and no values, when it cannot be read.
    bool open();
    bool save() const;

    jString getPath() const { return m_package.getString("path"); }  ///< path of the prefab
    jString getType() const { return m_package.getString("type"); }
    dvec3 getSrcPosOffset() const;      ///< metres in the start node's frame
    dvec3 getSrcRotDeflection() const;  ///< (heading, pitch, roll) in degrees
    /// All values of the aircraft; an entry of "ctrl_nodes" that is no package is skipped with one warning.
    AirCraftInfo getAircraftInfo() const;

private:
    AppData_AirCraft() = default;

    Package m_package;
    bool m_flag = false;
    jString m_config_path;
};
