// Screenshots through the scene graph's writers.
#include "frame/ImageFile.h"

#include <osg/Image>
#include <osgDB/Registry>

#include <algorithm>
#include <filesystem>
#include <fstream>

bool writePng(const Snapshot& picture, const std::string& file, std::string& error) {
    osg::ref_ptr<osg::Image> image = new osg::Image;
    image->allocateImage(picture.width, picture.height, 1, GL_RGB, GL_UNSIGNED_BYTE, 1);
    const std::size_t row = static_cast<std::size_t>(picture.width) * 3;
    for (int y = 0; y < picture.height; ++y) {
        const auto from = picture.rgb.begin() + static_cast<std::ptrdiff_t>(row) * (picture.height - 1 - y);
        std::copy_n(from, row, image->data(0, static_cast<unsigned>(y)));
    }
    std::error_code failure;
    const std::filesystem::path folder = std::filesystem::path(file).parent_path();
    if (!folder.empty()) std::filesystem::create_directories(folder, failure);
    std::ofstream out(file, std::ios::binary);
    auto* const writer = osgDB::Registry::instance()->getReaderWriterForExtension("png");
    if (!writer) {
        error = "the scene graph's PNG plug-in is missing";
    } else if (!out || !writer->writeImage(*image, out).success() || !out.flush()) {
        error = "\"" + file + "\" cannot be written";
    }
    return error.empty();
}
