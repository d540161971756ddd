// Shared states and buffers of small quads.
#pragma once

#include <osg/BoundingBox>
#include <osg/Geometry>

/// Alpha blending over the picture. Premultiplied: the colour is added, and alpha hides the background. Depth is tested
/// but not written; both sides are visible.
void setBlended(osg::StateSet& state, int bin, const char* bin_type = "RenderBin");
void setPremultiplied(osg::StateSet& state, int bin);

/// A geometry without display list for buffers that are rewritten often; the caller keeps the bounding box correct.
class SpriteGeometry final : public osg::Geometry {
public:
    SpriteGeometry();
    /// Sets the usage hint of the buffer for the driver. REQUIRES that the arrays are set: the buffer belongs to them.
    void expectChanges();
    /// Bounding box in the geometry's own frame, metres.
    void setBox(const osg::BoundingBox& box);
    osg::BoundingBox computeBoundingBox() const override { return m_box; }

private:
    osg::BoundingBox m_box;
};
