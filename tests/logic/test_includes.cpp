// Which headers each folder may include.
#include <gtest/gtest.h>
#include <regex.h>

#include <filesystem>
#include <fstream>

#include "support/Paths.h"

namespace {

namespace fs = std::filesystem;

const std::string STANDARD = R"([a-z_]+|[a-z]+\.h|(sys|netinet|arpa|linux)/[a-z_]+\.h)";  // <vector>, <dlfcn.h>

const struct {
    std::vector<const char*> folders;
    std::string allowed;  ///< of the whole name between the delimiters
} RULES[] = {
    {{"engine/include"}, R"([a-z_]+|engine/\w+/\w+\.h)"},
    {{"engine/src"},
     STANDARD + R"(|engine/\w+/\w+\.h)" +
         R"(|(action|camera|core|globe|gui|input|math|memory|net|physics|scene|text|track)/\w+\.h)" +
         R"(|Bullet\w*/.*|LinearMath/.*|bt\w+\.h|embree3/.*|(gdal|cpl|ogr)_?\w*\.h|nlohmann/.*|tiny_gltf\.h)" +
         R"(|kiss_fft\.h)"},
    {{"common", "src"}, R"([a-z_]+|engine/\w+/\w+\.h|(src|common)(/\w+)+\.h)"},
    {{"render"},
     STANDARD + R"(|engine/\w+/\w+\.h|render/\w+\.h|(effects|frame|gui|mirror|sea|shadow|sky|terrain)/\w+\.h)" +
         R"(|osg\w*/.*|EGL/\w+\.h|imgui\.h|fontconfig/fontconfig\.h|shader_texts\.inc)"},
    {{"host"}, STANDARD + R"(|\w+\.h)"},
    // Of the plug-in only what it exports.
    {{"app"},
     STANDARD + R"(|engine/\w+/\w+\.h|src/(logic|deck)/\w+\.h|(common|render|app)(/\w+)+\.h|\w+\.h)" +
         R"(|CLI/\w+\.hpp)"},
};
const struct {
    const char* folder;
    std::string allowed;  ///< there and nowhere else
} PANELS = {"engine/src/gui", R"(imgui\w*\.h|imstb_\w+\.h|fontconfig/\w+\.h)"};

/// The whole text against an extended expression.
bool matches(const std::string& text, const std::string& pattern) {
    regex_t regex;
    if (regcomp(&regex, ("^(" + pattern + ")$").c_str(), REG_EXTENDED | REG_NOSUB) != 0) return false;
    const bool found = regexec(&regex, text.c_str(), 0, nullptr, 0) == 0;
    regfree(&regex);
    return found;
}

/// The header that a line includes, empty when it includes none.
std::string includedBy(const std::string& line) {
    const std::size_t directive = line.find_first_not_of(" \t");
    if (directive == std::string::npos || line.compare(directive, 8, "#include") != 0) return {};
    const std::size_t open = line.find_first_of("<\"", directive);
    const std::size_t close = line.find_first_of(">\"", open + 1);
    return open == std::string::npos || close == std::string::npos ? "?" : line.substr(open + 1, close - open - 1);
}

TEST(Includes, EveryFolderKeepsToItsOwn) {
    int headers = 0;
    for (const auto& rule : RULES) {
        for (const char* folder : rule.folders) {
            for (const auto& entry : fs::recursive_directory_iterator(fs::path(DECKVIEW_SOURCE) / folder)) {
                const std::string kind = entry.path().extension();
                if (kind != ".h" && kind != ".cpp") continue;
                const bool in_panels = entry.path().parent_path() == fs::path(DECKVIEW_SOURCE) / PANELS.folder;
                std::ifstream in(entry.path());
                std::string line;
                for (int number = 1; std::getline(in, line); ++number) {
                    const std::string name = includedBy(line);
                    if (name.empty()) continue;
                    EXPECT_TRUE(matches(name, rule.allowed) || (in_panels && matches(name, PANELS.allowed)))
                        << entry.path() << ":" << number << ": " << name;
                    ++headers;
                }
            }
        }
    }
    EXPECT_GT(headers, 200);
}

}  // namespace
