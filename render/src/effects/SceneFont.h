// The font for texts in the picture.
#pragma once

#include <osgText/Font>
#include <osgText/Text>

#include <string>

/// A font with Chinese characters: "WenQuanYi Micro Hei", otherwise another installed font, otherwise the scene graph's
/// own font with one log line. Each call makes a new font, since its glyph textures belong to one context.
osg::ref_ptr<osgText::Font> loadSceneFont();

/// A text of one line, without display list. `height`: height of a capital letter in the units of the drawing;
/// `resolution`: texels per em of the glyphs. Use below a node with `setTextState`.
osg::ref_ptr<osgText::Text> makeText(const osg::ref_ptr<osgText::Font>& font, float height, long resolution);
void setUtf8(osgText::Text& text, const std::string& utf8);

/// State of a node above texts: the program "text", which overrides the texts' own program, and the render bin.
void setTextState(osg::StateSet& state, osg::Program* program, int bin, const char* bin_type);
