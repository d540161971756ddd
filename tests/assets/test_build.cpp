// What builds the demonstration data gives the same bytes each time, so that a file changes only with its builder.
#include <gdal_priv.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "effects/Effects.h"
#include "plan/Builders.h"
#include "support/Paths.h"
#include "support/TestScene.h"

namespace fs = std::filesystem;

TEST(BuildAssets, WritesTheSameBytesAsTheBuildDid) {
    GDALAllRegister();
    const TestFolder folder;
    const std::string root = folder.getPath().string();
    writeParticlePictures(root);
    writeDeckCrew(root);
    writeFlightPath(root);
    const auto read = [](const fs::path& path) {
        std::ifstream in(path, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), {});
    };
    int files = 0;
    for (const auto& entry : fs::recursive_directory_iterator(root)) {
        if (!entry.is_regular_file()) continue;
        ++files;
        const fs::path first = fs::path(DECKVIEW_ROOT) / fs::relative(entry.path(), root);
        EXPECT_TRUE(read(entry.path()) == read(first)) << first;
    }
    EXPECT_GT(files, 5);
}
