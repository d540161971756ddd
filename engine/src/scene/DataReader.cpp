// Typed reading of scene files during loading.
#include "scene/DataReader.h"

#include <cmath>
#include <limits>

#include "engine/text/Log.h"

void DataReader::complain(const Item& item, const jString& text) const {
    jLog::error("%s:%d: %s", m_file.c_str(), item.getLine(), text.c_str());
}

const Item* DataReader::getItem(const char* key, Item::Type type, const char* wanted) const {
    const Item* const item = getItem(key);
    if (!item || item->getType() == type) return item;
    const bool is_number = item->getType() == Item::INT || item->getType() == Item::DOUBLE;
    if (type == Item::DOUBLE && is_number) return item;
    complain(*item, jString("\"") + key + "\" must be " + wanted);
    return nullptr;
}

bool DataReader::read(const char* key, bool& out) const {
    const Item* const item = getItem(key, Item::BOOL, "true or false");
    if (item) out = item->getBool();
    return item != nullptr;
}

bool DataReader::read(const char* key, int& out) const {
    const Item* const item = getItem(key, Item::DOUBLE, "a number");
    if (!item) return false;
    const std::int64_t value = item->getInt();
    if (value != std::clamp<std::int64_t>(value, std::numeric_limits<int>::min(), std::numeric_limits<int>::max())) {
        complain(*item, jString("\"") + key + "\" is out of range");
        return false;
    }
    out = static_cast<int>(value);
    return true;
}

bool DataReader::read(const char* key, float& out) const {
    const Item* const item = getItem(key, Item::DOUBLE, "a number");
    if (!item) return false;
    const float value = static_cast<float>(item->getDouble());
    if (!std::isfinite(value)) {
        complain(*item, jString("\"") + key + "\" is out of range");
        return false;
    }
    out = value;
    return true;
}

bool DataReader::read(const char* key, jString& out) const {
    const Item* const item = getItem(key, Item::STRING, "a text");
    if (item) out = item->getString();
    return item != nullptr;
}

bool DataReader::readNumbers(const char* key, double* out, int n) const {
    const Item* const item = getItem(key);
    if (!item) return false;
    double values[4];
    bool good = item->getArray().size() == n && item->getDoubles(values, n) == n;
    for (int i = 0; good && i < n; ++i) good = std::isfinite(static_cast<float>(values[i]));
    if (!good) {
        complain(*item, jString("\"") + key + "\" must be " + ToString(n) + " numbers");
        return false;
    }
    std::copy(values, values + n, out);
    return true;
}

bool DataReader::read(const char* key, dvec3& out) const {
    double v[3];
    if (!readNumbers(key, v, 3)) return false;
    out = dvec3(v[0], v[1], v[2]);
    return true;
}

bool DataReader::read(const char* key, vec3& out) const {
    dvec3 v;
    if (!read(key, v)) return false;
    out = narrow(v);
    return true;
}

bool DataReader::read(const char* key, vec4& out) const {
    const Item* const item = m_package.getItem(key);
    const int n = item && item->getArray().size() == 3 ? 3 : 4;
    double v[4] = {0.0, 0.0, 0.0, 1.0};
    if (!readNumbers(key, v, n)) return false;
    out = vec4(static_cast<float>(v[0]), static_cast<float>(v[1]), static_cast<float>(v[2]), static_cast<float>(v[3]));
    return true;
}

int DataReader::findName(const char* key, const char* const* names, std::size_t count) const {
    jString text;
    if (!read(key, text)) return -1;
    for (std::size_t i = 0; i < count; ++i) {
        if (text == names[i]) return static_cast<int>(i);
    }
    complain(*m_package.getItem(key), "unknown \"" + std::string(key) + "\": \"" + text + "\"");
    return -1;
}

const Package* DataReader::getPackage(const char* key) const {
    const Item* const item = getItem(key, Item::PACKAGE, "{ … }");
    return item ? item->getPackage() : nullptr;
}

const jVector<Item>& DataReader::getArray(const char* key) const {
    static const jVector<Item> empty;
    const Item* const item = getItem(key, Item::ARRAY, "a list");
    return item ? item->getArray() : empty;
}

const Package* DataReader::asPackage(const Item& element, const char* what) const {
    if (!element.getPackage()) complain(element, jString(what) + " must be { … }");
    return element.getPackage();
}
