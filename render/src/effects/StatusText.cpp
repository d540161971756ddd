// The status line: layout is redone when its text or the picture's size changed.
#include "effects/StatusText.h"

#include <osg/Depth>

#include <algorithm>
#include <cmath>

#include "base/FrameView.h"
#include "base/ShaderLibrary.h"

namespace {

constexpr int DRAW_LAST = 100;
constexpr float CAPITAL = 13.0f, MARGIN = 14.0f;  // pixels for a picture of 720 rows
constexpr float MIN_CAPITAL = 9.0f;               // pixels: minimum legible size of Chinese characters
constexpr float EM_OVER_CAPITAL = 1.4f;           // ratio for most fonts

}  // namespace

StatusText::StatusText(osg::Group& root, ShaderLibrary& shaders)
    : m_projection(new osg::Projection), m_place(new osg::MatrixTransform) {
    m_place->setReferenceFrame(osg::Transform::ABSOLUTE_RF);
    m_place->setCullingActive(false);
    m_projection->setCullingActive(false);
    m_projection->setNodeMask(0);
    m_projection->addChild(m_place);
    osg::StateSet& state = *m_projection->getOrCreateStateSet();
    setTextState(state, shaders.getProgram("text", {"ON_SCREEN"}), DRAW_LAST, "TraversalOrderBin");
    state.setAttributeAndModes(new osg::Depth(osg::Depth::ALWAYS, 0.0, 1.0, false));
    root.addChild(m_projection);
}

void StatusText::makeTexts(float capital) {
    if (!m_font) m_font = loadSceneFont();
    const auto make = [&](const osg::Vec4& color) {
        osg::ref_ptr<osgText::Text> text = makeText(m_font, capital, std::lround(capital * EM_OVER_CAPITAL));
        text->setAlignment(osgText::TextBase::LEFT_BASE_LINE);
        text->setColor(color);
        text->setCullingActive(false);
        return text;
    };
    m_outline = make({0.0f, 0.0f, 0.0f, 0.6f});
    m_text = make({0.95f, 0.97f, 1.0f, 1.0f});
    m_place->removeChildren(0, m_place->getNumChildren());
    for (const auto& [x, y] : {std::pair{-1.0f, -1.0f}, {1.0f, -1.0f}, {-1.0f, 1.0f}, {1.0f, 1.0f}}) {
        osg::ref_ptr<osg::MatrixTransform> shifted = new osg::MatrixTransform(osg::Matrixd::translate(x, y, 0.0));
        shifted->setCullingActive(false);
        shifted->addChild(m_outline);
        m_place->addChild(shifted);
    }
    m_place->addChild(m_text);
}

void StatusText::layOut() {
    const bool shows = !m_utf8.empty() && m_width > 0 && m_height > 0;
    m_projection->setNodeMask(shows ? ~0u : 0u);
    if (!shows) return;
    if (m_laid_out_height != m_height) {
        m_laid_out_height = m_height;
        const float scale = static_cast<float>(m_height) / 720.0f;
        const float capital = std::max(CAPITAL * scale, MIN_CAPITAL), margin = MARGIN * scale;
        makeTexts(capital);
        // Whole pixels, for sharp strokes.
        m_place->setMatrix(osg::Matrixd::translate(std::round(margin), std::round(m_height - margin - capital), 0.0));
    }
    m_projection->setMatrix(osg::Matrixd::ortho2D(0.0, m_width, 0.0, m_height));
    for (osgText::Text* text : {m_outline.get(), m_text.get()}) setUtf8(*text, m_utf8);
}

void StatusText::set(const std::string& utf8) {
    if (utf8 == m_utf8) return;
    m_utf8 = utf8;
    layOut();
}

void StatusText::resize(int width, int height) {
    if (width == m_width && height == m_height) return;
    m_width = width;
    m_height = height;
    layOut();
}
