// States and geometry of sprites; used when a part is created.
#include "effects/SpriteStates.h"

#include <osg/BlendFunc>
#include <osg/Depth>

namespace {

void setTransparent(osg::StateSet& state, osg::BlendFunc* blending, int bin, const char* bin_type) {
    state.setAttributeAndModes(blending);
    state.setAttributeAndModes(new osg::Depth(osg::Depth::GEQUAL, 0.0, 1.0, false));
    state.setMode(GL_CULL_FACE, osg::StateAttribute::OFF);
    state.setRenderBinDetails(bin, bin_type);
}

}  // namespace

void setBlended(osg::StateSet& state, int bin, const char* bin_type) {
    setTransparent(state, new osg::BlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA), bin, bin_type);
}

void setPremultiplied(osg::StateSet& state, int bin) {
    setTransparent(state, new osg::BlendFunc(GL_ONE, GL_ONE_MINUS_SRC_ALPHA), bin, "RenderBin");
}

SpriteGeometry::SpriteGeometry() {
    setDataVariance(DYNAMIC);
    setUseDisplayList(false);
    setUseVertexBufferObjects(true);
}

void SpriteGeometry::expectChanges() {
    getOrCreateVertexBufferObject()->setUsage(GL_DYNAMIC_DRAW);
}

void SpriteGeometry::setBox(const osg::BoundingBox& box) {
    m_box = box;
    dirtyBound();
}
