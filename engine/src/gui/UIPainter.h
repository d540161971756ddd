// Drawing primitives of the elements, and the panels' colours.
#pragma once

#include "gui/GuiState.h"

/// Draws into the draw list of a frame. Colours as in UIElement.
class UIPainter {
public:
    static constexpr vec4 PANEL{0.07f, 0.08f, 0.10f, 0.62f};
    static constexpr vec4 FIELD{0.02f, 0.02f, 0.03f, 0.55f};
    static constexpr vec4 BUTTON{0.13f, 0.15f, 0.19f, 0.75f};
    static constexpr vec4 HOVERED{0.22f, 0.33f, 0.47f, 0.85f};
    static constexpr vec4 HELD{0.20f, 0.47f, 0.78f, 0.95f};
    static constexpr vec4 MARK{0.36f, 0.65f, 0.96f, 1.0f};
    static constexpr vec4 EDGE{0.75f, 0.80f, 0.88f, 0.35f};
    static constexpr vec4 SHADOW{0.0f, 0.0f, 0.0f, 0.7f};
    static constexpr float PANEL_ROUNDING = 4.0f;
    static constexpr float WIDGET_ROUNDING = 3.0f;

    UIPainter(GuiState& state, ImDrawList& list) : m_state(state), m_list(list) {}

    void fill(int x, int y, UISize size, const vec4& color, float rounding = WIDGET_ROUNDING);
    void frame(int x, int y, UISize size, const vec4& color, float rounding = WIDGET_ROUNDING);
    void line(float x1, float y1, float x2, float y2, const vec4& color, float width = 1.0f);
    void image(int texture, int x, int y, UISize size);
    void text(float x, float y, const jString& text, int font_size, const vec4& color);
    /// Restricts drawing to a rectangle until `unclip`.
    void clip(int x, int y, UISize size);
    void unclip() { m_list.PopClipRect(); }
    /// Whether any part of a horizontal strip is visible.
    bool shows(int y, int height) const;

    bool isHovered(const UIElement& element) const { return m_state.hovered == &element; }
    bool isHeld(const UIElement& element) const { return m_state.pressed == &element; }
    /// The standard colour of a widget, depending on hovering and holding.
    const vec4& lookOf(const UIElement& element, const vec4& idle) const {
        return isHeld(element) ? HELD : isHovered(element) ? HOVERED : idle;
    }

private:
    GuiState& m_state;
    ImDrawList& m_list;
};
