// Texts of the world: created, moved and updated when their nodes changed.
#include "effects/SceneTexts.h"

#include "base/Convert.h"
#include "base/GlobeTransform.h"
#include "base/ShaderLibrary.h"
#include "engine/scene/SceneNodes.h"

namespace {

constexpr long RESOLUTION = 64;  // texels per em

}  // namespace

SceneTexts::SceneTexts(osg::Group& parent, ShaderLibrary& shaders) : m_group(new osg::Group) {
    setTextState(*m_group->getOrCreateStateSet(), shaders.getProgram("text"), DRAW_BLENDED, "DepthSortedBin");
    parent.addChild(m_group);
}

void SceneTexts::set(const NodeText& text) {
    Entry& entry = m_texts[text.getId()];
    if (!entry.place) {
        if (!m_font) m_font = loadSceneFont();
        entry.place = new GlobeTransform;
        entry.text = makeText(m_font, text.getHeight(), RESOLUTION);
        entry.text->setAxisAlignment(osgText::TextBase::XZ_PLANE);
        entry.text->setAlignment(osgText::TextBase::CENTER_BASE_LINE);
        entry.text->setColor(toOsg(text.getColor()));
        entry.place->addChild(entry.text);
        m_group->addChild(entry.place);
    }
    if (entry.utf8 != text.getText()) {
        entry.utf8 = text.getText();
        setUtf8(*entry.text, entry.utf8);
    }
    entry.place->setMatrix(toOsg(text.getWorldTransform()));
    entry.place->setNodeMask(text.isActive() ? ~0u : 0u);
}

void SceneTexts::remove(int id) {
    const auto found = m_texts.find(id);
    if (found == m_texts.end()) return;
    m_group->removeChild(found->second.place);
    m_texts.erase(found);
}
