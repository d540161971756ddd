// Which headers each folder may include.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <regex>

namespace {

namespace fs = std::filesystem;

const std::string STANDARD = R"([a-z_]+|[a-z]+\.h)";  // <vector>, <dlfcn.h>
const std::string POSIX = R"((sys|netinet|arpa|linux)/[a-z_]+\.h)";

struct Rule {
    std::vector<const char*> folders;
    std::string allowed;  ///< of the whole name between the delimiters
};

const Rule RULES[] = {
    {{"engine/include"}, R"([a-z_]+|engine/\w+/\w+\.h)"},
    {{"engine/src"},
     STANDARD + "|" + POSIX +
         R"(|engine/\w+/\w+\.h|\w+/\w+\.h|Bullet\w*/.*|LinearMath/.*|bt\w+\.h|embree3/.*|(gdal|cpl|ogr)_?\w*\.h|)"
         R"(nlohmann/.*|tiny_gltf\.h)"},
    {{"common", "src"}, R"([a-z_]+|engine/\w+/\w+\.h|(src|common)(/\w+)+\.h)"},
    {{"host"}, STANDARD + "|" + POSIX + R"(|\w+\.h)"},
    {{"app"}, STANDARD + "|" + POSIX + R"(|engine/\w+/\w+\.h|(src|common|render|app)(/\w+)+\.h|\w+\.h|CLI/\w+\.hpp)"},
    {{"render"}, R"([^<]*)"},
};
/// Never, wherever it is: one subject's library in another's folder.
const std::regex PICTURE(R"(osg.*|EGL/.*|GL/.*|imgui.*)");

void scan(const fs::path& file, const Rule& rule, bool picture) {
    static const std::regex include(R"(^\s*#\s*include\s*[<"]([^>"]+)[>"].*)");
    const std::regex allowed(rule.allowed);
    std::ifstream in(file);
    std::string line;
    for (int number = 1; std::getline(in, line); ++number) {
        std::smatch match;
        if (!std::regex_match(line, match, include)) continue;
        const std::string name = match[1];
        const bool good = std::regex_match(name, allowed) && (picture || !std::regex_match(name, PICTURE));
        EXPECT_TRUE(good) << file << ":" << number << ": " << name;
    }
}

TEST(Includes, EveryFolderKeepsToItsOwn) {
    int files = 0;
    for (const Rule& rule : RULES) {
        for (const char* folder : rule.folders) {
            const fs::path root = fs::path(DECKVIEW_SOURCE) / folder;
            if (!fs::exists(root)) continue;
            for (const auto& entry : fs::recursive_directory_iterator(root)) {
                const std::string kind = entry.path().extension();
                if (kind != ".h" && kind != ".cpp") continue;
                scan(entry.path(), rule, std::string(folder) == "render");
                ++files;
            }
        }
    }
    EXPECT_GT(files, 50);
}

}  // namespace
