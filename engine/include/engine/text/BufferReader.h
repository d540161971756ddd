// Reads little-endian values from memory.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

static_assert(std::endian::native == std::endian::little, "records are read in the machine's own byte order");

/// Reads consecutive values without alignment. Beyond the end all bytes are zero; the memory must outlive the reader.
class BufferReader {
public:
    BufferReader(const void* data, int size) : m_at(static_cast<const unsigned char*>(data)), m_end(m_at + size) {}

    bool isEnd() const { return m_at == m_end; }
    int getRemaining() const { return static_cast<int>(m_end - m_at); }

    std::int32_t readInt() { return readValue<std::int32_t>(); }
    float readFloat() { return readValue<float>(); }
    double readDouble() { return readValue<double>(); }
    /// Copies n bytes; returns the number of bytes available, and zeroes the rest of `out`.
    int read(void* out, int n) {
        const int have = n < getRemaining() ? n : getRemaining();
        std::memcpy(out, m_at, static_cast<std::size_t>(have));
        if (have < n) std::memset(static_cast<unsigned char*>(out) + have, 0, static_cast<std::size_t>(n - have));
        m_at += have;
        return have;
    }

private:
    template <class T>
    T readValue() {
        T value;
        read(&value, sizeof value);
        return value;
    }

    const unsigned char* m_at;
    const unsigned char* m_end;
};
