// The folder of the running engine's files.
#include "text/RuntimeRoot.h"

#include <filesystem>

namespace {

namespace fs = std::filesystem;

fs::path& root() {
    static fs::path instance;
    return instance;
}

}  // namespace

void setRuntimeRoot(const jString& folder) {
    root() = folder.empty() ? fs::path() : fs::weakly_canonical(fs::absolute(std::string(folder)));
}

jString resolvePath(const jString& path) {
    if (root().empty()) return path;
    const fs::path file = (root() / fs::path(std::string(path))).lexically_normal();
    const fs::path below = file.lexically_relative(root());
    if (below.empty() || *below.begin() == "..") return {};
    return file.string();
}
