// The tree of named values for configuration and scene files, and its text format.
#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "engine/Api.h"
#include "engine/text/Containers.h"

class Package;

/// One named value. Reading it as another type gives 0, false or an empty value, except that integers and reals convert
/// into each other.
class ENGINE_API Item {
public:
    enum Type { NONE, BOOL, INT, DOUBLE, STRING, ARRAY, PACKAGE };

    Item();
    ~Item();
    Item(const Item& other);
    Item(Item&& other) noexcept;
    Item& operator=(const Item& other);
    Item& operator=(Item&& other) noexcept;

    Type getType() const { return m_type; }
    const jString& getName() const { return m_name; }
    int getLine() const { return m_line; }  ///< line in the file, from 1; 0 when not read from a file

    bool getBool() const;
    std::int64_t getInt() const;  ///< a real is truncated toward zero; 0 when out of range or NaN
    double getDouble() const;
    const jString& getString() const;
    const Package* getPackage() const;  ///< null unless it is a package; owned by the item
    /// Elements of an array (names empty); empty otherwise.
    const jVector<Item>& getArray() const;
    /// Reads up to n numbers of an array into out and returns the number read; stops at an element that is not a
    /// number.
    int getFloats(float* out, int n) const;
    int getDoubles(double* out, int n) const;

    void setName(const jString& name) { m_name = name; }
    void setLine(int line) { m_line = line; }
    void setBool(bool value);
    void setInt(std::int64_t value);
    void setDouble(double value);
    void setString(const jString& value);
    void setPackage(Package value);
    void setArray(jVector<Item> value);

private:
    friend class Package;

    Type m_type = NONE;
    mutable bool m_warned = false;  ///< the warning about a wrong type was logged
    int m_line = 0;
    std::int64_t m_int = 0;
    double m_double = 0.0;
    jString m_name;
    jString m_string;
    std::unique_ptr<jVector<Item>> m_array;
    std::unique_ptr<Package> m_package;
};

/// Named values in file order. Every reader takes a key at the top level of this package; a missing key or a value of
/// another type gives the stated default. A value of another type in a package read from a file is logged once, with
/// file and line.
class ENGINE_API Package {
public:
    const jString& getString(const char* key) const;  ///< empty by default
    int getInt(const char* key) const;                ///< 0 by default or out of range
    double getDouble(const char* key) const;          ///< 0.0
    float getFloat(const char* key) const;            ///< 0.0f
    bool getBool(const char* key) const;              ///< false
    /// Reads exactly n numbers into out and returns true; otherwise leaves out unchanged and returns false.
    bool getFloats(const char* key, float* out, int n) const;
    bool getDoubles(const char* key, double* out, int n) const;
    /// Owned by this package, valid until it changes; null by default.
    const Package* getPackage(const char* key) const;
    /// Null when missing.
    const Item* getItem(const char* key) const;
    bool has(const char* key) const { return getItem(key) != nullptr; }

    int size() const { return m_items.size(); }
    bool empty() const { return m_items.empty(); }
    const Item& operator[](int i) const { return m_items[i]; }  ///< in file order
    auto begin() const { return m_items.begin(); }
    auto end() const { return m_items.end(); }

    /// The item with this name; a missing one is added at the end, empty. Valid until the package changes.
    Item& item(const char* key);
    /// Adds an item at the end. REQUIRES that no item has its name.
    void append(Item item) { m_items.append(std::move(item)); }
    void clear() { m_items.clear(); }

    /// Logs a warning with file, line and the nearest of `known` for each key that is not in `known`: once per item of
    /// a package that was read from a file.
    void warnUnknownKeys(std::span<const char* const> known) const;

    const jString& getPath() const { return m_path; }  ///< the file it was read from; empty when made in memory
    void setPath(const jString& path) { m_path = path; }

private:
    /// The item; null when it is missing or of another type.
    const Item* find(const char* key, Item::Type type, const char* wanted) const;
    void warnType(const Item& item, const char* wanted) const;

    jVector<Item> m_items;
    jString m_path;
};

/// The engine's structured text: JSON with // and /* */ comments; order is kept. Paths are below the runtime root.
namespace mjl {

/// Reads a file into the package, replacing its content. On failure the package is empty, one error names the file,
/// line and column (a missing file is silent unless `required`), and the result is false. Files above 64 MiB and trees
/// deeper than 64 levels are refused. Overrides for this path replace values read, also when the file cannot be read.
ENGINE_API bool open(const jString& path, Package& package, bool required);
/// Writes the package; false, with an error logged, when the file cannot be written.
ENGINE_API bool save(const jString& path, const Package& package, bool compact);
/// Parses a text in memory; `name` replaces the file name in messages.
ENGINE_API bool parse(const jString& text, const jString& name, Package& package);
/// Later calls of `open` for this path give `value` for the top-level `key`. The value is parsed as JSON if possible,
/// otherwise it is a string.
ENGINE_API void setOverride(const jString& path, const jString& key, const jString& value);
ENGINE_API void clearOverrides();

}  // namespace mjl
