// Arrangement of children; computed on demand after a change, or when the panels are drawn.
#include "engine/gui/UILayout.h"

#include <algorithm>
#include <numeric>

#include "gui/GuiState.h"
#include "gui/UIPainter.h"

UILayout::~UILayout() = default;

void UILayout::addChild(std::unique_ptr<UIElement> child) {
    if (!child) return;
    child->m_parent = this;
    child->noteTexts();
    m_children.push_back(std::move(child));
    contentChanged();
}

void UILayout::removeChild(UIElement* child) {
    const auto found =
        std::find_if(m_children.begin(), m_children.end(), [&](const auto& entry) { return entry.get() == child; });
    if (found == m_children.end()) return;
    std::unique_ptr<UIElement> removed = std::move(*found);
    m_children.erase(found);
    contentChanged();
    if (GuiState* const state = GuiState::get()) state->dispose(std::move(removed));
}

void UILayout::setSpace(int x, int y) {
    m_space = {std::max(x, 0), std::max(y, 0)};
    contentChanged();
}

void UILayout::setPadding(int padding) {
    m_padding = std::max(padding, 0);
    contentChanged();
}

void UILayout::draw(UIPainter& painter) {
    if (m_has_background) {
        painter.fill(m_x, m_y, m_size, m_background, UIPainter::PANEL_ROUNDING);
    } else if (m_in_root) {
        painter.fill(m_x, m_y, m_size, UIPainter::PANEL, UIPainter::PANEL_ROUNDING);
    }
    for (const auto& child : m_children) {
        if (!child->m_hidden && painter.shows(child->m_y, child->m_size.height)) child->draw(painter);
    }
}

void UILayout::noteTexts() {
    for (const auto& child : m_children) child->noteTexts();
}

UIElement* UILayout::find(int x, int y) {
    if (!contains(x, y)) return nullptr;
    for (const auto& child : m_children) {
        UIElement* const found = child->m_hidden ? nullptr : child->find(x, y);
        if (found) return found;
    }
    return this;
}

UISize UILayout::measureChild(int i) {
    return isShown(i) ? getChild(i)->getMeasured() : UISize();
}

UISize UILayout::padded(UISize content) const {
    return sizeAtLeast({content.width + 2 * m_padding, content.height + 2 * m_padding});
}

UISize UIHLayout::measure() {
    UISize content;
    bool first = true;
    for (int i = 0; i < getNumChildren(); ++i) {
        if (!isShown(i)) continue;
        const UISize size = measureChild(i);
        content.width += size.width + (first ? 0 : m_space.width);
        content.height = std::max(content.height, size.height);
        first = false;
    }
    return padded(content);
}

void UIHLayout::arrange() {
    int x = m_x + m_padding;
    for (int i = 0; i < getNumChildren(); ++i) {
        if (!isShown(i)) continue;
        const UISize size = measureChild(i);
        placeChild(i, x, m_y + (m_size.height - size.height) / 2, size);
        x += size.width + m_space.width;
    }
}

UISize UIVLayout::measure() {
    UISize content;
    bool first = true;
    for (int i = 0; i < getNumChildren(); ++i) {
        if (!isShown(i)) continue;
        const UISize size = measureChild(i);
        content.height += size.height + (first ? 0 : m_space.height);
        content.width = std::max(content.width, size.width);
        first = false;
    }
    return padded(content);
}

void UIVLayout::arrange() {
    int y = m_y + m_padding;
    for (int i = 0; i < getNumChildren(); ++i) {
        if (!isShown(i)) continue;
        UISize size = measureChild(i);
        if (!hasSetWidth(i)) size.width = m_size.width - 2 * m_padding;
        placeChild(i, m_x + m_padding, y, size);
        y += size.height + m_space.height;
    }
}

void UIGridLayout::setNumColumns(int columns) {
    m_num_columns = std::max(columns, 1);
    contentChanged();
}

void UIGridLayout::setColumnRatio(int column, float ratio) {
    if (column < 0) return;
    while (m_ratios.size() <= column) m_ratios.append(0.0f);
    m_ratios[column] = ratio > 0.0f ? ratio : 0.0f;
    contentChanged();
}

/// Widens the columns with ratios until their widths are in proportion.
void UIGridLayout::shareWidth() {
    const int count = std::min(m_ratios.size(), m_num_columns);
    float unit = 0.0f;  // width for ratio 1
    for (int i = 0; i < count; ++i) {
        if (m_ratios[i] > 0.0f)
            unit = std::max(unit, static_cast<float>(m_columns[static_cast<std::size_t>(i)]) / m_ratios[i]);
    }
    for (int i = 0; i < count; ++i) {
        if (m_ratios[i] > 0.0f) m_columns[static_cast<std::size_t>(i)] = static_cast<int>(unit * m_ratios[i]);
    }
}

UISize UIGridLayout::measure() {
    m_columns.assign(static_cast<std::size_t>(m_num_columns), 0);
    m_rows.clear();
    std::size_t cell = 0;
    for (int i = 0; i < getNumChildren(); ++i) {
        if (!isShown(i)) continue;
        const std::size_t column = cell++ % m_columns.size();
        if (column == 0) m_rows.push_back(0);
        const UISize size = measureChild(i);
        m_columns[column] = std::max(m_columns[column], size.width);
        m_rows.back() = std::max(m_rows.back(), size.height);
    }
    shareWidth();
    const int gaps_x = m_space.width * (m_num_columns - 1);
    const int gaps_y = m_space.height * std::max(static_cast<int>(m_rows.size()) - 1, 0);
    return padded({std::accumulate(m_columns.begin(), m_columns.end(), gaps_x),
                   std::accumulate(m_rows.begin(), m_rows.end(), gaps_y)});
}

void UIGridLayout::arrange() {
    std::size_t cell = 0;
    int x = 0, y = m_y + m_padding;
    for (int i = 0; i < getNumChildren(); ++i) {
        if (!isShown(i)) continue;
        const std::size_t column = cell % m_columns.size();
        const std::size_t row = cell / m_columns.size();
        if (column == 0) {
            if (row > 0) y += m_rows[row - 1] + m_space.height;
            x = m_x + m_padding;
        }
        const UISize size = measureChild(i);
        placeChild(i, x, y + (m_rows[row] - size.height) / 2, size);
        x += m_columns[column] + m_space.width;
        ++cell;
    }
}
