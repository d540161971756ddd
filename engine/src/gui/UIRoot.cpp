// The top of the tree: its elements and their positions. The picture's frame calls `update`; layout is done on demand.
#include "engine/gui/UIRoot.h"

#include <algorithm>
#include <filesystem>

#include "engine/gui/UIEditLine.h"
#include "engine/text/Log.h"
#include "gui/GuiState.h"
#include "text/RuntimeRoot.h"

namespace {

constexpr int MIN_SCROLLED = 64;  // pixels: an element with less visible height is not scrolled
constexpr int GAP = 4;            // pixels between a clipped element and the element below it

}  // namespace

UIRoot::UIRoot(const jString& font) : m_state(std::make_unique<GuiState>(font)) {}
UIRoot::~UIRoot() = default;

void UIRoot::addChild(std::unique_ptr<UIElement> element, int expand, int index) {
    if (!element) return;
    m_state->adopt(*element);
    auto& tops = m_state->tops;
    const auto place = index < 0 || index >= getNumChildren() ? tops.end() : tops.begin() + index;
    tops.insert(place, {std::move(element), expand});
}

void UIRoot::removeChild(UIElement* element) {
    auto& tops = m_state->tops;
    const auto found =
        std::find_if(tops.begin(), tops.end(), [&](const GuiState::Top& top) { return top.element.get() == element; });
    if (found == tops.end()) return;
    std::unique_ptr<UIElement> removed = std::move(found->element);
    tops.erase(found);
    m_state->dispose(std::move(removed));
}

void UIRoot::clear() {
    while (!m_state->tops.empty()) removeChild(m_state->tops.back().element.get());
}

int UIRoot::getNumChildren() const {
    return static_cast<int>(m_state->tops.size());
}
UIElement* UIRoot::getChild(int i) const {
    return m_state->tops[static_cast<std::size_t>(i)].element.get();
}
int UIRoot::getWidth() const {
    return m_state->width;
}
int UIRoot::getHeight() const {
    return m_state->height;
}

void UIRoot::setSize(int width, int height) {
    m_state->width = std::max(width, 1);
    m_state->height = std::max(height, 1);
    m_state->layout_known = false;
}

void UIRoot::update() {
    m_state->draw();
}

const jVector<jString>& UIRoot::getImages() const {
    return m_state->images;
}

const UIFontAtlas& UIRoot::getFontAtlas() const {
    return m_state->fonts.getPublished();
}

// GuiState. -----------------------------------------------------------------------------------------------------------

bool GuiState::Top::shows(int y) const {
    const int begin = element->m_set_y;
    return hidden == 0 || (y >= begin && y < begin + element->m_size.height - hidden);
}

void GuiState::adopt(UIElement& element) {
    element.m_in_root = true;
    layout_known = false;
    element.noteTexts();
}

void GuiState::dispose(std::unique_ptr<UIElement> element) {
    element->m_in_root = false;
    element->m_parent = nullptr;
    if (handling > 0) disposed.push_back(std::move(element));
}

void GuiState::endHandling() {
    disposed.clear();
}

void GuiState::forget(const UIElement* element) {
    if (hovered == element) hovered = nullptr;
    if (pressed == element) pressed = nullptr;
    if (edited == element) edited = nullptr;
}

int GuiState::getTexture(const jString& path) {
    const jString file = resolvePath(path);
    std::error_code error;
    if (file.empty() || !std::filesystem::is_regular_file(std::filesystem::path(std::string(file)), error)) {
        jLog::warning("%s: there is no such image", path.c_str());
        return 0;
    }
    const int known = images.find(file);
    if (known >= 0) return known + 1;
    images.append(file);
    return images.size();
}

void GuiState::layout() {
    if (layout_known) return;
    layout_known = true;
    for (Top& top : tops) {
        if (!top.element->isHidden()) placeTop(top);
    }
}

/// The y where an element must end: the window's bottom, or the top of the next element below it.
int GuiState::findEnd(const UIElement& element, int element_width) {
    int end = height;
    for (const Top& top : tops) {
        UIElement& other = *top.element;
        if (other.isHidden() || other.m_set_y <= element.m_set_y || other.m_set_y >= end) continue;
        const bool is_beside = other.m_set_x >= element.m_set_x + element_width ||
                               other.m_set_x + other.getMeasured().width <= element.m_set_x;
        if (!is_beside) end = other.m_set_y - GAP;
    }
    return end;
}

void GuiState::placeTop(Top& top) {
    UIElement& element = *top.element;
    UISize size = element.getMeasured();
    if (top.expand & UIRoot::EXPAND_WIDTH) size.width = width;
    if (top.expand & UIRoot::EXPAND_HEIGHT) size.height = height;
    const int room = findEnd(element, size.width) - element.m_set_y;
    top.hidden = room >= MIN_SCROLLED ? std::max(size.height - room, 0) : 0;
    top.scroll = std::clamp(top.scroll, 0, top.hidden);
    element.place(element.m_set_x, element.m_set_y - top.scroll, size);
}
