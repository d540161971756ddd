// A recorded flight: the states of a flight path file, looked up by time.
#pragma once

#include <engine/memory/Allocator.h>

#include <vector>

#include "src/kit/FlightPathTokens.h"
#include "src/kit/FlyFrame.h"

/// Loads a flight path and tells where the aircraft is at a time. A file is nothing but frames of ten reals each: time,
/// pivot x, y, z, undercarriage, pitch, roll, heading, wing1, wing2, as `FlyFrame` has them, in rising time order:
///
///     // standing, then rolling
///     0.0   0.0 0.0 0.0   1.0   0.0 0.0 22.75   0.0 0.0
///     24.0  1.5 0.6 0.0   1.0   0.0 0.0 22.75   0.0 0.0
///
/// Whatever is wrong with a file costs a log line; the frames before it are kept and played.
class PlaneFlyKit {
public:
    PlaneFlyKit() = default;
    PlaneFlyKit(const PlaneFlyKit&) = delete;
    PlaneFlyKit& operator=(const PlaneFlyKit&) = delete;

    /// Loads a file of the runtime root; what was loaded before goes. The result does not tell success: it is true when
    /// the file could not be opened or ended inside a comment, else false.
    bool init(const char* path);
    /// The state at a time: its time and place are interpolated, all else is that of the frame before. The first frame
    /// before its time, null after the last. Valid until the next lookup.
    const FlyFrame* frame(float t);
    /// Turns the path by the start's (heading, pitch, roll), degrees, and moves its first frame to the origin. The
    /// place, geocentric, is kept.
    void setStartPose(const dvec3& position, const dvec3& angles);
    const dvec3& getStartPosition() const { return m_start_position; }
    const dvec3& getStartAngles() const { return m_start_angles; }

    const FlyFrame* getFirstFrame() const { return m_frames.empty() ? nullptr : m_frames.get(); }
    int getNumFrames() const { return m_frames.size(); }
    /// The frames as they stand in the file; empty when it could not be read to its end.
    const jVector<FlyFrame>& getFileFrames() const { return m_file_frames; }
    bool isFailed() const { return m_failed; }  ///< of the last `init`

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
    Bytes m_bytes{jTagAllocator<char>({"src\\kit\\PlaneFlyKit", "PlaneFlyKit::init"})};  ///< what the tokens point into
    jVector<PathToken> m_tokens;
    int m_next_token = 0;
    jVector<FlyFrame> m_frames;       ///< as played
    jVector<FlyFrame> m_file_frames;  ///< as read
    jVector<float> m_latest;          ///< greatest time up to each frame: rises where times fall
    int m_cursor = NO_FRAME;          ///< what the last lookup found
    FlyFrame m_output;
    bool m_failed = false;
    bool m_range_told = false;
    float m_heading_offset = 0.0f;  ///< degrees
    dvec3 m_start_position;
    dvec3 m_start_angles;
};
