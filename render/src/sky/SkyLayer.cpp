// The sky's light and its dome.
#include "sky/SkyLayer.h"

#include <osg/Geode>
#include <osg/Geometry>
#include <osg/Image>

#include "engine/scene/World.h"
#include "frame/ShaderLibrary.h"

SkyLayer::SkyLayer(osg::Group& root, ShaderLibrary& shaders) {
    osg::ref_ptr<osg::Image> image = new osg::Image;
    image->allocateImage(2, 2, 1, GL_RGB, GL_FLOAT);
    for (unsigned i = 0; i < 4; ++i) {
        float* const texel = reinterpret_cast<float*>(image->data(i % 2, i / 2));
        texel[0] = 3.0f, texel[1] = 4.5f, texel[2] = 7.0f;
    }
    m_radiance = new osg::Texture2D(image);
    m_radiance->setInternalFormat(GL_RGB16F_ARB);
    m_radiance->setWrap(osg::Texture::WRAP_S, osg::Texture::CLAMP_TO_EDGE);
    m_radiance->setWrap(osg::Texture::WRAP_T, osg::Texture::CLAMP_TO_EDGE);
    m_dome = new osg::Geode;
    osg::ref_ptr<osg::Geometry> quad = new osg::Geometry;
    quad->setUseDisplayList(false);
    quad->setUseVertexBufferObjects(true);
    quad->setCullingActive(false);
    auto* const corners = new osg::Vec3Array;
    for (const auto& [x, y] : {std::pair{-1.0f, -1.0f}, {3.0f, -1.0f}, {-1.0f, 3.0f}}) corners->push_back({x, y, 0.0f});
    quad->setVertexArray(corners);
    quad->addPrimitiveSet(new osg::DrawArrays(GL_TRIANGLES, 0, 3));
    m_dome->addDrawable(quad);
    m_dome->setCullingActive(false);
    osg::StateSet* const state = m_dome->getOrCreateStateSet();
    state->setAttributeAndModes(shaders.getProgram("sky"));
    state->setRenderBinDetails(DRAW_SKY, "RenderBin");
    root.addChild(m_dome);
}

SkyLight SkyLayer::update(const FrameView&, const Environment&) {
    SkyLight light;
    light.sun_direction = light.light_direction = normalize(vec3{0.5f, -0.3f, 0.7f});
    light.light_color = {100.0f, 95.0f, 88.0f};
    light.ambient_above = {14.0f, 18.0f, 25.0f};
    light.ambient_below = {5.0f, 6.0f, 7.0f};
    light.exposure = 0.04f;
    return light;
}

void SkyLayer::setVisible(bool visible) {
    m_dome->setNodeMask(visible ? ~0u : 0u);
}
