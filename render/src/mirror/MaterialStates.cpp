// Converts materials to shader programs, textures and uniforms.
#include "mirror/MaterialStates.h"

#include <osg/AlphaFunc>
#include <osg/BlendFunc>
#include <osg/CullFace>
#include <osg/Depth>

#include "base/Convert.h"
#include "base/FrameView.h"
#include "base/ShaderLibrary.h"
#include "engine/scene/Material.h"

namespace {

struct TextureUse {
    const char* define;
    const char* uniform;
    std::shared_ptr<const ImageData> Material::*image;
    bool is_color;
};

/// In the order of their texture units.
constexpr TextureUse TEXTURES[] = {{"BASE_TEXTURE", "u_base_texture", &Material::base_texture, true},
                                   {"SURFACE_TEXTURE", "u_surface_texture", &Material::metal_rough_texture, false},
                                   {"NORMAL_TEXTURE", "u_normal_texture", &Material::normal_texture, false},
                                   {"EMISSION_TEXTURE", "u_emission_texture", &Material::emission_texture, true}};

void setBlending(osg::StateSet& state) {
    state.setAttributeAndModes(new osg::BlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA));
    state.setAttributeAndModes(new osg::Depth(osg::Depth::GEQUAL, 0.0, 1.0, false));
    state.setRenderBinDetails(DRAW_BLENDED, "DepthSortedBin");
    state.setNestRenderBins(false);  // draw after the sky, whatever mesh the state belongs to
}

bool isMatte(const Material& material) {
    constexpr float MIN_ROUGHNESS = 0.6f, MAX_METALLIC = 0.1f;
    return !material.metal_rough_texture && material.roughness >= MIN_ROUGHNESS && material.metallic <= MAX_METALLIC;
}

int slotOf(const SurfaceShape& shape) {
    return (shape.normals ? 1 : 0) + (shape.uvs ? 2 : 0) + (shape.tangents ? 4 : 0);
}

}  // namespace

osg::StateSet* MaterialStates::acquire(const Material& material, const SurfaceShape& shape) {
    Entry& entry = m_entries[&material];
    ++entry.users;
    osg::ref_ptr<osg::StateSet>& state = entry.states[slotOf(shape)];
    if (entry.users == 1) entry.revision = material.getRevision();
    if (!state) {
        state = make(material, shape);
        write(material, *state);
    }
    return state;
}

void MaterialStates::release(const Material* material) {
    const auto found = m_entries.find(material);
    if (found != m_entries.end() && --found->second.users == 0) m_entries.erase(found);
}

void MaterialStates::update() {
    for (auto& [material, entry] : m_entries) {
        if (entry.revision == material->getRevision()) continue;
        entry.revision = material->getRevision();
        for (const auto& state : entry.states) {
            if (state) write(*material, *state);
        }
    }
}

osg::ref_ptr<osg::StateSet> MaterialStates::make(const Material& material, const SurfaceShape& shape) {
    osg::ref_ptr<osg::StateSet> state = new osg::StateSet;
    std::vector<std::string> defines;
    unsigned unit = 0;
    for (const TextureUse& use : TEXTURES) {
        const auto& image = material.*use.image;
        const bool usable = image && shape.uvs && (use.image != &Material::normal_texture || shape.tangents);
        if (usable) {
            defines.emplace_back(use.define);
            state->setTextureAttribute(unit, m_textures.get(image, use.is_color));
            state->addUniform(new osg::Uniform(use.uniform, static_cast<int>(unit)));
        }
        ++unit;
    }
    if (isMatte(material)) defines.emplace_back("MATTE");
    if (!shape.normals) defines.emplace_back("FLAT");
    if (material.alpha == Material::MASK) defines.emplace_back("MASK");
    if (material.alpha == Material::BLEND) setBlending(*state);
    if (material.double_sided) {
        defines.emplace_back("DOUBLE_SIDED");
        state->setMode(GL_CULL_FACE, osg::StateAttribute::OFF);
    }
    osg::Program* const program = m_shaders.getProgram("mesh", defines);
    program->addBindAttribLocation("a_tangent", TANGENT_ATTRIBUTE);
    state->setAttributeAndModes(program);
    return state;
}

void MaterialStates::write(const Material& material, osg::StateSet& state) {
    const vec4* const offset = material.getParameter("ui_offset");
    const vec4* const density = material.getParameter("density");
    const vec3 emission = material.emission * (density ? density->x : 1.0f);
    state.getOrCreateUniform("u_base_color", osg::Uniform::FLOAT_VEC4)->set(toOsg(material.base_color));
    state.getOrCreateUniform("u_emission", osg::Uniform::FLOAT_VEC3)->set(toOsg(emission));
    state.getOrCreateUniform("u_surface", osg::Uniform::FLOAT_VEC3)
        ->set(osg::Vec3f(material.metallic, material.roughness, material.alpha_cutoff));
    state.getOrCreateUniform("u_uv_offset", osg::Uniform::FLOAT_VEC2)
        ->set(offset ? osg::Vec2f(offset->x, offset->y) : osg::Vec2f());
}
