// Images as textures.
#pragma once

#include <osg/Texture2D>
#include <osg/observer_ptr>

#include <map>
#include <memory>
#include <utility>

struct ImageData;

/// Decodes each image once and keeps it as long as its texture is in use.
class TextureStore {
public:
    /// The texture of an image, with mipmaps; `is_color` for sRGB values, which shaders decode, otherwise for plain
    /// numbers. When the image cannot be decoded: a chequered replacement and one log line.
    osg::ref_ptr<osg::Texture2D> get(const std::shared_ptr<const ImageData>& image, bool is_color);

private:
    struct Entry {
        std::shared_ptr<const ImageData> image;
        osg::observer_ptr<osg::Texture2D> texture;
    };
    std::map<std::pair<const ImageData*, bool>, Entry> m_entries;
};

/// Maximum anisotropy of textures made from now on. 1 disables anisotropic filtering and costs least with a software
/// driver.
void setTextureAnisotropy(float most);

/// Frees the texture's image as soon as it is on the device. REQUIRES that nothing else reads the image.
void keepOnDeviceOnly(osg::Texture2D& texture);

/// Packs three bytes of red, green and blue into half the memory, dithered. For images without alpha.
osg::ref_ptr<osg::Image> pack(const osg::Image& image);

/// The texture of an image file below the runtime root; the same replacement and log line on failure.
osg::ref_ptr<osg::Texture2D> loadTexture(const std::string& path, bool is_color = true);
