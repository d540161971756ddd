// The drawing states of the world's materials.
#pragma once

#include <osg/StateSet>

#include <cstdint>
#include <unordered_map>

#include "base/TextureStore.h"

class Material;
class ShaderLibrary;

constexpr unsigned TANGENT_ATTRIBUTE = 6;

/// Vertex attributes of a surface besides positions.
struct SurfaceShape {
    bool normals = true, uvs = true, tangents = false;
};

/// One state per material in use and surface shape.
class MaterialStates {
public:
    explicit MaterialStates(ShaderLibrary& shaders) : m_shaders(shaders) {}
    /// The material's state for surfaces of this shape; adds a user. The material must outlive its release.
    osg::StateSet* acquire(const Material& material, const SurfaceShape& shape);
    void release(const Material* material);
    /// Updates the states of materials whose parameters changed.
    void update();
    int getNumMaterials() const { return static_cast<int>(m_entries.size()); }

private:
    struct Entry {
        osg::ref_ptr<osg::StateSet> states[8];  ///< indexed by shape
        std::uint32_t revision = 0;
        int users = 0;
    };

    osg::ref_ptr<osg::StateSet> make(const Material& material, const SurfaceShape& shape);
    static void write(const Material& material, osg::StateSet& state);

    ShaderLibrary& m_shaders;
    TextureStore m_textures;
    std::unordered_map<const Material*, Entry> m_entries;
};
