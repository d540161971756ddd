// Images as textures.
#pragma once

#include <osg/Texture2D>
#include <osg/observer_ptr>

#include <map>
#include <memory>
#include <utility>

struct ImageData;

/// Decodes each image once while something uses its texture.
class TextureStore {
public:
    /// The texture of an image, with mipmaps; `is_color` for sRGB values, which shaders decode, else for plain numbers.
    /// A chequered stand-in, with one log line, when the image cannot be decoded.
    osg::ref_ptr<osg::Texture2D> get(const std::shared_ptr<const ImageData>& image, bool is_color);

private:
    struct Entry {
        std::shared_ptr<const ImageData> image;
        osg::observer_ptr<osg::Texture2D> texture;
    };
    std::map<std::pair<const ImageData*, bool>, Entry> m_entries;
};

/// Of textures made from now on: samples along a slant. 1 takes one and costs least where the processor draws.
void setTextureAnisotropy(float most);

/// Its image goes as soon as the device has it. REQUIRES that nothing else reads the image.
void keepOnDeviceOnly(osg::Texture2D& texture);

/// Red, green and blue of a byte each in half the memory, dithered: for what has no alpha.
osg::ref_ptr<osg::Image> pack(const osg::Image& image);

/// The texture of an image file of the runtime root; the same stand-in and line.
osg::ref_ptr<osg::Texture2D> loadTexture(const std::string& path, bool is_color = true);
