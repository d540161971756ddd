// A line of text over the picture.
#pragma once

#include <osg/MatrixTransform>
#include <osg/Projection>

#include <string>

#include "effects/SceneFont.h"

class ShaderLibrary;

/// Shown in the upper left corner, light with a dark outline, over everything else. An empty line costs nothing.
class StatusText {
public:
    StatusText(osg::Group& root, ShaderLibrary& shaders);
    /// UTF-8; empty hides the line. The font is loaded with the first text.
    void set(const std::string& utf8);
    /// Size of the picture in pixels; the text is scaled with its height.
    void resize(int width, int height);

private:
    void makeTexts(float capital);
    void layOut();

    osg::ref_ptr<osg::Projection> m_projection;
    osg::ref_ptr<osg::MatrixTransform> m_place;
    osg::ref_ptr<osgText::Font> m_font;
    osg::ref_ptr<osgText::Text> m_text, m_outline;
    std::string m_utf8;
    int m_width = 0, m_height = 0;
    int m_laid_out_height = 0;  ///< height of the picture that the layout was made for
};
