// A recorded flight: the states of a flight path file, looked up by time.
#pragma once

#include <engine/memory/Allocator.h>

#include <vector>

#include "src/kit/FlightPathTokens.h"
#include "src/kit/FlyFrame.h"

/// Loads a flight path and gives the aircraft's state at a time. A file contains only frames of ten reals each: time,
/// pivot x, y, z, undercarriage, pitch, roll, heading, wing1, wing2, in the units of `FlyFrame`, in rising time order:
///
///     // standing, then rolling
///     0.0   0.0 0.0 0.0   1.0   0.0 0.0 22.75   0.0 0.0
///     24.0  1.5 0.6 0.0   1.0   0.0 0.0 22.75   0.0 0.0
///
/// A fault in the content of a file is logged; the frames before it are kept and played.
class PlaneFlyKit {
public:
    PlaneFlyKit() = default;
    PlaneFlyKit(const PlaneFlyKit&) = delete;
    PlaneFlyKit& operator=(const PlaneFlyKit&) = delete;

    /// Loads a file (path under the runtime root) in place of the loaded one. The result does not mean success: it is
    /// true when the file could not be opened or ended inside a comment, else false.
    bool init(const char* path);
    /// The state at a time: time and position are interpolated, other values are those of the previous frame. Before
    /// the first frame's time the first frame, after the last null. Valid until the next lookup.
    const FlyFrame* frame(float t);
    /// Turns the path by the start's (heading, pitch, roll), degrees, and moves its first frame to the origin. Stores
    /// both arguments; `position` is geocentric.
    void setStartPose(const dvec3& position, const dvec3& angles);
    const dvec3& getStartPosition() const { return m_start_position; }
    const dvec3& getStartAngles() const { return m_start_angles; }

    const FlyFrame* getFirstFrame() const { return m_frames.empty() ? nullptr : m_frames.get(); }
    int getNumFrames() const { return m_frames.size(); }
    /// The unchanged frames of the file; empty when it could not be read to its end.
    const jVector<FlyFrame>& getFileFrames() const { return m_file_frames; }
    bool isFailed() const { return m_failed; }  ///< result of the last `init`

    void moveCursorToFirst() { m_cursor = m_frames.empty() ? NO_FRAME : 0; }
    void clearAllTokens();
    void release();  ///< drops frames and tokens

private:
    static constexpr int NO_FRAME = -1;

    bool tokenize(const char* path);
    bool readFrames(const char* path);
    bool readFrame(const char* path, FlyFrame& frame);
    bool readValue(const char* path, float& value);
    void append(const FlyFrame& frame);
    int findNext(float t) const;

    using Bytes = std::vector<char, jTagAllocator<char>>;
    Bytes m_bytes{jTagAllocator<char>({"src\\kit\\PlaneFlyKit", "PlaneFlyKit::init"})};  ///< tokens point into these
    jVector<PathToken> m_tokens;
    int m_next_token = 0;
    jVector<FlyFrame> m_frames;       ///< as played
    jVector<FlyFrame> m_file_frames;  ///< as read
    jVector<float> m_latest;          ///< greatest time up to each frame; never falls
    int m_cursor = NO_FRAME;          ///< index of the frame that the last lookup found
    FlyFrame m_output;
    bool m_failed = false;
    bool m_range_reported = false;
    float m_heading_offset = 0.0f;  ///< degrees
    dvec3 m_start_position;
    dvec3 m_start_angles;
};
