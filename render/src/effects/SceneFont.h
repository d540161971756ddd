// The font that texts of the picture are written in.
#pragma once

#include <osgText/Font>
#include <osgText/Text>

#include <string>

/// A font that has Chinese: "WenQuanYi Micro Hei", else whatever the system offers, else the scene graph's own, with
/// one log line. A new one with every call, for its glyph textures live on one context.
osg::ref_ptr<osgText::Font> loadSceneFont();

/// A text of one line, without display list; its height is that of a capital letter, in the units it is drawn in, its
/// glyphs have that many texels an em. `setTextState` belongs above it.
osg::ref_ptr<osgText::Text> makeText(const osg::ref_ptr<osgText::Font>& font, float height, long resolution);
void setUtf8(osgText::Text& text, const std::string& utf8);

/// What texts need above them: a program "text", which overrides their own, and the bin they are drawn in.
void setTextState(osg::StateSet& state, osg::Program* program, int bin, const char* bin_type);
