// Decodes images with the scene graph's readers.
#include "base/TextureStore.h"

#include <osg/Image>
#include <osgDB/Registry>

#include <cstdint>
#include <fstream>
#include <sstream>

#include "engine/core/Engine.h"
#include "engine/scene/Material.h"
#include "engine/text/Log.h"

namespace {

constexpr float SHARPENING = -0.7f;  // LOD bias: less blur at oblique angles, hardly any flicker in frontal views
float g_anisotropy = 1.0f;

const char* formatOf(const std::string& bytes) {
    if (bytes.compare(0, 4, "\x89PNG") == 0) return "png";
    if (bytes.compare(0, 2, "\xff\xd8") == 0) return "jpeg";
    if (bytes.compare(0, 4, "DDS ") == 0) return "dds";
    return nullptr;
}

osg::ref_ptr<osg::Image> standIn() {
    constexpr int SIZE = 8;
    osg::ref_ptr<osg::Image> image = new osg::Image;
    image->allocateImage(SIZE, SIZE, 1, GL_RGBA, GL_UNSIGNED_BYTE);
    for (int y = 0; y < SIZE; ++y) {
        for (int x = 0; x < SIZE; ++x) {
            const unsigned char green = (x + y) % 2 == 0 ? 0 : 60;
            const unsigned char texel[] = {255, green, 255, 255};
            std::copy(texel, texel + 4, image->data(static_cast<unsigned>(x), static_cast<unsigned>(y)));
        }
    }
    return image;
}

osg::ref_ptr<osg::Image> decode(const std::string& bytes, const std::string& name) {
    const char* const format = formatOf(bytes);
    auto* const reader = format ? osgDB::Registry::instance()->getReaderWriterForExtension(format) : nullptr;
    if (reader) {
        std::istringstream in(bytes);
        // Lowest row first, like the readers of other formats.
        const osg::ref_ptr<osgDB::Options> options = new osgDB::Options("dds_flip");
        osgDB::ReaderWriter::ReadResult result = reader->readImage(in, options);
        if (result.validImage()) return result.getImage();
    }
    jLog::error("%s: the image cannot be decoded; it must be PNG, JPEG or DDS", name.c_str());
    return standIn();
}

GLint formatOf(const osg::Image& image) {
    if (image.isCompressed()) return image.getInternalTextureFormat();
    if (image.getDataType() == GL_UNSIGNED_SHORT_5_6_5) return GL_RGB565;
    const unsigned components = osg::Image::computeNumComponents(image.getPixelFormat());
    return components == 3 ? GL_RGB8 : components == 4 ? GL_RGBA8 : image.getInternalTextureFormat();
}

osg::ref_ptr<osg::Texture2D> makeTexture(const std::string& bytes, const std::string& name, bool is_color) {
    osg::ref_ptr<osg::Image> image = decode(bytes, name);
    if (is_color && image->getPixelFormat() == GL_RGB && image->getDataType() == GL_UNSIGNED_BYTE) image = pack(*image);
    osg::ref_ptr<osg::Texture2D> texture = new osg::Texture2D(image);
    texture->setInternalFormat(formatOf(*image));
    texture->setWrap(osg::Texture::WRAP_S, osg::Texture::REPEAT);
    texture->setWrap(osg::Texture::WRAP_T, osg::Texture::REPEAT);
    texture->setMaxAnisotropy(g_anisotropy);
    if (g_anisotropy <= 1.0f) {
        texture->setFilter(osg::Texture::MIN_FILTER, osg::Texture::LINEAR_MIPMAP_NEAREST);
        texture->setLODBias(SHARPENING);
    }
    texture->setResizeNonPowerOfTwoHint(false);
    keepOnDeviceOnly(*texture);
    return texture;
}

}  // namespace

osg::ref_ptr<osg::Image> pack(const osg::Image& image) {
    // Ordered dither, after Bayer (1973), in sixteenths of a step.
    constexpr int DITHER[4][4] = {{0, 8, 2, 10}, {12, 4, 14, 6}, {3, 11, 1, 9}, {15, 7, 13, 5}};
    osg::ref_ptr<osg::Image> packed = new osg::Image;
    packed->allocateImage(image.s(), image.t(), 1, GL_RGB, GL_UNSIGNED_SHORT_5_6_5, 1);
    auto* out = reinterpret_cast<std::uint16_t*>(packed->data());
    for (int y = 0; y < image.t(); ++y) {
        const unsigned char* rgb = image.data(0, static_cast<unsigned>(y));
        for (int x = 0; x < image.s(); ++x, rgb += 3) {
            const int step = DITHER[y % 4][x % 4];
            const auto round = [step](int value, int most) {
                return (value * most * 16 + step * 255 + 127) / (255 * 16);
            };
            *out++ = static_cast<std::uint16_t>(round(rgb[0], 31) << 11 | round(rgb[1], 63) << 5 | round(rgb[2], 31));
        }
    }
    return packed;
}

void setTextureAnisotropy(float most) {
    g_anisotropy = most;
}

void keepOnDeviceOnly(osg::Texture2D& texture) {
    texture.getImage()->setDataVariance(osg::Object::STATIC);
    texture.setUnRefImageDataAfterApply(true);
}

osg::ref_ptr<osg::Texture2D> TextureStore::get(const std::shared_ptr<const ImageData>& image, bool is_color) {
    Entry& entry = m_entries[{image.get(), is_color}];
    osg::ref_ptr<osg::Texture2D> texture;
    if (entry.texture.lock(texture)) return texture;
    const std::vector<unsigned char> bytes = image->read();
    texture = makeTexture(std::string(bytes.begin(), bytes.end()), image->name, is_color);
    texture->getImage()->flipVertical();  // meshes count rows from the image's top
    entry = {image, texture.get()};
    std::erase_if(m_entries, [](const auto& item) { return !item.second.texture.valid(); });
    return texture;
}

osg::ref_ptr<osg::Texture2D> loadTexture(const std::string& path, bool is_color) {
    const jString file = Engine::get()->resolvePath(path);
    std::ifstream in(file, std::ios::binary);
    std::ostringstream bytes;
    bytes << in.rdbuf();
    return makeTexture(bytes.str(), path, is_color);
}
