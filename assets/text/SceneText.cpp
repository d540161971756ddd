// Structured text laid out for reading.
#include "text/SceneText.h"

#include <algorithm>
#include <cmath>

#include "text/Files.h"

namespace {

bool isPlain(const Json& value) {
    return value.is_array() &&
           std::none_of(value.begin(), value.end(), [](const Json& v) { return v.is_structured(); });
}

void printPlain(const Json& list, std::string& out) {
    for (std::size_t i = 0; i < list.size(); ++i) {
        out += i == 0 ? "[" : ", ";
        out += list[i].dump();
    }
    out += "]";
}

void print(const Json& value, int depth, std::string& out) {
    if (value.empty() || !value.is_structured()) {
        out += value.dump();
        return;
    }
    if (isPlain(value)) return printPlain(value, out);
    const std::string indent(static_cast<std::size_t>(4 * depth), ' ');
    out += value.is_object() ? "{\n" : "[\n";
    for (auto it = value.begin(); it != value.end(); ++it) {
        out += indent + "    ";
        if (value.is_object()) out += Json(it.key()).dump() + ": ";
        print(it.value(), depth + 1, out);
        out += std::next(it) == value.end() ? "\n" : ",\n";
    }
    out += indent + (value.is_object() ? "}" : "]");
}

/// Positions are computed with trigonometry: without rounding a zero would appear as -2.3e-13.
double tidy(double v) {
    return std::abs(v) < 1e-9 ? 0.0 : v;
}

}  // namespace

Json triple(const dvec3& v) {
    return Json::array({tidy(v.x), tidy(v.y), tidy(v.z)});
}

Json sceneNode(const std::string& type, const std::string& name, const dvec3& position) {
    Json node;
    if (type != "node") node["type"] = type;
    if (!name.empty()) node["name"] = name;
    if (length2(position) > 0.0) node["position"] = triple(position);
    return node;
}

void writeText(const std::string& path, const std::string& comment, const Json& value) {
    std::string text = "// " + comment + "\n";
    print(value, 0, text);
    writeFile(path, text + "\n");
}
