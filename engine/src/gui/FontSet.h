// The panels' font in all sizes in use, with the glyphs in use.
#pragma once

#include <imgui.h>

#include <map>
#include <memory>

#include "engine/gui/UIRoot.h"

/// The atlas is built when a text with a new glyph or size is measured; known texts do not build it.
class FontSet {
public:
    /// `file`: path of a font file; empty for the installed Chinese font.
    explicit FontSet(const jString& file) : m_file(file) {}

    /// Adds a text's glyphs to the next build.
    void note(const char* text, int size);
    /// Builds the noted glyphs; no effect when they are built already. REQUIRES that no drawing is in progress.
    void build();

    UISize measure(const jString& text, int size);  ///< notes and builds as necessary
    /// The font of this size from the last build; null before the first.
    ImFont* getFont(int size) const;
    ImFontAtlas* getAtlas() { return &m_atlas; }
    /// The atlas in the form for a picture, from the last build.
    const UIFontAtlas& publish();
    const UIFontAtlas& getPublished() const { return m_picture; }

private:
    struct Size {
        ImFontGlyphRangesBuilder glyphs;
        ImVector<ImWchar> ranges;
        ImFont* font = nullptr;
    };

    Size& getSize(int size);
    void readFile();
    bool addFonts();

    jString m_file;
    int m_index = 0;
    bool m_failed = false;  ///< the file is not a font: no further attempts
    bool m_changed = true;
    bool m_published = false;
    std::vector<char> m_bytes;  ///< the font file's bytes while fonts are built; empty for ImGui's own font
    std::map<int, Size> m_sizes;
    ImFontAtlas m_atlas;
    UIFontAtlas m_picture;
};
