// Draws the panels: uploaded again each frame, drawn last.
#include "gui/GuiDrawable.h"

#include <imgui.h>
#include <osg/BlendFunc>
#include <osg/GLExtensions>
#include <osg/Geode>
#include <osg/Image>

#include <cstring>

#include "base/FrameView.h"
#include "base/ShaderLibrary.h"
#include "base/TextureStore.h"
#include "engine/gui/UIRoot.h"

namespace {

enum Attribute : GLuint { PLACE, UV, COLOR };

const void* offset(std::size_t bytes) {
    return reinterpret_cast<const void*>(bytes);
}

osg::ref_ptr<osg::Texture2D> makeFontTexture(const UIFontAtlas& atlas) {
    osg::ref_ptr<osg::Image> image = new osg::Image;
    image->allocateImage(atlas.width, atlas.height, 1, GL_RED, GL_UNSIGNED_BYTE, 1);
    std::memcpy(image->data(), atlas.pixels.data(), atlas.pixels.size());
    osg::ref_ptr<osg::Texture2D> texture = new osg::Texture2D(image);
    texture->setInternalFormat(GL_R8);
    texture->setSwizzle(osg::Vec4i(GL_ONE, GL_ONE, GL_ONE, GL_RED));
    texture->setFilter(osg::Texture::MIN_FILTER, osg::Texture::LINEAR);
    texture->setResizeNonPowerOfTwoHint(false);
    return texture;
}

/// Panel images count rows from the top.
osg::ref_ptr<osg::Texture2D> loadPanelImage(const jString& file) {
    osg::ref_ptr<osg::Texture2D> texture = loadTexture(file, false);
    texture->getImage()->flipVertical();
    texture->setWrap(osg::Texture::WRAP_S, osg::Texture::CLAMP_TO_EDGE);
    texture->setWrap(osg::Texture::WRAP_T, osg::Texture::CLAMP_TO_EDGE);
    return texture;
}

void setUpVertices(osg::GLExtensions& gl) {
    constexpr GLsizei STRIDE = sizeof(ImDrawVert);
    for (const GLuint attribute : {PLACE, UV, COLOR}) gl.glEnableVertexAttribArray(attribute);
    gl.glVertexAttribPointer(PLACE, 2, GL_FLOAT, GL_FALSE, STRIDE, offset(offsetof(ImDrawVert, pos)));
    gl.glVertexAttribPointer(UV, 2, GL_FLOAT, GL_FALSE, STRIDE, offset(offsetof(ImDrawVert, uv)));
    gl.glVertexAttribPointer(COLOR, 4, GL_UNSIGNED_BYTE, GL_TRUE, STRIDE, offset(offsetof(ImDrawVert, col)));
}

}  // namespace

osg::ref_ptr<osg::Group> GuiDrawable::makeOverlay(const UIRoot& panels, ShaderLibrary& shaders) {
    osg::ref_ptr<GuiDrawable> drawable = new GuiDrawable(panels);
    drawable->setSupportsDisplayList(false);
    drawable->setUseDisplayList(false);
    drawable->setCullingActive(false);
    drawable->setDataVariance(osg::Object::DYNAMIC);
    osg::ref_ptr<osg::Geode> geode = new osg::Geode;
    geode->addDrawable(drawable);
    geode->setCullingActive(false);
    osg::ref_ptr<osg::Group> overlay = new osg::Group;
    overlay->addChild(geode);
    osg::Program* const program = shaders.getProgram("gui");
    program->addBindAttribLocation("a_place", PLACE);
    program->addBindAttribLocation("a_uv", UV);
    program->addBindAttribLocation("a_color", COLOR);
    osg::StateSet& state = *overlay->getOrCreateStateSet();
    state.setAttributeAndModes(program);
    state.setAttributeAndModes(new osg::BlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ONE));
    state.setMode(GL_DEPTH_TEST, osg::StateAttribute::OFF);
    state.setMode(GL_CULL_FACE, osg::StateAttribute::OFF);
    state.setMode(GL_SCISSOR_TEST, osg::StateAttribute::ON);
    state.addUniform(new osg::Uniform("u_texture", 0));
    state.setRenderBinDetails(DRAW_PANELS, "RenderBin");
    return overlay;
}

void GuiDrawable::updateTextures() const {
    const UIFontAtlas& atlas = m_panels.getFontAtlas();
    if (m_textures.empty()) m_textures.emplace_back();
    if (atlas.revision != m_font_revision && !atlas.pixels.empty()) {
        m_font_revision = atlas.revision;
        m_textures[0] = makeFontTexture(atlas);
    }
    const jVector<jString>& images = m_panels.getImages();
    while (static_cast<int>(m_textures.size()) <= images.size()) {
        m_textures.push_back(loadPanelImage(images[static_cast<int>(m_textures.size()) - 1]));
    }
}

void GuiDrawable::bindTexture(osg::State& state, std::size_t index) const {
    if (index < m_textures.size() && m_textures[index]) state.applyTextureAttribute(0, m_textures[index]);
}

void GuiDrawable::drawImplementation(osg::RenderInfo& info) const {
    const ImDrawData* const data = m_panels.getDrawData();
    if (!data || data->TotalVtxCount == 0) return;
    updateTextures();
    osg::State& state = *info.getState();
    osg::GLExtensions& gl = *state.get<osg::GLExtensions>();
    if (m_vertices == 0) {
        gl.glGenBuffers(1, &m_vertices);
        gl.glGenBuffers(1, &m_indices);
    }
    state.disableAllVertexArrays();
    state.unbindVertexBufferObject();
    state.unbindElementBufferObject();
    gl.glBindBuffer(GL_ARRAY_BUFFER, m_vertices);
    gl.glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, m_indices);

    const float width = data->DisplaySize.x, height = data->DisplaySize.y;
    const osg::Program::PerContextProgram* const program = state.getLastAppliedProgramObject();
    if (program) {
        gl.glUniform2f(program->getUniformLocation(osg::Uniform::getNameID("u_pixel")), 2.0f / width, -2.0f / height);
    }
    for (int i = 0; i < data->CmdListsCount; ++i) {
        const ImDrawList& list = *data->CmdLists[i];
        gl.glBufferData(GL_ARRAY_BUFFER, list.VtxBuffer.size_in_bytes(), list.VtxBuffer.Data, GL_STREAM_DRAW);
        gl.glBufferData(GL_ELEMENT_ARRAY_BUFFER, list.IdxBuffer.size_in_bytes(), list.IdxBuffer.Data, GL_STREAM_DRAW);
        setUpVertices(gl);
        for (const ImDrawCmd& command : list.CmdBuffer) {
            const ImVec4& clip = command.ClipRect;
            if (clip.z <= clip.x || clip.w <= clip.y) continue;
            bindTexture(state, reinterpret_cast<std::size_t>(command.GetTexID()));
            glScissor(static_cast<int>(clip.x), static_cast<int>(height - clip.w), static_cast<int>(clip.z - clip.x),
                      static_cast<int>(clip.w - clip.y));
            gl.glDrawElementsBaseVertex(GL_TRIANGLES, static_cast<GLsizei>(command.ElemCount),
                                        sizeof(ImDrawIdx) == 2 ? GL_UNSIGNED_SHORT : GL_UNSIGNED_INT,
                                        offset(command.IdxOffset * sizeof(ImDrawIdx)),
                                        static_cast<GLint>(command.VtxOffset));
        }
    }
    for (const GLuint attribute : {PLACE, UV, COLOR}) gl.glDisableVertexAttribArray(attribute);
    gl.glBindBuffer(GL_ARRAY_BUFFER, 0);
    gl.glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0);
    glScissor(0, 0, static_cast<int>(width), static_cast<int>(height));
    state.dirtyAllVertexArrays();
}

void GuiDrawable::releaseGLObjects(osg::State* state) const {
    osg::Drawable::releaseGLObjects(state);
    for (const auto& texture : m_textures) {
        if (texture) texture->releaseGLObjects(state);
    }
}
