// Named values in memory.
#include "engine/text/Package.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <string_view>

#include "engine/text/Log.h"

namespace {

/// Levenshtein distance: insertions, deletions and replacements of single characters.
std::size_t editDistance(std::string_view a, std::string_view b) {
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < a.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i + 1;
        for (std::size_t j = 0; j < b.size(); ++j) {
            const std::size_t replaced = diagonal + (a[i] == b[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, row[j] + 1, diagonal + 1});
        }
    }
    return row.back();
}

}  // namespace

Item::Item() = default;
Item::~Item() = default;
Item::Item(Item&& other) noexcept = default;
Item& Item::operator=(Item&& other) noexcept = default;

Item::Item(const Item& other)
    : m_type(other.m_type),
      m_line(other.m_line),
      m_int(other.m_int),
      m_double(other.m_double),
      m_name(other.m_name),
      m_string(other.m_string),
      m_array(other.m_array ? std::make_unique<jVector<Item>>(*other.m_array) : nullptr),
      m_package(other.m_package ? std::make_unique<Package>(*other.m_package) : nullptr) {}

Item& Item::operator=(const Item& other) {
    if (this != &other) *this = Item(other);
    return *this;
}

bool Item::getBool() const {
    return m_type == BOOL && m_int != 0;
}

std::int64_t Item::getInt() const {
    if (m_type == INT) return m_int;
    if (m_type != DOUBLE || !(std::abs(m_double) < 9.2e18)) return 0;
    return static_cast<std::int64_t>(m_double);
}

double Item::getDouble() const {
    if (m_type == INT) return static_cast<double>(m_int);
    return m_type == DOUBLE ? m_double : 0.0;
}

const jString& Item::getString() const {
    static const jString empty;
    return m_type == STRING ? m_string : empty;
}

const Package* Item::getPackage() const {
    return m_type == PACKAGE ? m_package.get() : nullptr;
}

const jVector<Item>& Item::getArray() const {
    static const jVector<Item> empty;
    return m_type == ARRAY ? *m_array : empty;
}

int Item::getDoubles(double* out, int n) const {
    const jVector<Item>& array = getArray();
    int read = 0;
    while (read < n && read < array.size() && (array[read].getType() == INT || array[read].getType() == DOUBLE)) {
        out[read] = array[read].getDouble();
        ++read;
    }
    return read;
}

int Item::getFloats(float* out, int n) const {
    std::vector<double> values(static_cast<std::size_t>(n));
    const int read = getDoubles(values.data(), n);
    std::transform(values.begin(), values.begin() + read, out, [](double v) { return static_cast<float>(v); });
    return read;
}

void Item::setBool(bool value) {
    m_type = BOOL;
    m_int = value;
}

void Item::setInt(std::int64_t value) {
    m_type = INT;
    m_int = value;
}

void Item::setDouble(double value) {
    m_type = DOUBLE;
    m_double = value;
}

void Item::setString(const jString& value) {
    m_type = STRING;
    m_string = value;
}

void Item::setPackage(Package value) {
    m_type = PACKAGE;
    m_package = std::make_unique<Package>(std::move(value));
}

void Item::setArray(jVector<Item> value) {
    m_type = ARRAY;
    m_array = std::make_unique<jVector<Item>>(std::move(value));
}

const Item* Package::getItem(const char* key) const {
    for (const Item& item : m_items) {
        if (item.getName() == key) return &item;
    }
    return nullptr;
}

Item& Package::item(const char* key) {
    if (const Item* found = getItem(key)) return const_cast<Item&>(*found);
    Item made;
    made.setName(key);
    m_items.append(std::move(made));
    return m_items.last();
}

void Package::warnType(const Item& item, const char* wanted) const {
    if (m_path.empty() || item.m_warned || item.getType() == Item::NONE) return;
    item.m_warned = true;
    jLog::warning("%s:%d: \"%s\" must be %s", m_path.c_str(), item.getLine(), item.getName().c_str(), wanted);
}

const Item* Package::find(const char* key, Item::Type type, const char* wanted) const {
    const Item* const item = getItem(key);
    if (!item || item->getType() == type) return item;
    const bool is_number = item->getType() == Item::INT || item->getType() == Item::DOUBLE;
    if (type == Item::DOUBLE && is_number) return item;
    warnType(*item, wanted);
    return nullptr;
}

const jString& Package::getString(const char* key) const {
    static const jString empty;
    const Item* const found = find(key, Item::STRING, "a text");
    return found ? found->getString() : empty;
}

int Package::getInt(const char* key) const {
    const Item* const found = find(key, Item::DOUBLE, "a number");
    const std::int64_t value = found ? found->getInt() : 0;
    const bool fits = value >= std::numeric_limits<int>::min() && value <= std::numeric_limits<int>::max();
    if (!fits) warnType(*found, "a number of 32 bits");
    return fits ? static_cast<int>(value) : 0;
}

double Package::getDouble(const char* key) const {
    const Item* const found = find(key, Item::DOUBLE, "a number");
    return found ? found->getDouble() : 0.0;
}

float Package::getFloat(const char* key) const {
    return static_cast<float>(getDouble(key));
}

bool Package::getBool(const char* key) const {
    const Item* const found = find(key, Item::BOOL, "true or false");
    return found && found->getBool();
}

bool Package::getDoubles(const char* key, double* out, int n) const {
    const Item* const found = find(key, Item::ARRAY, "a list of numbers");
    if (!found) return false;
    std::vector<double> values(static_cast<std::size_t>(n));
    if (found->getArray().size() != n || found->getDoubles(values.data(), n) != n) {
        warnType(*found, ("a list of " + ToString(n) + " numbers").c_str());
        return false;
    }
    std::copy(values.begin(), values.end(), out);
    return true;
}

bool Package::getFloats(const char* key, float* out, int n) const {
    std::vector<double> values(static_cast<std::size_t>(n));
    if (!getDoubles(key, values.data(), n)) return false;
    std::transform(values.begin(), values.end(), out, [](double v) { return static_cast<float>(v); });
    return true;
}

const Package* Package::getPackage(const char* key) const {
    const Item* const found = find(key, Item::PACKAGE, "a package { … }");
    return found ? found->getPackage() : nullptr;
}

void Package::warnUnknownKeys(std::span<const char* const> known) const {
    if (m_path.empty() || known.empty()) return;
    for (const Item& item : m_items) {
        const std::string_view key = item.getName();
        if (item.m_warned || std::ranges::any_of(known, [key](const char* k) { return key == k; })) continue;
        item.m_warned = true;
        const std::string_view start = key.substr(0, 64);  // longer keys resemble no known key
        const char* const nearest =
            *std::ranges::min_element(known, {}, [start](const char* k) { return editDistance(start, k); });
        const jString place = item.getLine() > 0 ? jString(":") + ToString(item.getLine()) : jString(", overridden");
        jLog::warning("%s%s: unknown key \"%s\" is ignored; the nearest known one is \"%s\"", m_path.c_str(),
                      place.c_str(), item.getName().c_str(), nearest);
    }
}
