// Label, sprite, button, check box and slider: sizes, appearance, mouse handling.
#include "engine/gui/UIWidgets.h"

#include <algorithm>
#include <cmath>

#include "gui/UIPainter.h"

namespace {

constexpr int BUTTON_MARGIN_X = 10;
constexpr int BUTTON_MARGIN_Y = 4;
constexpr int GRAB = 10;  // width of a slider's handle

UISize measureText(const jString& text, int font_size) {
    GuiState* const state = GuiState::get();
    return state ? state->fonts.measure(text, font_size) : UISize();
}

void noteText(const jString& text, int font_size) {
    if (GuiState* const state = GuiState::get()) state->fonts.note(text.c_str(), font_size);
}

}  // namespace

UILabel::UILabel(const jString& text) : m_text(text) {}

void UILabel::setText(const jString& text) {
    if (m_text == text) return;
    m_text = text;
    noteTexts();
    contentChanged();
}

void UILabel::noteTexts() {
    noteText(m_text, m_font_size);
}

UISize UILabel::measure() {
    return sizeAtLeast(measureText(m_text, m_font_size));
}

void UILabel::draw(UIPainter& painter) {
    if (m_has_background) painter.fill(m_x, m_y, m_size, m_background);
    const auto x = static_cast<float>(m_x), y = static_cast<float>(m_y);
    // Over the scene a shadow makes it readable against the sky.
    if (m_in_root) painter.text(x + 1.0f, y + 1.0f, m_text, m_font_size, UIPainter::SHADOW);
    painter.text(x, y, m_text, m_font_size, m_font_color);
}

UISprite::UISprite(const jString& image) {
    setImage(image);
}

void UISprite::setImage(const jString& path) {
    GuiState* const state = path.empty() ? nullptr : GuiState::get();
    m_texture = state ? state->getTexture(path) : 0;
}

UISize UISprite::measure() {
    return sizeOr({16, 16});
}

void UISprite::draw(UIPainter& painter) {
    if (m_has_background) painter.fill(m_x, m_y, m_size, m_background);
    if (m_texture > 0) {
        painter.image(m_texture, m_x, m_y, m_size);
        return;
    }
    painter.frame(m_x, m_y, m_size, UIPainter::EDGE, 0.0f);
    const auto x = static_cast<float>(m_x), y = static_cast<float>(m_y);
    const float right = x + static_cast<float>(m_size.width), low = y + static_cast<float>(m_size.height);
    painter.line(x, y, right, low, UIPainter::EDGE);
    painter.line(x, low, right, y, UIPainter::EDGE);
}

UIButton::UIButton(const jString& text) : m_text(text) {}

void UIButton::setText(const jString& text) {
    if (m_text == text) return;
    m_text = text;
    noteTexts();
    contentChanged();
}

void UIButton::noteTexts() {
    noteText(m_text, m_font_size);
}

UISize UIButton::measure() {
    const UISize text = measureText(m_text, m_font_size);
    return sizeAtLeast({text.width + 2 * BUTTON_MARGIN_X, text.height + 2 * BUTTON_MARGIN_Y});
}

void UIButton::draw(UIPainter& painter) {
    painter.fill(m_x, m_y, m_size, painter.lookOf(*this, m_has_background ? m_background : UIPainter::BUTTON));
    painter.frame(m_x, m_y, m_size, UIPainter::EDGE);
    const UISize text = measureText(m_text, m_font_size);
    painter.text(static_cast<float>(m_x + (m_size.width - text.width) / 2),
                 static_cast<float>(m_y + (m_size.height - text.height) / 2), m_text, m_font_size, m_font_color);
}

UISize UICheckBox::measure() {
    return sizeOr({m_font_size, m_font_size});
}

void UICheckBox::draw(UIPainter& painter) {
    painter.fill(m_x, m_y, m_size, painter.lookOf(*this, m_has_background ? m_background : UIPainter::FIELD));
    painter.frame(m_x, m_y, m_size, UIPainter::EDGE);
    if (!m_checked) return;
    const auto x = static_cast<float>(m_x), y = static_cast<float>(m_y);
    const auto w = static_cast<float>(m_size.width), h = static_cast<float>(m_size.height);
    painter.line(x + 0.22f * w, y + 0.52f * h, x + 0.43f * w, y + 0.74f * h, UIPainter::MARK, 2.0f);
    painter.line(x + 0.43f * w, y + 0.74f * h, x + 0.80f * w, y + 0.26f * h, UIPainter::MARK, 2.0f);
}

void UICheckBox::release(int x, int y) {
    if (!contains(x, y)) return;
    m_checked = !m_checked;
    fireChange(m_checked ? 1.0 : 0.0);
    fireClick(x, y);
}

void UISlider::setMinValue(float value) {
    if (std::isfinite(value)) m_min = value;
    setValue(m_value);
}

void UISlider::setMaxValue(float value) {
    if (std::isfinite(value)) m_max = value;
    setValue(m_value);
}

void UISlider::setValue(float value) {
    if (std::isnan(value)) return;
    m_value = std::clamp(value, std::min(m_min, m_max), std::max(m_min, m_max));
}

UISize UISlider::measure() {
    return sizeOr({150, 16});
}

void UISlider::draw(UIPainter& painter) {
    constexpr int RAIL = 4;
    painter.fill(m_x, m_y + (m_size.height - RAIL) / 2, {m_size.width, RAIL},
                 m_has_background ? m_background : UIPainter::FIELD);
    const float range = m_max - m_min;
    const float share = range != 0.0f ? (m_value - m_min) / range : 0.0f;
    const int way = std::max(m_size.width - GRAB, 0);
    const int grab_x = m_x + static_cast<int>(std::lround(share * static_cast<float>(way)));
    const vec4& look = painter.isHeld(*this) ? UIPainter::HELD : UIPainter::MARK;
    painter.fill(m_x, m_y + (m_size.height - RAIL) / 2, {grab_x - m_x + GRAB / 2, RAIL}, look);
    painter.fill(grab_x, m_y + 1, {GRAB, m_size.height - 2}, look);
    if (painter.isHovered(*this)) painter.frame(grab_x, m_y + 1, {GRAB, m_size.height - 2}, m_font_color);
}

void UISlider::drag(int x, int) {
    const int way = m_size.width - GRAB;
    if (way <= 0) return;
    const float share = std::clamp(static_cast<float>(x - m_x - GRAB / 2) / static_cast<float>(way), 0.0f, 1.0f);
    const float before = m_value;
    setValue(m_min + share * (m_max - m_min));
    if (m_value != before) fireChange(static_cast<double>(m_value));
}
