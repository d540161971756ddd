// A line of text over the picture.
#pragma once

#include <osg/MatrixTransform>
#include <osg/Projection>

#include <string>

#include "effects/SceneFont.h"

class ShaderLibrary;

/// In the upper left corner, light with a dark outline, over everything else. Costs nothing while it is empty.
class StatusText {
public:
    StatusText(osg::Group& root, ShaderLibrary& shaders);
    /// Empty for none. The font is loaded with the first text.
    void set(const std::string& utf8);
    /// The picture's size in pixels; the text grows with its height.
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
    int m_laid_out_height = 0;  ///< of the picture that the texts were made for
};
