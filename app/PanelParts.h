// Widgets for the application's own panels.
#pragma once

#include <functional>
#include <string>

#include "engine/gui/UILayout.h"
#include "engine/gui/UIWidgets.h"

namespace parts {

constexpr vec4 HEADING_COLOR{1.0f, 0.82f, 0.45f, 1.0f}, KEY_COLOR{0.62f, 0.85f, 1.0f, 1.0f};
constexpr vec4 PLAIN_COLOR{0.93f, 0.94f, 0.96f, 1.0f}, PANEL_COLOR{0.05f, 0.07f, 0.10f, 0.86f};

// The layout to which a widget is added owns the widget.
UILabel* makeLabel(const jString& text, const vec4& color = PLAIN_COLOR);
/// A button. Input scripts find it by its name, too.
UIButton* addButton(UILayout& layout, const char* name, const jString& text, std::function<void()> act);
/// A grid without a border inside a layout.
UIGridLayout* addGrid(UILayout& layout, int columns);

/// A row with a name, a slider and the value as text.
class SliderRow {
public:
    struct Range {
        double low = 0.0, high = 1.0;
        bool is_wide = false;  ///< finer steps at the low end
    };
    using Read = std::function<double()>;
    using Write = std::function<void(double)>;
    using Show = std::function<std::string(double)>;

    /// Fills one row of a grid of three columns. `name`: name of the slider.
    SliderRow(UILayout& grid, const char* name, const jString& text, Range range, Read read, Write write, Show show);
    /// Shows the current value.
    void refresh();

private:
    double toSlider(double value) const;

    UISlider* m_slider;
    UILabel* m_label;
    Range m_range;
    Read m_read;
    Show m_show;
};

}  // namespace parts
