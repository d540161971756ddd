// Mouse and keyboard on the panels: element under the mouse, held element, edited text. Called by the input router.
#include <algorithm>

#include "engine/gui/Keys.h"
#include "engine/gui/UIEditLine.h"
#include "gui/GuiState.h"

namespace {

constexpr int SCROLL = 48;  // pixels per notch of the wheel

}  // namespace

GuiState::Top* GuiState::findTop(int x, int y) {
    layout();
    for (auto top = tops.rbegin(); top != tops.rend(); ++top) {
        UIElement& element = *top->element;
        if (!element.isHidden() && top->shows(y) && element.find(x, y)) return &*top;
    }
    return nullptr;
}

UIElement* GuiState::find(int x, int y) {
    Top* const top = findTop(x, y);
    return top ? top->element->find(x, y) : nullptr;
}

void GuiState::press(int x, int y) {
    const HandlerScope scope(*this);
    // Ending the editing may change the tree below the mouse.
    if (edited && find(x, y) != edited) endEdit(true);
    hovered = pressed = find(x, y);
    if (pressed) pressed->press(x, y);
}

void GuiState::drag(int x, int y) {
    const HandlerScope scope(*this);
    layout();
    if (pressed && pressed->isVisible()) pressed->drag(x, y);
}

void GuiState::release(int x, int y) {
    const HandlerScope scope(*this);
    layout();
    UIElement* const released = std::exchange(pressed, nullptr);
    if (released && released->isVisible()) released->release(x, y);
}

void GuiState::scroll(int delta, int x, int y) {
    Top* const top = findTop(x, y);
    if (!top) return;
    top->scroll = std::clamp(top->scroll - delta * SCROLL / 120, 0, top->hidden);
    layout_known = false;
}

bool GuiState::isEdited(const UIElement& element) const {
    return edited == &element;
}

bool GuiState::takesKeys() {
    if (edited && !edited->isVisible()) endEdit(false);
    return edited != nullptr;
}

void GuiState::key(int key, int modifiers) {
    const HandlerScope scope(*this);
    if (key == Keys::KEY_ENTER || key == Keys::KEY_TAB) {
        endEdit(true);
    } else if (key == Keys::KEY_ESCAPE) {
        endEdit(false);
    } else if (edited) {
        edited->editKey(key, modifiers);
    }
}

void GuiState::text(char32_t codepoint) {
    if (edited) edited->editText(codepoint);
}

void GuiState::endEdit(bool keep) {
    if (!edited) return;
    const HandlerScope scope(*this);
    std::exchange(edited, nullptr)->endEdit(keep);
}
