// Finds the font and makes texts; called for the first text of a picture and for each added text.
#include "effects/SceneFont.h"

#include <fontconfig/fontconfig.h>
#include <osg/Program>
#include <osgDB/Options>

#include <memory>

#include "effects/SpriteStates.h"
#include "engine/text/Log.h"

namespace {

constexpr unsigned RESOLUTION = 48;          // texels per em
constexpr FcChar32 CHINESE_SAMPLE = 0x80FD;  // 能

using ConfigPtr = std::unique_ptr<FcConfig, decltype(&FcConfigDestroy)>;
using PatternPtr = std::unique_ptr<FcPattern, decltype(&FcPatternDestroy)>;

std::string asBytes(const FcChar8* text) {
    return reinterpret_cast<const char*>(text);
}

/// Path of a font with Chinese characters; empty when none is installed.
std::string findChineseFont() {
    const ConfigPtr config(FcInitLoadConfigAndFonts(), FcConfigDestroy);
    const PatternPtr wanted(FcPatternCreate(), FcPatternDestroy);
    if (!config || !wanted) return {};
    FcPatternAddString(wanted.get(), FC_FAMILY, reinterpret_cast<const FcChar8*>("WenQuanYi Micro Hei"));
    FcPatternAddString(wanted.get(), FC_LANG, reinterpret_cast<const FcChar8*>("zh-cn"));
    FcConfigSubstitute(config.get(), wanted.get(), FcMatchPattern);
    FcDefaultSubstitute(wanted.get());
    FcResult result = FcResultMatch;
    const PatternPtr found(FcFontMatch(config.get(), wanted.get(), &result), FcPatternDestroy);
    FcChar8* file = nullptr;
    FcCharSet* letters = nullptr;
    if (!found || FcPatternGetString(found.get(), FC_FILE, 0, &file) != FcResultMatch) return {};
    if (FcPatternGetCharSet(found.get(), FC_CHARSET, 0, &letters) != FcResultMatch) return {};
    return FcCharSetHasChar(letters, CHINESE_SAMPLE) ? asBytes(file) : std::string();
}

}  // namespace

osg::ref_ptr<osgText::Font> loadSceneFont() {
    const std::string file = findChineseFont();
    osg::ref_ptr<osgDB::Options> options = new osgDB::Options;
    options->setObjectCacheHint(osgDB::Options::CACHE_NONE);
    osg::ref_ptr<osgText::Font> font = file.empty() ? nullptr : osgText::readRefFontFile(file, options);
    if (font) return font;
    jLog::warning("no font with Chinese is installed: texts show what the built-in font has");
    return osgText::Font::getDefaultFont();
}

osg::ref_ptr<osgText::Text> makeText(const osg::ref_ptr<osgText::Font>& font, float height, long resolution) {
    osg::ref_ptr<osgText::Text> text = new osgText::Text;
    text->setUseDisplayList(false);
    text->setUseVertexBufferObjects(true);
    text->setDataVariance(osg::Object::DYNAMIC);
    text->setFont(font);
    const auto texels = static_cast<unsigned>(resolution);
    text->setFontResolution(texels, texels);
    const osgText::Glyph* const capital = font->getGlyph({texels, texels}, 'H');
    const float share = capital && capital->getHeight() > 0.0f ? capital->getHeight() : 0.72f;
    text->setCharacterSize(height / share);
    return text;
}

void setUtf8(osgText::Text& text, const std::string& utf8) {
    text.setText(utf8, osgText::String::ENCODING_UTF8);
}

void setTextState(osg::StateSet& state, osg::Program* program, int bin, const char* bin_type) {
    setBlended(state, bin, bin_type);
    state.setAttributeAndModes(program, osg::StateAttribute::ON | osg::StateAttribute::OVERRIDE);
    state.setRenderBinMode(osg::StateSet::OVERRIDE_RENDERBIN_DETAILS);
    state.addUniform(new osg::Uniform("u_glyphs", 0));
}
