// The fonts of the panels in every size in use, with the glyphs in use.
#pragma once

#include <imgui.h>

#include <map>
#include <memory>

#include "engine/gui/UIRoot.h"

/// Builds its atlas when a text with a new glyph or size is measured, never for a text that it has seen.
class FontSet {
public:
    /// `file`: path of a font file; empty for the installed Chinese font.
    explicit FontSet(const jString& file) : m_file(file) {}

    /// Takes a text's glyphs into the next build.
    void note(const char* text, int size);
    /// Builds what was noted; nothing when that is built already. REQUIRES that no drawing is being made.
    void build();

    UISize measure(const jString& text, int size);  ///< notes and builds what it needs
    /// The font of that size as built; null before the first build.
    ImFont* getFont(int size) const;
    ImFontAtlas* getAtlas() { return &m_atlas; }
    /// The atlas as a picture needs it, up to date with the last build.
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
    bool m_failed = false;  ///< the file is no font: not tried again
    bool m_changed = true;
    bool m_published = false;
    std::vector<char> m_bytes;  ///< of the font file while fonts are built; empty for ImGui's own font
    std::map<int, Size> m_sizes;
    ImFontAtlas m_atlas;
    UIFontAtlas m_picture;
};
