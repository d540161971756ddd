// Builds and reads the link's datagrams by offsets, as a host of another make would.
#include "support/Packets.h"

namespace packets {

Bytes record(int order) {
    Bytes bytes(RECORD_SIZE, 0);
    put<std::int32_t>(bytes, 0, order);
    return bytes;
}

Bytes records(std::initializer_list<int> orders) {
    Bytes bytes;
    for (const int order : orders) bytes = join(bytes, record(order));
    return bytes;
}

Bytes distinctRecord(int order, unsigned seed) {
    Bytes bytes(RECORD_SIZE, 0);
    for (int i = 0; i < RECORD_SIZE; ++i) bytes[static_cast<std::size_t>(i)] = static_cast<unsigned char>(1 + i + seed);
    put<std::int32_t>(bytes, 0, order);
    return bytes;
}

Bytes noise(int size, unsigned seed) {
    Bytes bytes(static_cast<std::size_t>(size));
    std::uint32_t x = 2463534242u + seed;
    for (unsigned char& byte : bytes) {
        x = x * 1664525u + 1013904223u;
        byte = static_cast<unsigned char>(x >> 24);
    }
    return bytes;
}

Bytes join(const Bytes& a, const Bytes& b) {
    Bytes both = a;
    both.insert(both.end(), b.begin(), b.end());
    return both;
}

Feedback readFeedback(const Bytes& bytes) {
    Feedback f;
    f.counter = get<std::int32_t>(bytes, 0);
    for (int i = 0; i < 3; ++i) {
        f.heights[i] = get<float>(bytes, 4 + 4 * i);
        f.pitch[i] = get<float>(bytes, 16 + 4 * i);
        f.roll[i] = get<float>(bytes, 28 + 4 * i);
        f.heading[i] = get<float>(bytes, 40 + 4 * i);
    }
    f.heightCg = get<float>(bytes, 52);
    f.collision = get<std::int32_t>(bytes, 56);
    return f;
}

Bytes writeFeedback(const Feedback& f) {
    Bytes bytes(FEEDBACK_SIZE, 0);
    put(bytes, 0, f.counter);
    for (int i = 0; i < 3; ++i) {
        put(bytes, 4 + 4 * i, f.heights[i]);
        put(bytes, 16 + 4 * i, f.pitch[i]);
        put(bytes, 28 + 4 * i, f.roll[i]);
        put(bytes, 40 + 4 * i, f.heading[i]);
    }
    put(bytes, 52, f.heightCg);
    put(bytes, 56, f.collision);
    return bytes;
}

}  // namespace packets
