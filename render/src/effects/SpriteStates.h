// What everything made of small quads shares: states and buffers.
#pragma once

#include <osg/BoundingBox>
#include <osg/Geometry>

/// Over the picture by alpha; premultiplied, a color is added and alpha hides what lies behind. Depth is tested and not
/// written, both sides show.
void setBlended(osg::StateSet& state, int bin, const char* bin_type = "RenderBin");
void setPremultiplied(osg::StateSet& state, int bin);

/// A geometry without display list, its buffers rewritten often; the box is the caller's to keep right.
class SpriteGeometry final : public osg::Geometry {
public:
    SpriteGeometry();
    /// Tells the driver; REQUIRES that the arrays are set, for the buffer is theirs.
    void expectChanges();
    /// In the geometry's own frame, metres.
    void setBox(const osg::BoundingBox& box);
    osg::BoundingBox computeBoundingBox() const override { return m_box; }

private:
    osg::BoundingBox m_box;
};
