// Finds the Chinese font in the system's font list, once per process that shows texts.
#include "gui/FontFile.h"

#include <fontconfig/fontconfig.h>

#include <memory>

namespace {

constexpr const char* FAMILY = "WenQuanYi Micro Hei";

using Pattern = std::unique_ptr<FcPattern, decltype(&FcPatternDestroy)>;
using FontList = std::unique_ptr<FcFontSet, decltype(&FcFontSetDestroy)>;
using Properties = std::unique_ptr<FcObjectSet, decltype(&FcObjectSetDestroy)>;

FontFile lookUp() {
    FcConfig* const config = FcInitLoadConfigAndFonts();
    if (!config) return {};
    FontFile font;
    {
        const Pattern pattern(FcPatternBuild(nullptr, FC_FAMILY, FcTypeString, FAMILY, nullptr), FcPatternDestroy);
        const Properties properties(FcObjectSetBuild(FC_FILE, FC_INDEX, nullptr), FcObjectSetDestroy);
        const FontList fonts(FcFontList(config, pattern.get(), properties.get()), FcFontSetDestroy);
        FcChar8* path = nullptr;
        if (fonts && fonts->nfont > 0 && FcPatternGetString(fonts->fonts[0], FC_FILE, 0, &path) == FcResultMatch) {
            font.path = reinterpret_cast<const char*>(path);
            FcPatternGetInteger(fonts->fonts[0], FC_INDEX, 0, &font.index);
        }
    }
    FcConfigDestroy(config);
    return font;
}

}  // namespace

FontFile findFont() {
    static const FontFile font = lookUp();
    return font;
}
