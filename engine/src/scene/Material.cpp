// Named material parameters: set by the logic, read by the picture.
#include "engine/scene/Material.h"

#include <fstream>

std::vector<unsigned char> ImageData::read() const {
    if (size == 0) return bytes;
    std::vector<unsigned char> out(size);
    std::ifstream in(file, std::ios::binary);
    in.seekg(static_cast<std::streamoff>(offset));
    if (!in.read(reinterpret_cast<char*>(out.data()), static_cast<std::streamsize>(size))) out.clear();
    return out;
}

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
