// Datagrams built byte by byte, without the plug-in's record types.
#pragma once

#include <cstdint>
#include <cstring>
#include <vector>

namespace packets {

using Bytes = std::vector<unsigned char>;

inline constexpr int RECORD_SIZE = 108;   ///< host to viewer
inline constexpr int FEEDBACK_SIZE = 60;  ///< viewer to host
inline constexpr int NOTICE_SIZE = 72;    ///< viewer to the multicast group

/// Writes a value at a byte offset. REQUIRES that it is inside.
template <class T>
void put(Bytes& bytes, int offset, T value) {
    std::memcpy(bytes.data() + offset, &value, sizeof value);
}

template <class T>
T get(const Bytes& bytes, int offset) {
    T value;
    std::memcpy(&value, bytes.data() + offset, sizeof value);
    return value;
}

/// A host record with the order; all other bytes are zero.
Bytes record(int order);
/// Pseudo-random bytes, equal for equal seeds.
Bytes noise(int size, unsigned seed);
Bytes join(const Bytes& a, const Bytes& b);

/// One feedback record as a host decodes it, in the order of the datagram's bytes.
struct Feedback {
    std::int32_t counter = 0;
    float heights[3] = {};  ///< metres; nose, left, right
    float pitch[3] = {};    ///< degrees
    float roll[3] = {};     ///< degrees
    float heading[3] = {};  ///< degrees
    float heightCg = 0.0f;  ///< metres
    std::int32_t collision = 0;
};
static_assert(sizeof(Feedback) == FEEDBACK_SIZE);

}  // namespace packets
