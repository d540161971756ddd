// The root of all panels, and their drawing data for a picture.
#pragma once

#include <cstdint>

#include "engine/Api.h"
#include "engine/gui/UIElement.h"

struct ImDrawData;

/// The texture of all glyphs: one byte of opacity per pixel, rows from the top.
struct UIFontAtlas {
    std::vector<unsigned char> pixels;
    int width = 0;
    int height = 0;
    std::uint32_t revision = 0;  ///< incremented with every change; 0 before the first
};

/// Owns the elements at the top of the tree, later ones in front. Owned by the engine. Without a picture only the
/// layout has a cost: drawing is done in `update` alone.
///
/// An element that extends below the window's bottom, or over an element below it, is clipped there and scrolled by the
/// wheel.
class ENGINE_API UIRoot {
public:
    enum Expand { EXPAND_NONE = 0, EXPAND_WIDTH = 1, EXPAND_HEIGHT = 2 };

    /// `font`: see EngineSettings. The file is read when the first text is measured.
    explicit UIRoot(const jString& font);
    ~UIRoot();
    UIRoot(const UIRoot&) = delete;
    UIRoot& operator=(const UIRoot&) = delete;

    /// Takes ownership of an element made with `jNew` or `new`; null is ignored. REQUIRES an element without a parent.
    /// `expand`: directions (bits of Expand) in which it fills the window; `index`: position among the others, -1 for
    /// the last.
    void addChild(UIElement* element, int expand = EXPAND_NONE, int index = -1) {
        addChild(std::unique_ptr<UIElement>(element), expand, index);
    }
    void addChild(std::unique_ptr<UIElement> element, int expand = EXPAND_NONE, int index = -1);
    /// Deletes an element at the top of the tree; ignores other elements.
    void removeChild(UIElement* element);
    /// Deletes all elements. REQUIRED before the library with their handlers is unloaded.
    void clear();
    int getNumChildren() const;
    UIElement* getChild(int i) const;

    int getWidth() const;  ///< of the window, pixels; default 1280 x 720
    int getHeight() const;
    void setSize(int width, int height);  ///< at least 1 x 1

    // For the picture.
    /// Makes the drawing data of this frame.
    void update();
    /// Null before the first `update`; valid until the next. Indices require the command's vertex offset; colours are
    /// display values without premultiplied opacity. Texture 0 is the font atlas, n is getImages()[n - 1].
    const ImDrawData* getDrawData() const;
    const UIFontAtlas& getFontAtlas() const;  ///< used by the drawing data
    /// Absolute paths of the sprites' images, in order of first use; the list only grows.
    const jVector<jString>& getImages() const;

    /// For the engine's own sources, not for plug-ins.
    GuiState& getState() const { return *m_state; }

private:
    std::unique_ptr<GuiState> m_state;
};
