// Writes screenshots with the scene graph's writers.
#include "frame/ImageFile.h"

#include <osg/Image>
#include <osgDB/Registry>

#include <filesystem>
#include <fstream>

bool writePng(Snapshot picture, const std::string& file, std::string& error) {
    osg::ref_ptr<osg::Image> image = new osg::Image;
    image->setImage(picture.width, picture.height, 1, GL_RGB, GL_RGB, GL_UNSIGNED_BYTE, picture.rgb.data(),
                    osg::Image::NO_DELETE, 1);
    image->flipVertical();  // the writers expect the lowest row first
    auto* const writer = osgDB::Registry::instance()->getReaderWriterForExtension("png");
    if (!writer) {
        error = "the scene graph's PNG plug-in is missing";
        return false;
    }
    std::error_code failure;
    const std::filesystem::path folder = std::filesystem::path(file).parent_path();
    if (!folder.empty()) std::filesystem::create_directories(folder, failure);
    std::ofstream out(file, std::ios::binary);
    if (out && writer->writeImage(*image, out).success() && out.flush()) return true;
    error = "\"" + file + "\" cannot be written";
    return false;
}
