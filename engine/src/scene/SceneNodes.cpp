// Decals, lights and texts.
#include "engine/scene/SceneNodes.h"

void DecalOrtho::setWidth(float metres) {
    if (m_width == metres) return;
    m_width = metres;
    contentChanged();
}

void DecalOrtho::setHeight(float metres) {
    if (m_height == metres) return;
    m_height = metres;
    contentChanged();
}

BoundBox DecalOrtho::getBoundBox() const {
    return {dvec3(-0.5 * m_width, -0.5 * m_height, -m_depth), dvec3(0.5 * m_width, 0.5 * m_height, 0.0)};
}

bool NodeLight::setParameter(const jString& parameter, float value) {
    if (parameter != "brightness") return Node::setParameter(parameter, value);
    m_intensity = m_settings.intensity * value;
    contentChanged();
    return true;
}

void NodeText::setText(const jString& text) {
    if (m_text == text) return;
    m_text = text;
    contentChanged();
}
