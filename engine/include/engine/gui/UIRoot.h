// The root of all panels, and what a picture needs to draw them.
#pragma once

#include <cstdint>

#include "engine/Api.h"
#include "engine/gui/UIElement.h"

struct ImDrawData;

/// The texture of all glyphs: one byte of opacity a pixel, rows from the top.
struct UIFontAtlas {
    std::vector<unsigned char> pixels;
    int width = 0;
    int height = 0;
    std::uint32_t revision = 0;  ///< counts up with every change; 0 before the first
};

/// Owns the elements at the top of the tree, later ones in front. Owned by the engine. Without a picture it costs
/// nothing but the layout: only `update` draws.
///
/// An element that reaches below the window's bottom, or over one that stands below it, is cut there and scrolled by
/// the wheel.
class ENGINE_API UIRoot {
public:
    enum Expand { EXPAND_NONE = 0, EXPAND_WIDTH = 1, EXPAND_HEIGHT = 2 };

    /// `font`: see EngineSettings. It is read when the first text is measured.
    explicit UIRoot(const jString& font);
    ~UIRoot();
    UIRoot(const UIRoot&) = delete;
    UIRoot& operator=(const UIRoot&) = delete;

    /// Takes ownership of an element made with `jNew` or `new`; null is ignored. REQUIRES one without a parent.
    /// `expand`: sides (bits of Expand) on which it is as large as the window; `index`: its place among the others, -1
    /// for the last.
    void addChild(UIElement* element, int expand = EXPAND_NONE, int index = -1) {
        addChild(std::unique_ptr<UIElement>(element), expand, index);
    }
    void addChild(std::unique_ptr<UIElement> element, int expand = EXPAND_NONE, int index = -1);
    /// Deletes an element at the top of the tree; others are ignored.
    void removeChild(UIElement* element);
    /// Deletes all elements: whoever unloads the library that their handlers lie in calls it before.
    void clear();
    int getNumChildren() const;
    UIElement* getChild(int i) const;

    int getWidth() const;  ///< of the window, pixels; 1280 x 720 at first
    int getHeight() const;
    void setSize(int width, int height);  ///< at least 1 x 1

    // For the picture.
    /// Makes this frame's drawing.
    void update();
    /// Null before the first `update`; valid until the next. Indices need the command's vertex offset; colours are
    /// as shown, opacity not multiplied in. Texture 0 is the font atlas, n is getImages()[n - 1].
    const ImDrawData* getDrawData() const;
    const UIFontAtlas& getFontAtlas() const;  ///< that of the drawing
    /// Absolute paths of the sprites' images, in order of first use; the list only grows.
    const jVector<jString>& getImages() const;

    /// For the engine's own sources.
    GuiState& getState() const { return *m_state; }

private:
    std::unique_ptr<GuiState> m_state;
};
