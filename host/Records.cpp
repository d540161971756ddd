// Writes and reads the link's records, little-endian on any machine.
#include "Records.h"

#include <algorithm>
#include <bit>

namespace {

void putInt(unsigned char* at, std::int32_t value) {
    const auto bits = static_cast<std::uint32_t>(value);
    for (int i = 0; i < 4; ++i) at[i] = static_cast<unsigned char>(bits >> (8 * i));
}

std::int32_t getInt(const unsigned char* at) {
    std::uint32_t bits = 0;
    for (int i = 0; i < 4; ++i) bits |= static_cast<std::uint32_t>(at[i]) << (8 * i);
    return static_cast<std::int32_t>(bits);
}

float getFloat(const unsigned char* at) {
    return std::bit_cast<float>(getInt(at));
}

std::array<float, 3> getFloats(const unsigned char* at) {
    return {getFloat(at), getFloat(at + 4), getFloat(at + 8)};
}

}  // namespace

void writeRecord(const Record& record, unsigned char* out) {
    std::fill(out, out + RECORD_SIZE, static_cast<unsigned char>(0));
    putInt(out, record.order);
    putInt(out + 4, record.number);
}

Feedback readFeedback(const unsigned char* bytes) {
    Feedback feedback;
    feedback.counter = getInt(bytes);
    feedback.height = getFloats(bytes + 4);
    feedback.pitch = getFloats(bytes + 16);
    feedback.roll = getFloats(bytes + 28);
    feedback.heading = getFloats(bytes + 40);
    feedback.heightCg = getFloat(bytes + 52);
    feedback.collision = getInt(bytes + 56);
    return feedback;
}
