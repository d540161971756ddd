// The line of text: appearance, and editing from the click to the commit.
#include "engine/gui/UIEditLine.h"

#include <algorithm>

#include "gui/TextEdit.h"
#include "gui/UIPainter.h"

namespace {

constexpr int MARGIN = 4;  // on both sides of the text

}  // namespace

UIEditLine::UIEditLine(const jString& text) : m_text(text) {}
UIEditLine::~UIEditLine() = default;

void UIEditLine::setText(const jString& text) {
    if (m_text == text) return;
    m_text = text;
    noteTexts();
}

void UIEditLine::showText(const char* text) {
    if (m_text != text) m_text = text;
}

void UIEditLine::noteTexts() {
    if (GuiState* const state = GuiState::get()) state->fonts.note(m_text.c_str(), m_font_size);
}

UISize UIEditLine::measure() {
    return sizeOr({120, m_font_size + 2});
}

float UIEditLine::getScroll() const {
    return std::max(m_edit->getCaret() + static_cast<float>(2 * MARGIN - m_size.width), 0.0f);
}

void UIEditLine::draw(UIPainter& painter) {
    painter.fill(m_x, m_y, m_size, m_has_background ? m_background : UIPainter::FIELD);
    painter.clip(m_x, m_y, m_size);
    const auto left = static_cast<float>(m_x + MARGIN);
    const auto top = static_cast<float>(m_y + (m_size.height - m_font_size) / 2);
    if (m_edit) {
        drawEdit(painter, left - getScroll(), top);
    } else {
        refresh();
        painter.text(left + 1.0f, top + 1.0f, m_text, m_font_size, UIPainter::SHADOW);
        painter.text(left, top, m_text, m_font_size, m_font_color);
    }
    painter.unclip();
    if (m_edit || painter.isHovered(*this)) painter.frame(m_x, m_y, m_size, UIPainter::MARK);
}

void UIEditLine::drawEdit(UIPainter& painter, float left, float top) {
    const float begin = m_edit->getSelectionBegin(), end = m_edit->getSelectionEnd();
    const auto x = static_cast<int>(left + begin);
    painter.fill(x, static_cast<int>(top), {static_cast<int>(end - begin), m_font_size}, UIPainter::HELD, 0.0f);
    painter.text(left, top, m_edit->getText(), m_font_size, m_font_color);
    const float caret = left + m_edit->getCaret();
    painter.line(caret, top, caret, top + static_cast<float>(m_font_size), m_font_color);
}

void UIEditLine::press(int x, int) {
    if (m_edit) {
        m_edit->press(toText(x));
        return;
    }
    GuiState* const state = GuiState::get();
    if (!state) return;
    refresh();
    m_edit = std::make_unique<TextEdit>(state->fonts, m_font_size, m_text);
    m_begin_press = true;
    state->beginEdit(*this);
}

void UIEditLine::drag(int x, int) {
    // The press that starts editing selects all; only later presses select by dragging.
    if (m_edit && !m_begin_press) m_edit->drag(toText(x));
}

void UIEditLine::release(int, int) {
    m_begin_press = false;
}

float UIEditLine::toText(int x) const {
    return static_cast<float>(x - m_x - MARGIN) + getScroll();
}

void UIEditLine::endEdit(bool keep) {
    const std::unique_ptr<TextEdit> edit = std::move(m_edit);
    if (edit && keep && edit->isChanged()) commit(edit->getText());
}

void UIEditLine::commit(const jString& text) {
    setText(text);
    fireChange(0.0);
}

void UIEditLine::editKey(int key, int modifiers) {
    if (m_edit) m_edit->key(key, modifiers);
}

void UIEditLine::editText(char32_t codepoint) {
    if (m_edit) m_edit->type(codepoint);
}
