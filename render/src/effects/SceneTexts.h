// Texts in the scene.
#pragma once

#include <osg/MatrixTransform>

#include <unordered_map>

#include "base/FrameView.h"
#include "effects/SceneFont.h"

class NodeText;
class ShaderLibrary;

/// Each text is a line in its node's XZ plane, readable from -Y, with the middle of the baseline at the node's origin.
class SceneTexts {
public:
    SceneTexts(osg::Group& parent, ShaderLibrary& shaders);
    /// Adds or replaces the text of this node.
    void set(const NodeText& text);
    void remove(int id);

private:
    struct Entry {
        osg::ref_ptr<osg::MatrixTransform> place;
        osg::ref_ptr<osgText::Text> text;
        std::string utf8;
    };

    osg::ref_ptr<osg::Group> m_group;
    osg::ref_ptr<osgText::Font> m_font;      ///< loaded with the first text
    std::unordered_map<int, Entry> m_texts;  ///< by node id
};
