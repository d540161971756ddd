// Layouts: elements that place others.
#pragma once

#include "engine/Api.h"
#include "engine/gui/UIElement.h"

/// Owns its children and takes the mouse on all of its area.
class ENGINE_API UILayout : public UIElement {
public:
    ~UILayout() override;

    /// Takes ownership of an element made with `jNew` or `new`; null is ignored. REQUIRES one without a parent.
    void addChild(UIElement* child) { addChild(std::unique_ptr<UIElement>(child)); }
    void addChild(std::unique_ptr<UIElement> child);
    /// Deletes a direct child; others are ignored.
    void removeChild(UIElement* child);
    int getNumChildren() const { return static_cast<int>(m_children.size()); }
    UIElement* getChild(int i) const { return m_children[static_cast<std::size_t>(i)].get(); }

    /// Between neighbours, pixels; (4, 4) at first.
    void setSpace(int x, int y);
    /// Between its border and the children, pixels on each side; 4 at first.
    void setPadding(int padding);

protected:
    void draw(UIPainter& painter) override;
    void noteTexts() override;
    UIElement* find(int x, int y) override;

    UISize measureChild(int i);  ///< zero of a hidden one
    void placeChild(int i, int x, int y, UISize size) { getChild(i)->place(x, y, size); }
    bool isShown(int i) const { return !getChild(i)->isHidden(); }
    bool hasSetWidth(int i) const { return getChild(i)->m_set_size.width > 0; }
    UISize padded(UISize content) const;

    std::vector<std::unique_ptr<UIElement>> m_children;
    UISize m_space{4, 4};
    int m_padding = 4;
};

/// Left to right, centred in height.
class ENGINE_API UIHLayout : public UILayout {
protected:
    UISize measure() override;
    void arrange() override;
};

/// Top to bottom; children without a width of their own are as wide as the widest.
class ENGINE_API UIVLayout : public UILayout {
protected:
    UISize measure() override;
    void arrange() override;
};

/// Row by row, each child in the next cell; cells are aligned to the left and centred in height.
class ENGINE_API UIGridLayout : public UILayout {
public:
    void setNumColumns(int columns);  ///< at least 1, as at first
    /// Columns with ratios share the width in proportion to them, each wide enough for its content; ratio 0, as at
    /// first, is a column as wide as its content.
    void setColumnRatio(int column, float ratio);

protected:
    UISize measure() override;
    void arrange() override;

private:
    void shareWidth();

    int m_num_columns = 1;
    jVector<float> m_ratios;
    std::vector<int> m_columns;  ///< widths
    std::vector<int> m_rows;     ///< heights
};
