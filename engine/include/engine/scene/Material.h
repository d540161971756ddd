// Surface appearance, and named parameters set by the logic.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "engine/Api.h"
#include "engine/math/Vec.h"
#include "engine/text/Containers.h"

/// An encoded image (PNG, JPEG or DDS bytes). Only the picture decodes it; its bytes are not kept in memory when they
/// are in a file.
struct ENGINE_API ImageData {
    jString name;                      ///< file and index, unique
    std::vector<unsigned char> bytes;  ///< empty when the bytes are in the file
    jString file;                      ///< path for the system
    std::size_t offset = 0, size = 0;  ///< in the file, bytes

    /// The bytes, from memory or file. Empty when the file cannot be read.
    std::vector<unsigned char> read() const;
};

/// Metallic-roughness material after glTF 2.0. Surfaces share a material until one of them gets its own
/// (`Object::setSurfaceMaterialInherit`).
class ENGINE_API Material {
public:
    jString name;
    vec4 base_color{1.0f, 1.0f, 1.0f, 1.0f};  ///< linear
    vec3 emission;                            ///< linear
    float metallic = 0.0f;
    float roughness = 1.0f;
    float alpha_cutoff = 0.5f;
    enum Alpha { OPAQUE, MASK, BLEND } alpha = OPAQUE;
    bool double_sided = false;
    std::shared_ptr<const ImageData> base_texture, normal_texture, metal_rough_texture, emission_texture;

    /// Sets `emission` and updates the revision, so that pictures redraw the material.
    void setEmission(const vec3& value) {
        emission = value;
        ++m_revision;
    }
    /// Sets a named parameter, adding it when missing. "ui_offset" shifts the texture coordinates, "density" scales the
    /// emission.
    void setParameter(const jString& parameter, const vec4& value);
    /// Null when it was never set; valid until the next set.
    const vec4* getParameter(const jString& parameter) const;
    std::uint32_t getRevision() const { return m_revision; }

private:
    jVector<std::pair<jString, vec4>> m_parameters;
    std::uint32_t m_revision = 0;
};
