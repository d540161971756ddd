// Structured text: reading into packages, writing back, overrides.
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <unordered_set>

#include "engine/text/Log.h"
#include "engine/text/Package.h"
#include "text/RuntimeRoot.h"

namespace {

using Json = nlohmann::ordered_json;

constexpr std::uintmax_t MAX_BYTES = 64u << 20;
constexpr std::size_t MAX_DEPTH = 64;
constexpr std::size_t MAX_VALUES = 1000000;  // about 200 MB in memory

/// Iterates over the text and counts lines, since the parser reports its position only for errors.
struct CountingIterator {
    using iterator_category = std::input_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char*;
    using reference = const char&;

    const char* at;
    int* line;

    reference operator*() const { return *at; }
    CountingIterator& operator++() {
        *line += *at == '\n';
        ++at;
        return *this;
    }
    CountingIterator operator++(int) {
        CountingIterator before = *this;
        ++*this;
        return before;
    }
    bool operator==(const CountingIterator& o) const { return at == o.at; }
    bool operator!=(const CountingIterator& o) const { return at != o.at; }
};

/// Builds the tree from the parser's events.
class TreeBuilder : public nlohmann::json_sax<Json> {
public:
    /// `file`: the path stored in every package of the tree.
    TreeBuilder(const int* line, const jString& file) : m_line(line), m_file(file) {}

    Package root;
    jString failure;  ///< error text with position; empty on success

    bool null() override { return put(Item()); }
    bool boolean(bool value) override { return put(make(&Item::setBool, value)); }
    bool number_integer(number_integer_t value) override { return put(make(&Item::setInt, std::int64_t{value})); }
    bool number_unsigned(number_unsigned_t value) override {
        if (value <= INT64_MAX) return put(make(&Item::setInt, static_cast<std::int64_t>(value)));
        return put(make(&Item::setDouble, static_cast<double>(value)));
    }
    bool number_float(number_float_t value, const string_t&) override {
        return put(make(&Item::setDouble, double{value}));
    }
    bool string(string_t& value) override {
        Item item;
        item.setString(value);
        return put(std::move(item));
    }
    bool binary(binary_t&) override { return false; }
    bool start_object(std::size_t) override { return open(false); }
    bool key(string_t& name) override {
        m_levels.back().key = name;
        m_levels.back().key_line = *m_line;
        return true;
    }
    bool end_object() override { return close(); }
    bool start_array(std::size_t) override { return open(true); }
    bool end_array() override { return close(); }
    bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception& error) override {
        const std::string text = error.what();
        const auto place = text.find("at line ");
        failure = place != std::string::npos
                      ? text.substr(place + 3)
                      : "line " + std::to_string(*m_line) + ": " + text.substr(text.find("] ") + 2);
        return false;
    }

private:
    struct Level {
        bool is_array = false;
        jString key;
        int key_line = 0;
        std::unordered_set<std::string> keys;
        Package package;
        jVector<Item> array;
    };

    template <class Setter, class Value>
    static Item make(Setter setter, Value value) {
        Item item;
        (item.*setter)(value);
        return item;
    }

    bool put(Item&& item) {
        if (m_levels.empty()) return fail("the text must be one { … }");
        if (++m_values > MAX_VALUES) return fail("more than 1,000,000 values");
        Level& level = m_levels.back();
        if (level.is_array) {
            item.setLine(*m_line);
            level.array.append(std::move(item));
        } else {
            item.setName(level.key);
            item.setLine(level.key_line);
            // The last value of a repeated key is used.
            if (level.keys.insert(level.key).second)
                level.package.append(std::move(item));
            else
                level.package.item(level.key.c_str()) = std::move(item);
        }
        return true;
    }

    bool open(bool is_array) {
        if (m_levels.empty() && is_array) return fail("the text must be one { … }");
        if (m_levels.size() >= MAX_DEPTH) return fail("nested deeper than 64 levels");
        m_levels.emplace_back();
        m_levels.back().is_array = is_array;
        m_levels.back().package.setPath(m_file);
        return true;
    }

    bool close() {
        Level level = std::move(m_levels.back());
        m_levels.pop_back();
        if (m_levels.empty()) {
            root = std::move(level.package);
            return true;
        }
        Item item;
        if (level.is_array)
            item.setArray(std::move(level.array));
        else
            item.setPackage(std::move(level.package));
        return put(std::move(item));
    }

    bool fail(const char* why) {
        failure = "line " + std::to_string(*m_line) + ": " + why;
        return false;
    }

    const int* m_line;
    const jString m_file;
    std::size_t m_values = 0;
    std::vector<Level> m_levels;
};

std::map<jString, Package>& overrides() {
    static std::map<jString, Package> instance;
    return instance;
}

void layOverrides(const jString& path, Package& package) {
    const auto found = overrides().find(path);
    if (found == overrides().end()) return;
    for (const Item& item : found->second) package.item(item.getName().c_str()) = item;
}

/// False with a log line when the file exists but cannot be read; false without one when it is missing and not
/// required.
bool readFile(const jString& path, jString& text, bool required) {
    const std::filesystem::path file(resolvePath(path));
    std::error_code error;
    if (!std::filesystem::is_regular_file(file, error)) {
        if (required || std::filesystem::exists(file, error)) jLog::error("%s: no such file", path.c_str());
        return false;
    }
    if (std::filesystem::file_size(file, error) > MAX_BYTES) {
        jLog::error("%s: larger than 64 MiB", path.c_str());
        return false;
    }
    std::ifstream in(file, std::ios::binary);
    text.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    if (!in) {
        jLog::error("%s: cannot be read: %s", path.c_str(), std::strerror(errno));
        return false;
    }
    return true;
}

Json toJson(const Package& package);

Json toJson(const Item& item) {
    switch (item.getType()) {
        case Item::NONE:
            return nullptr;
        case Item::BOOL:
            return item.getBool();
        case Item::INT:
            return item.getInt();
        case Item::DOUBLE:
            return item.getDouble();
        case Item::STRING:
            return static_cast<const std::string&>(item.getString());
        case Item::PACKAGE:
            return toJson(*item.getPackage());
        case Item::ARRAY:
            break;
    }
    Json array = Json::array();
    for (const Item& element : item.getArray()) array.push_back(toJson(element));
    return array;
}

Json toJson(const Package& package) {
    Json object = Json::object();
    for (const Item& item : package) object[item.getName()] = toJson(item);
    return object;
}

}  // namespace

bool mjl::parse(const jString& text, const jString& name, Package& package) {
    package.clear();
    package.setPath(name);
    int line = 1;
    TreeBuilder builder(&line, name);
    const char* const begin = text.data();
    const bool ok = Json::sax_parse(CountingIterator{begin, &line}, CountingIterator{begin + text.size(), &line},
                                    &builder, nlohmann::detail::input_format_t::json, true, true);
    if (!ok) {
        jLog::error("%s: %s", name.c_str(), builder.failure.c_str());
        return false;
    }
    package = std::move(builder.root);
    package.setPath(name);
    return true;
}

bool mjl::open(const jString& path, Package& package, bool required) {
    package.clear();
    package.setPath(path);
    jString text;
    const bool ok = readFile(path, text, required) && parse(text, path, package);
    layOverrides(path, package);
    return ok;
}

bool mjl::save(const jString& path, const Package& package, bool compact) {
    std::ofstream out(std::filesystem::path(resolvePath(path)), std::ios::binary | std::ios::trunc);
    out << toJson(package).dump(compact ? -1 : 4, ' ', false, Json::error_handler_t::replace) << '\n';
    out.flush();
    if (!out) jLog::error("%s: cannot be written: %s", path.c_str(), std::strerror(errno));
    return static_cast<bool>(out);
}

void mjl::setOverride(const jString& path, const jString& key, const jString& value) {
    Package parsed;
    const std::string text = "{\"value\":" + value + "}";
    Item item;
    int line = 1;
    TreeBuilder builder(&line, path);
    const bool is_json = Json::sax_parse(CountingIterator{text.data(), &line},
                                         CountingIterator{text.data() + text.size(), &line}, &builder) &&
                         builder.root.size() == 1;
    if (is_json)
        item = builder.root[0];
    else
        item.setString(value);
    item.setName(key);
    item.setLine(0);
    overrides()[path].item(key.c_str()) = item;
}

void mjl::clearOverrides() {
    overrides().clear();
}
