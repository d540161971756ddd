// Common parts of all elements: position, size, visibility, handlers.
#include "engine/gui/UIElement.h"

#include <algorithm>

#include "gui/GuiState.h"

UIElement::~UIElement() {
    if (GuiState* const state = GuiState::get()) state->forget(this);
}

void UIElement::setPosition(int x, int y) {
    if (m_set_x == x && m_set_y == y) return;
    m_set_x = x;
    m_set_y = y;
    GuiState* const state = GuiState::get();
    if (m_in_root && state) state->layout_known = false;
}

const UISize& UIElement::getMeasured() {
    if (!m_size_known) m_measured = measure();
    m_size_known = true;
    return m_measured;
}

UISize UIElement::getSize() {
    GuiState* const state = GuiState::get();
    if (!state || !isVisible()) return getMeasured();
    state->layout();
    return m_size;
}

int UIElement::getWidth() {
    return getSize().width;
}

int UIElement::getHeight() {
    return getSize().height;
}

int UIElement::getX() {
    getSize();
    return m_x;
}

int UIElement::getY() {
    getSize();
    return m_y;
}

void UIElement::setSize(int width, int height) {
    if (m_set_size.width == width && m_set_size.height == height) return;
    m_set_size = {std::max(width, 0), std::max(height, 0)};
    contentChanged();
}

void UIElement::contentChanged() {
    bool in_root = false;
    for (UIElement* e = this; e; e = e->m_parent) {
        e->m_size_known = false;
        in_root = e->m_in_root;
    }
    GuiState* const state = GuiState::get();
    if (in_root && state) state->layout_known = false;
}

void UIElement::setHidden(bool hidden) {
    if (m_hidden == hidden) return;
    m_hidden = hidden;
    contentChanged();
}

bool UIElement::isVisible() const {
    if (m_hidden) return false;
    return m_parent ? m_parent->isVisible() : m_in_root;
}

void UIElement::setFontSize(int size) {
    size = std::clamp(size, 6, 128);
    if (m_font_size == size) return;
    m_font_size = size;
    noteTexts();
    contentChanged();
}

void UIElement::setBackgroundColor(const vec4& color) {
    m_background = color;
    m_has_background = true;
}

bool UIElement::isFocused() const {
    const GuiState* const state = GuiState::get();
    return state && isVisible() && (state->pressed == this || state->isEdited(*this));
}

void UIElement::release(int x, int y) {
    if (contains(x, y)) fireClick(x, y);
}

void UIElement::fireClick(int x, int y) {
    const GUIEventMouse event{x, y, 1};
    for (const ClickHandler& handler : m_click_handlers) handler(event, this);
}

void UIElement::fireChange(double value) {
    const GUIEventChange event{value};
    for (const ChangeHandler& handler : m_change_handlers) handler(event, this);
}

bool UIElement::contains(int x, int y) const {
    return x >= m_x && y >= m_y && x < m_x + m_size.width && y < m_y + m_size.height;
}

UISize UIElement::sizeOr(UISize content) const {
    return {m_set_size.width > 0 ? m_set_size.width : content.width,
            m_set_size.height > 0 ? m_set_size.height : content.height};
}

UISize UIElement::sizeAtLeast(UISize content) const {
    return {std::max(m_set_size.width, content.width), std::max(m_set_size.height, content.height)};
}

void UIElement::place(int x, int y, UISize size) {
    m_x = x;
    m_y = y;
    m_size = size;
    arrange();
}
