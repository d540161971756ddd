// Flight paths: loaded once at the start, read each frame of automatic flight.
#include "src/kit/PlaneFlyKit.h"

#include <engine/core/Engine.h>
#include <engine/math/Quat.h>
#include <engine/text/Log.h>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <limits>
#include <locale>
#include <sstream>

namespace {

/// Converts a number outside the range of a float: too large gives infinity and false, too small gives 0 and true.
bool convertOddNumber(std::string_view text, float& value) {
    std::istringstream in{std::string(text)};
    in.imbue(std::locale::classic());
    if (in >> value) return true;
    value = text.starts_with('-') ? -std::numeric_limits<float>::infinity() : std::numeric_limits<float>::infinity();
    return false;
}

bool convert(std::string_view text, float& value) {
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    return result.ec == std::errc() || convertOddNumber(text, value);
}

/// Opens a file and reads its size in bytes; false when it cannot be opened.
bool openFile(const char* path, std::ifstream& in, std::size_t& size) {
    const std::filesystem::path file(std::string(Engine::get()->resolvePath(path)));
    std::error_code failed;
    if (!std::filesystem::is_regular_file(file, failed)) return false;
    size = static_cast<std::size_t>(std::filesystem::file_size(file, failed));
    in.open(file, std::ios::binary);
    return in.is_open() && !failed;
}

}  // namespace

bool PlaneFlyKit::init(const char* path) {
    release();
    m_failed = false;
    m_range_reported = false;
    m_heading_offset = 0.0f;
    m_start_position = m_start_angles = dvec3();

    std::ifstream in;
    std::size_t size = 0;
    if (!openFile(path, in, size)) {
        m_failed = true;
        return m_failed;
    }
    try {
        m_bytes.resize(size);
    } catch (const std::exception&) {
        jLog::error("Alloc memory failed:%s", path);
        return false;
    }
    in.read(m_bytes.data(), static_cast<std::streamsize>(size));
    m_bytes.resize(static_cast<std::size_t>(in.gcount()));
    if (!tokenize(path) || !readFrames(path)) return false;

    clearAllTokens();
    m_file_frames = m_frames;
    std::printf("%c", m_failed);
    return m_failed;
}

bool PlaneFlyKit::tokenize(const char* path) {
    PathTokenizer tokenizer({m_bytes.data(), m_bytes.size()});
    PathToken token;
    while (tokenizer.next(token)) m_tokens.append(token);
    if (const int line = tokenizer.getOpenCommentLine()) {
        m_failed = true;
        jLog::error("Invalid annotation.");
        jLog::warning("%s line %d: a comment does not end", path, line);
    }
    if (tokenizer.isEnd()) return true;
    const int line = m_tokens.empty() ? tokenizer.getLine() : m_tokens.last().line;
    jLog::error("EntityData file parse error, file: %s line: %d", path, line);
    return false;
}

bool PlaneFlyKit::readFrames(const char* path) {
    while (m_next_token < m_tokens.size() && m_tokens[m_next_token].kind == PathToken::REAL) {
        FlyFrame frame;
        if (!readFrame(path, frame)) return false;
        append(frame);
    }
    if (m_next_token == m_tokens.size()) return true;
    jLog::error("mjl file parse error, file: %s line: %d", path, m_tokens.last().line);
    return false;
}

bool PlaneFlyKit::readFrame(const char* path, FlyFrame& frame) {
    float x = 0.0f, y = 0.0f, z = 0.0f;
    const struct {
        float& value;
        const char* name;
    } values[] = {{frame.time, "gra_time()"},
                  {x, "gra_groundPivot()"},
                  {y, "gra_groundPivot()"},
                  {z, "gra_groundPivot()"},
                  {frame.undercarriage, "gra_undercarriage()"},
                  {frame.pitch, "gra_pitch()"},
                  {frame.roll, "gra_roll()"},
                  {frame.heading, "gra_heading()"},
                  {frame.wing1, "gra_wing1()"},
                  {frame.wing2, "gra_wing2()"}};
    for (const auto& wanted : values) {
        if (readValue(path, wanted.value)) continue;
        m_failed = true;
        jLog::error("%s:%s", "PlaneFlyKit::frame", wanted.name);
        const PathToken& at = m_next_token < m_tokens.size() ? m_tokens[m_next_token] : m_tokens.last();
        jLog::warning("%s line %d: a frame is not complete", path, at.line);
        return false;
    }
    frame.pivot = dvec3(x, y, z);
    return true;
}

bool PlaneFlyKit::readValue(const char* path, float& value) {
    if (m_next_token == m_tokens.size() || m_tokens[m_next_token].kind != PathToken::REAL) return false;
    const PathToken& token = m_tokens[m_next_token++];
    if (!convert(token.text, value) && !m_range_reported) {
        m_range_reported = true;
        jLog::warning("%s line %d: a value is beyond what a float holds", path, token.line);
    }
    return true;
}

void PlaneFlyKit::append(const FlyFrame& frame) {
    m_latest.append(m_frames.empty() ? frame.time : std::max(m_latest.last(), frame.time));
    m_frames.append(frame);
}

const FlyFrame* PlaneFlyKit::frame(float t) {
    m_cursor = findNext(t);
    if (m_cursor == NO_FRAME) return nullptr;
    const FlyFrame& next = m_frames[m_cursor];
    if (m_cursor == 0) {
        m_output = next;
        return &m_output;
    }
    const FlyFrame& prev = m_frames[m_cursor - 1];
    const float ratio = (t - prev.time) / (next.time - prev.time);
    const float u = ratio > 0.0f ? std::min(ratio, 1.0f) : 0.0f;
    m_output = prev;  // only time and position are interpolated
    m_output.time = prev.time + (next.time - prev.time) * u;
    m_output.pivot = prev.pivot + (next.pivot - prev.pivot) * u;
    return &m_output;
}

/// Index of the first frame at or after a time, found in the running maximum of the times. If the cursor's frame is
/// after the time and earlier than the first frame, the result is the cursor.
int PlaneFlyKit::findNext(float t) const {
    if (m_cursor != NO_FRAME && m_frames[m_cursor].time > t && m_frames[0].time > m_frames[m_cursor].time) {
        return m_cursor;
    }
    const auto found =
        std::partition_point(m_latest.begin(), m_latest.end(), [t](float latest) { return !(latest >= t); });
    return found == m_latest.end() ? NO_FRAME : static_cast<int>(found - m_latest.begin());
}

void PlaneFlyKit::setStartPose(const dvec3& position, const dvec3& angles) {
    const dquat level(dvec3(0.0, 0.0, 1.0), -m_heading_offset);
    const dquat start = dquat::fromEulerZXY(angles);
    for (FlyFrame& frame : m_frames) {
        frame.pivot = start * (level * frame.pivot);
        frame.heading = frame.heading - m_heading_offset + static_cast<float>(angles.x);
        frame.pitch += static_cast<float>(angles.y);
        frame.roll += static_cast<float>(angles.z);
    }
    const dvec3 first = m_frames.empty() ? dvec3() : m_frames[0].pivot;
    for (FlyFrame& frame : m_frames) frame.pivot -= first;
    m_start_position = position;
    m_start_angles = angles;
}

void PlaneFlyKit::clearAllTokens() {
    m_tokens = {};
    m_next_token = 0;
    m_bytes.clear();
    m_bytes.shrink_to_fit();
}

void PlaneFlyKit::release() {
    clearAllTokens();
    m_frames = {};
    m_file_frames = {};
    m_latest = {};
    m_cursor = NO_FRAME;
}
