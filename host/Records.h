// The link's records from the host's side. docs/protocol.md describes every byte.
#pragma once

#include <array>
#include <cstdint>

inline constexpr int RECORD_SIZE = 108;               ///< host to viewer, bytes
inline constexpr int FEEDBACK_SIZE = 60;              ///< viewer to host, bytes
inline constexpr int MAX_RECORDS_PER_DATAGRAM = 606;  ///< 606 * 108 bytes is the maximum of one datagram

/// The fields that this host sets in a record; all other bytes are zero.
struct Record {
    std::int32_t order = 0;   ///< 1 reset, 2 running, anything else: no feedback
    std::int32_t number = 0;  ///< running number in the first carried word; the viewer ignores it
};

/// Writes the record to out[0 .. RECORD_SIZE).
void writeRecord(const Record& record, unsigned char* out);

/// The surface below the aircraft. Gears: 0 nose, 1 left, 2 right; heights in metres, angles in degrees.
struct Feedback {
    std::int32_t counter = 0;
    std::array<float, 3> height{};
    std::array<float, 3> pitch{};
    std::array<float, 3> roll{};
    std::array<float, 3> heading{};
    float heightCg = 0.0f;
    std::int32_t collision = 0;
};

/// REQUIRES FEEDBACK_SIZE bytes.
Feedback readFeedback(const unsigned char* bytes);
