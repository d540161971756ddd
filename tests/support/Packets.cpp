// Builds the link's datagrams by byte offsets, independently of the plug-in.
#include "support/Packets.h"

namespace packets {

Bytes record(int order) {
    Bytes bytes(RECORD_SIZE, 0);
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

}  // namespace packets
