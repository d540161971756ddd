// Typed reading of scene files: an invalid value gives one log line with file and line, and the default is kept.
#pragma once

#include <vector>

#include "engine/math/Vec.h"
#include "engine/text/Package.h"

class DataReader {
public:
    /// `file` names the origin in messages. Both must outlive the reader.
    DataReader(const Package& package, const jString& file) : m_package(package), m_file(file) { m_known.reserve(32); }

    // False, with `out` unchanged, when the key is missing or of another type.
    bool read(const char* key, bool& out) const;
    bool read(const char* key, int& out) const;
    bool read(const char* key, float& out) const;
    bool read(const char* key, jString& out) const;
    bool read(const char* key, vec3& out) const;
    bool read(const char* key, dvec3& out) const;
    bool read(const char* key, vec4& out) const;  ///< four numbers, or three and alpha 1
    /// Sets `out` to the index of the text in `names`.
    template <class Enum, std::size_t N>
    bool read(const char* key, Enum& out, const char* const (&names)[N]) const {
        const int found = findName(key, names, N);
        if (found >= 0) out = static_cast<Enum>(found);
        return found >= 0;
    }

    const Package* getPackage(const char* key) const;
    /// The elements of a list; empty when the key is missing or not a list.
    const jVector<Item>& getArray(const char* key) const;
    /// An element of such a list as a package; null, with a log line, when it is not one.
    const Package* asPackage(const Item& element, const char* what) const;

    const Item* getItem(const char* key) const {
        m_known.push_back(key);
        return m_package.getItem(key);
    }
    bool has(const char* key) const { return getItem(key) != nullptr; }
    /// Call after the last read: one warning for each key of the package that was not read.
    void warnUnknownKeys() const { m_package.warnUnknownKeys(m_known); }
    const jString& getFile() const { return m_file; }
    /// Logs "file:line: text".
    void complain(const Item& item, const jString& text) const;

private:
    const Item* getItem(const char* key, Item::Type type, const char* wanted) const;
    bool readNumbers(const char* key, double* out, int n) const;
    int findName(const char* key, const char* const* names, std::size_t count) const;

    const Package& m_package;
    const jString& m_file;
    mutable std::vector<const char*> m_known;  ///< all keys read
};
