// Named material parameters, set by the logic and read by the picture.
#include "engine/scene/Material.h"

void Material::setParameter(const jString& parameter, const vec4& value) {
    ++m_revision;
    for (auto& entry : m_parameters) {
        if (entry.first == parameter) {
            entry.second = value;
            return;
        }
    }
    m_parameters.append({parameter, value});
}

const vec4* Material::getParameter(const jString& parameter) const {
    for (const auto& entry : m_parameters) {
        if (entry.first == parameter) return &entry.second;
    }
    return nullptr;
}
