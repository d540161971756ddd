// Which headers the sources of each folder may include, and that no folders include each other in a circle.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>

#include "support/Paths.h"

namespace {

namespace fs = std::filesystem;

const std::string CONTRACT = R"(engine/include/engine/\w+)";
const std::string PLUGIN = CONTRACT + R"(|common(/\w+)?)";
const std::string SYSTEM = R"([a-z]+\.h|(sys|net|netinet|arpa)/\w+\.h)";
const std::string GDAL = R"((gdal|cpl|ogr)_?\w*\.h)";
const std::string OSG = R"(osg\w*/.*)";
const std::string TESTED = R"(support/Paths\.h|(gtest|GeographicLib|X11|GL)/.*|)" + SYSTEM;

/// For an engine subject `engine/x` is engine/include/engine/x together with engine/src/x. The two whose contracts
/// refer to each other's sources are apart: there engine/x is the contract and engine/src/x what implements it.
const struct Rule {
    std::string folder;
    std::string folders;    ///< whose headers it may include, besides its own; expression of the whole name
    std::string libraries;  ///< headers from outside, besides the C++ standard library's
} RULES[] = {
    {"engine/include/engine", "", ""},  // the mark of exports, which all may include
    {"engine/text", "", R"(nlohmann/json\.hpp)"},
    {"engine/math", "", ""},
    {"engine/memory", "engine/text", ""},
    {"engine/globe", "engine/math", ""},
    {"engine/net", "engine/text", SYSTEM},
    {"engine/action", "engine/(memory|text)", ""},
    {"engine/gui", "engine/(math|memory|text)", R"(imgui\w*\.h|imstb_\w+\.h|fontconfig/fontconfig\.h)"},
    {"engine/input", "engine/(gui|text)", ""},
    {"engine/physics", "engine/(math|text)", ""},
    {"engine/scene", "engine/(math|memory|physics|text)", ""},
    {"engine/src/physics", "engine/(globe|math|physics|scene|text)",
     R"(Bullet(Collision|Dynamics)/.*|LinearMath/.*|btBullet\w+\.h)"},
    {"engine/src/scene", "engine/(globe|math|physics|scene|text|src/physics)",
     R"(embree3/rtcore\.h|tiny_gltf\.h|nlohmann/json\.hpp|kiss_fft\.h|)" + GDAL},
    {"engine/camera", "engine/(math|scene|text)", ""},
    {"engine/track", "engine/(text|src/scene)", ""},
    {"engine/core", "engine/(camera|globe|gui|input|math|net|scene|text|src/scene)", ""},

    {"render", "", ""},
    {"render/src/base", CONTRACT + "|render", OSG + R"(|shader_texts\.inc)"},
    {"render/src/sky", CONTRACT + "|render/src/base", OSG},
    {"render/src/terrain", CONTRACT + "|render/src/base", OSG},
    {"render/src/effects", CONTRACT + "|render/src/base", OSG + R"(|fontconfig/fontconfig\.h)"},
    {"render/src/gui", CONTRACT + "|render/src/base", OSG + R"(|imgui\.h)"},
    {"render/src/mirror", CONTRACT + "|render/src/base", OSG + R"(|meshoptimizer\.h)"},
    {"render/src/sea", CONTRACT + "|render/src/(base|mirror)", OSG},
    {"render/src/shadow", CONTRACT + "|render/src/(base|mirror)", OSG},
    {"render/src/frame", CONTRACT + R"(|render|render/src/\w+)", OSG + R"(|EGL/\w+\.h|)" + SYSTEM},

    {"common", CONTRACT, ""},
    {"common/actions", CONTRACT, ""},
    {"common/ship", PLUGIN, ""},
    {"src/deck", PLUGIN, ""},
    {"src/kit", CONTRACT, ""},
    {"src/aircraft", PLUGIN + "|src/kit", ""},
    {"src/logic", PLUGIN + "|src/(aircraft|deck|kit)", ""},

    {"app/scene", PLUGIN + "|src/logic", ""},
    {"app", PLUGIN + "|src/(logic|deck)|render|app/scene", R"(CLI/CLI\.hpp|)" + SYSTEM},
    {"host", "", SYSTEM},

    {"assets/plan", "engine/include/engine/(globe|math)", ""},
    {"assets/text", "engine/include/engine/math", R"(nlohmann/json\.hpp)"},
    {"assets/geometry", "engine/include/engine/math|assets/(plan|text)", R"(tiny_gltf\.h|)" + GDAL},
    {"assets/gui", "assets/(geometry|text)", ""},
    {"assets/effects", "assets/(geometry|plan|text)", ""},
    {"assets/models", "engine/include/engine/math|assets/(effects|geometry|plan|text)", ""},
    {"assets/world", "engine/include/engine/(globe|math)|assets/(plan|text)", GDAL},
    {"assets", R"(assets/\w+)", GDAL},

    {"tests/support", CONTRACT, TESTED},
    {"tests/foreign", PLUGIN, ""},
    {"tests/tree", PLUGIN + "|tests/support", TESTED},
    {"tests/engine", CONTRACT + R"(|engine/src/\w+|tests/support)", TESTED},
    {"tests/logic", PLUGIN + R"(|src/\w+|tests/support)", TESTED},
    {"tests/render", CONTRACT + R"(|render(/src/\w+)?|tests/support)", OSG + "|" + TESTED},
    {"tests/app", PLUGIN + R"(|src/\w+|app(/scene)?|render|tests/support)", TESTED},
    {"tests/assets", CONTRACT + R"(|assets(/\w+)?|tests/support)", GDAL + "|" + TESTED},
    {"tests/host", "tests/support", TESTED},
    {"bench", PLUGIN + R"(|engine/src/\w+|src/\w+|render|tests/support)",
     R"(benchmark/.*|embree3/rtcore\.h|kiss_fft\.h|imgui\.h|)" + TESTED},
};

bool matches(const std::string& text, const std::string& pattern) {
    static std::map<std::string, std::regex> made;
    return std::regex_match(text, made.try_emplace(pattern, pattern).first->second);
}

/// The folder, from the top of the tree, of a header that a source includes; empty when it is not of the tree.
std::string findHeader(const fs::path& source, const std::string& name) {
    const fs::path top(DECKVIEW_SOURCE), part = top / *source.lexically_relative(top).begin();
    for (const fs::path& root : {source.parent_path(), top / "engine/include", part, part / "src", top, top / "tests",
                                 top / "engine/src", top / "render/src", top / "assets"}) {
        if (fs::is_regular_file(root / name)) {
            return (root / name).lexically_normal().parent_path().lexically_relative(top);
        }
    }
    return {};
}

/// The name of a folder in the rules, as a source of `includer` refers to it.
std::string ruleName(const std::string& folder, const std::string& includer) {
    static const std::regex subject("engine/include/engine/(\\w+)|engine/src/(?!scene$|physics$)(\\w+)");
    return includer.starts_with("engine") ? std::regex_replace(folder, subject, "engine/$1$2") : folder;
}

/// What sources of the rule's folder may include instead of a header; empty when they may include it. `folder` is that
/// of the header, empty for one from outside.
std::string whatInstead(const Rule& rule, const std::string& folder, const std::string& header, bool is_contract) {
    if (!folder.empty()) return matches(folder, rule.folders) ? "" : "headers of [" + rule.folders + "]";
    const std::string libraries = is_contract ? "" : rule.libraries;
    const bool may = matches(header, "[a-z_]+") || matches(header, libraries);
    return may ? "" : "the C++ standard library and [" + libraries + "]";
}

/// Checks a source's includes and adds their folders to those that its own folder refers to.
void checkSource(const fs::path& file, const Rule& rule, std::set<std::string>& referred) {
    static const std::regex directive("\\s*#\\s*include\\s*[<\"]([^>\"]+)[>\"].*");
    const std::string path = file.lexically_relative(DECKVIEW_SOURCE);
    std::ifstream in(file);
    std::string line;
    std::smatch found;
    for (int number = 1; std::getline(in, line); ++number) {
        if (!std::regex_match(line, found, directive)) continue;
        const std::string folder = ruleName(findHeader(file, found[1]), path);
        if (folder == rule.folder || folder == "engine/include/engine") continue;
        if (!folder.empty()) referred.insert(folder);
        EXPECT_EQ(whatInstead(rule, folder, found[1], path.starts_with("engine/include")), "")
            << path << ":" << number << " includes " << found[1] << ", which sources of " << rule.folder
            << " may not: they may include their own headers and the above. docs/architecture.md, Layers, tells why.";
    }
}

TEST(Includes, FoldersKeepToTheRulesAndMakeNoCircle) {
    std::map<std::string, std::set<std::string>> graph;
    for (const char* part : {"engine", "render", "common", "src", "app", "host", "assets", "tests", "bench"}) {
        for (const auto& entry : fs::recursive_directory_iterator(fs::path(DECKVIEW_SOURCE) / part)) {
            const fs::path& file = entry.path();
            if (file.extension() != ".h" && file.extension() != ".cpp") continue;
            const std::string folder = ruleName(file.parent_path().lexically_relative(DECKVIEW_SOURCE), part);
            const auto* const rule = std::find_if(std::begin(RULES), std::end(RULES),
                                                  [&](const Rule& candidate) { return candidate.folder == folder; });
            if (rule == std::end(RULES))
                ADD_FAILURE() << file << ": no rule here for " << folder << "; see docs/architecture.md, Layers";
            else
                checkSource(file, *rule, graph[folder]);
        }
    }
    EXPECT_GT(graph.size(), 40U);
    // What refers to nothing that is left, or is referred to by nothing, is removed, again and again: circles remain.
    const auto is_done = [&](const auto& node) {
        const auto is_left = [&](const std::string& to) { return graph.contains(to); };
        const auto refers = [&](const auto& other) { return other.second.contains(node.first); };
        return std::none_of(node.second.begin(), node.second.end(), is_left) ||
               std::none_of(graph.begin(), graph.end(), refers);
    };
    while (std::erase_if(graph, is_done)) {
    }
    for (const auto& [folder, referred] : graph) {
        for (const std::string& to : referred) {
            if (graph.contains(to)) ADD_FAILURE() << folder << " includes " << to << ", in a circle of folders";
        }
    }
}

}  // namespace
