// Which headers each folder may include.
#include <gtest/gtest.h>
#include <regex.h>

#include <filesystem>
#include <fstream>

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
     STANDARD + "|" + POSIX + R"(|engine/\w+/\w+\.h)" +
         R"(|(action|camera|core|globe|gui|input|math|memory|net|physics|scene|text|track)/\w+\.h)" +
         R"(|Bullet\w*/.*|LinearMath/.*|bt\w+\.h|embree3/.*|(gdal|cpl|ogr)_?\w*\.h|nlohmann/.*|tiny_gltf\.h)"},
    {{"common", "src"}, R"([a-z_]+|engine/\w+/\w+\.h|(src|common)(/\w+)+\.h)"},
    {{"host"}, STANDARD + "|" + POSIX + R"(|\w+\.h)"},
    {{"app"}, STANDARD + "|" + POSIX + R"(|engine/\w+/\w+\.h|(src|common|render|app)(/\w+)+\.h|\w+\.h|CLI/\w+\.hpp)"},
    {{"render"}, R"([^<]*)"},
};
/// Never, wherever it is: one subject's library in another's folder.
const std::string PICTURE = R"(osg.*|EGL/.*|GL/.*|imgui.*)";

/// An extended expression that a whole text may match.
class Pattern {
public:
    explicit Pattern(const std::string& text) {
        if (regcomp(&m_regex, ("^(" + text + ")$").c_str(), REG_EXTENDED) != 0) ADD_FAILURE() << text;
    }
    ~Pattern() { regfree(&m_regex); }
    Pattern(const Pattern&) = delete;
    Pattern& operator=(const Pattern&) = delete;
    bool matches(const std::string& text) const { return regexec(&m_regex, text.c_str(), 0, nullptr, 0) == 0; }

private:
    regex_t m_regex;
};

/// The header that a line includes, empty when it includes none.
std::string includedBy(const std::string& line) {
    const std::size_t directive = line.find_first_not_of(" \t");
    if (directive == std::string::npos || line.compare(directive, 8, "#include") != 0) return {};
    const std::size_t open = line.find_first_of("<\"", directive);
    const std::size_t close = line.find_first_of(">\"", open + 1);
    return open == std::string::npos || close == std::string::npos ? "?" : line.substr(open + 1, close - open - 1);
}

void scan(const fs::path& file, const Pattern& allowed, bool picture) {
    static const Pattern of_picture(PICTURE);
    std::ifstream in(file);
    std::string line;
    for (int number = 1; std::getline(in, line); ++number) {
        const std::string name = includedBy(line);
        if (name.empty()) continue;
        const bool good = allowed.matches(name) && (picture || !of_picture.matches(name));
        EXPECT_TRUE(good) << file << ":" << number << ": " << name;
    }
}

TEST(Includes, EveryFolderKeepsToItsOwn) {
    int files = 0;
    for (const Rule& rule : RULES) {
        const Pattern allowed(rule.allowed);
        for (const char* folder : rule.folders) {
            const fs::path root = fs::path(DECKVIEW_SOURCE) / folder;
            if (!fs::exists(root)) continue;
            for (const auto& entry : fs::recursive_directory_iterator(root)) {
                const std::string kind = entry.path().extension();
                if (kind != ".h" && kind != ".cpp") continue;
                scan(entry.path(), allowed, std::string(folder) == "render");
                ++files;
            }
        }
    }
    EXPECT_GT(files, 50);
}

}  // namespace
