// The aircraft configuration file.
#pragma once

#include <engine/text/Package.h>

#include "src/aircraft/AirCraftInfo.h"

/// Holds the aircraft configuration. Values are read fresh from it; a missing one is empty or 0.
///
///     { "path": "data/models/jet/jet.prefab", "type": "PlaneJ15",
///       "ctrl_nodes": { "0": { "id": 0, "show_name": "左主轮", "node_name": "gear_left", "open_rot": [0, 0, 0],
///                              "close_rot": [0, 90, 0], "axis": [1, 0, 0], "type": 0, "digit": 1.0 } } }
///
/// An entry without "open_rot", "close_rot" or "axis" has the value of the entry before it, the first one zeros.
class AppData_AirCraft final {
public:
    /// The one instance; made on first use, lives until the plug-in is unloaded.
    static AppData_AirCraft& get();

    // A mark for whoever uses the store; the store itself does not read it.
    virtual bool getFlag() const { return m_flag; }
    virtual void setFlag(bool flag) { m_flag = flag; }

    void setConfigPath(const jString& path) { m_config_path = path; }  ///< of the file, under the runtime root
    const jString& getConfigPath() const { return m_config_path; }
    /// Replaces the values by the file's. False, with one warning and no values left, when it cannot be read.
    bool open();
    bool save() const;

    jString getPath() const { return m_package.getString("path"); }  ///< the prefab's
    jString getType() const { return m_package.getString("type"); }
    dvec3 getSrcPosOffset() const;      ///< metres in the start node's frame
    dvec3 getSrcRotDeflection() const;  ///< (heading, pitch, roll) in degrees
    /// Everything about the aircraft; an entry of "ctrl_nodes" that is no package is left out with one warning.
    AirCraftInfo getAircraftInfo() const;

private:
    AppData_AirCraft() = default;

    Package m_package;
    bool m_flag = false;
    jString m_config_path;
};
