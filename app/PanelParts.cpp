// Builds labels, buttons and slider rows of one style.
#include "PanelParts.h"

#include <algorithm>
#include <cmath>

namespace parts {

namespace {

constexpr int FONT_SIZE = 15;      // pixels
constexpr int BUTTON_WIDTH = 152;  // pixels
constexpr int LABEL_WIDTH = 84, SLIDER_WIDTH = 150, VALUE_WIDTH = 66;

}  // namespace

UILabel* makeLabel(const jString& text, const vec4& color) {
    auto* const label = new UILabel(text);
    label->setFontSize(FONT_SIZE);
    label->setFontColor(color);
    return label;
}

UIButton* addButton(UILayout& layout, const char* name, const jString& text, std::function<void()> act) {
    auto* const button = new UIButton(text);
    button->setName(name);
    button->setFontSize(FONT_SIZE);
    button->setWidth(BUTTON_WIDTH);
    button->bindClick([act = std::move(act)](const GUIEventMouse&, UIElement*) { act(); });
    layout.addChild(button);
    return button;
}

UIGridLayout* addGrid(UILayout& layout, int columns) {
    auto* const grid = new UIGridLayout;
    grid->setNumColumns(columns);
    grid->setSpace(8, 4);
    grid->setPadding(0);
    grid->setBackgroundColor({0.0f, 0.0f, 0.0f, 0.0f});
    layout.addChild(grid);
    return grid;
}

SliderRow::SliderRow(UILayout& grid, const char* name, const jString& text, Range range, Read read, Write write,
                     Show show)
    : m_slider(new UISlider), m_label(makeLabel("")), m_range(range), m_read(std::move(read)), m_show(std::move(show)) {
    UILabel* const label = makeLabel(text);
    label->setWidth(LABEL_WIDTH);
    m_label->setWidth(VALUE_WIDTH);
    m_slider->setName(name);
    m_slider->setWidth(SLIDER_WIDTH);
    m_slider->setMinValue(static_cast<float>(toSlider(range.low)));
    m_slider->setMaxValue(static_cast<float>(toSlider(range.high)));
    m_slider->bindChange([this, write = std::move(write)](const GUIEventChange& event, UIElement*) {
        const double value = m_range.is_wide ? event.value * event.value : event.value;
        write(std::clamp(value, m_range.low, m_range.high));
    });
    grid.addChild(label);
    grid.addChild(m_slider);
    grid.addChild(m_label);
}

double SliderRow::toSlider(double value) const {
    return m_range.is_wide ? std::sqrt(std::max(value, 0.0)) : value;
}

void SliderRow::refresh() {
    const double value = m_read();
    if (!m_slider->isFocused()) m_slider->setValue(static_cast<float>(toSlider(value)));
    m_label->setText(m_show(value));
}

}  // namespace parts
