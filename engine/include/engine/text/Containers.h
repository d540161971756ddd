// Strings and containers of the contract: standard ones with the contract's names.
#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <initializer_list>
#include <list>
#include <map>
#include <string>
#include <utility>
#include <vector>

/// UTF-8 text.
class jString : public std::string {
public:
    using std::string::string;
    jString() = default;
    jString(const std::string& s) : std::string(s) {}
    jString(std::string&& s) noexcept : std::string(std::move(s)) {}
};

template <class Signature>
using Function = std::function<Signature>;

/// The decimal form of an integer.
inline jString ToString(long long value) {
    return std::to_string(value);
}

/// A growing array. Capacity is 5 with the first element and is doubled when full.
template <class T>
class jVector {
public:
    jVector() = default;
    jVector(std::initializer_list<T> items) : m_items(items) {}

    int size() const { return static_cast<int>(m_items.size()); }
    int capacity() const { return static_cast<int>(m_items.capacity()); }
    bool empty() const { return m_items.empty(); }
    /// REQUIRES 0 <= i < size().
    T& operator[](int i) { return m_items[static_cast<std::size_t>(i)]; }
    const T& operator[](int i) const { return m_items[static_cast<std::size_t>(i)]; }

    void append(const T& item) {
        if (m_items.size() == m_items.capacity()) {
            append(T(item));  // `item` may be an element, which growing would move
        } else {
            m_items.push_back(item);
        }
    }
    void append(T&& item) {
        grow();
        m_items.push_back(std::move(item));
    }
    void resize(int n) { m_items.resize(static_cast<std::size_t>(n)); }
    void reserve(int n) { m_items.reserve(static_cast<std::size_t>(n)); }
    /// Keeps the order of the other elements. REQUIRES 0 <= i < size().
    void removeAt(int i) { m_items.erase(m_items.begin() + i); }
    /// Moves the last element to index i. REQUIRES 0 <= i < size().
    void removeFast(int i) {
        m_items[static_cast<std::size_t>(i)] = std::move(m_items.back());
        m_items.pop_back();
    }
    /// Index of the first equal element, -1 when there is none.
    int find(const T& item) const {
        const auto it = std::find(m_items.begin(), m_items.end(), item);
        return it == m_items.end() ? -1 : static_cast<int>(it - m_items.begin());
    }
    /// Removes all elements and keeps the capacity.
    void clear() { m_items.clear(); }

    T* get() { return m_items.data(); }
    const T* get() const { return m_items.data(); }
    T& last() { return m_items.back(); }  ///< REQUIRES !empty()
    auto begin() { return m_items.begin(); }
    auto end() { return m_items.end(); }
    auto begin() const { return m_items.begin(); }
    auto end() const { return m_items.end(); }

private:
    void grow() {
        if (m_items.size() == m_items.capacity()) m_items.reserve(m_items.empty() ? 5 : 2 * m_items.size());
    }

    std::vector<T> m_items;
};

template <class K, class V>
using jMap = std::map<K, V>;

template <class T>
using jList = std::list<T>;

/// A byte buffer with a fixed capacity and a read and write position.
class jBuffer {
public:
    explicit jBuffer(int capacity = 0) { allocate(capacity); }

    /// Discards the content and allocates `capacity` zeroed bytes.
    void allocate(int capacity) {
        m_bytes.assign(static_cast<std::size_t>(capacity), 0);
        m_position = 0;
    }
    void destroy() { std::vector<unsigned char>().swap(m_bytes), m_position = 0; }
    void rewind() { m_position = 0; }
    int getPosition() const { return m_position; }
    int getCapacity() const { return static_cast<int>(m_bytes.size()); }
    unsigned char* getData() { return m_bytes.data(); }
    const unsigned char* getData() const { return m_bytes.data(); }

private:
    std::vector<unsigned char> m_bytes;
    int m_position = 0;
};
