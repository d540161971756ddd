// Drawing of the panels over the picture.
#pragma once

#include <osg/Drawable>
#include <osg/Group>
#include <osg/Texture2D>

#include <vector>

class ShaderLibrary;
class UIRoot;

/// Draws the panels of this frame: triangles in pixels, clipped to rectangles, each with the glyph texture or a panel
/// image.
class GuiDrawable final : public osg::Drawable {
public:
    explicit GuiDrawable(const UIRoot& panels) : m_panels(panels) {}
    /// A group that draws the panels over everything drawn before.
    static osg::ref_ptr<osg::Group> makeOverlay(const UIRoot& panels, ShaderLibrary& shaders);

    void drawImplementation(osg::RenderInfo& info) const override;
    void releaseGLObjects(osg::State* state) const override;
    osg::Object* cloneType() const override { return nullptr; }
    osg::Object* clone(const osg::CopyOp&) const override { return nullptr; }
    const char* libraryName() const override { return "deckview"; }
    const char* className() const override { return "GuiDrawable"; }

private:
    void updateTextures() const;
    void bindTexture(osg::State& state, std::size_t index) const;

    const UIRoot& m_panels;
    // Objects of the context; mutable because the scene graph draws through a constant drawable.
    mutable unsigned m_vertices = 0, m_indices = 0;
    mutable std::uint32_t m_font_revision = 0;
    mutable std::vector<osg::ref_ptr<osg::Texture2D>> m_textures;  ///< the glyph texture, then the images
};
