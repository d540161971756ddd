// Animation tracks: one parameter from 0 to 1 that controls values of the scene.
#pragma once

#include <memory>

#include "engine/Api.h"
#include "engine/text/Containers.h"

class World;
struct TrackState;

/// A track from a `.anim` file:
///
///     { "channels": [ { "node": "rain", "parameter": "enabled", "keys": [ [0, 0], [1, 1] ] } ] }
///
/// A channel selects its nodes by "node" (the first with this name) or "tag" (all with this tag), or the world's
/// environment with "environment": true. Between keys values are linear; outside them the end values hold. A channel of
/// the environment with "raise": true sets a lower bound: the maximum of all bounds and of the environment's own value
/// is used.
class ENGINE_API Track {
public:
    Track();
    virtual ~Track();
    virtual const jString& getName() const;  ///< the path of its file
    /// Reads the file for this world. False, with one log line naming file and line, when it cannot be read. Channels
    /// whose node does not exist are kept and take effect once it exists.
    bool load(const jString& path, World* world);
    void set(float position);  ///< clamped to 0..1; NaN is ignored
    float get() const;
    /// Removes the channels and the lower bounds that they set. REQUIRES that the world still exists if there are
    /// channels.
    void release();

private:
    std::unique_ptr<TrackState> m_state;
};
