// Layouts: elements that arrange other elements.
#pragma once

#include "engine/Api.h"
#include "engine/gui/UIElement.h"

/// Owns its children and receives the mouse on all of its area.
class ENGINE_API UILayout : public UIElement {
public:
    ~UILayout() override;

    /// Takes ownership of an element made with `jNew` or `new`; null is ignored. REQUIRES an element without a parent.
    void addChild(UIElement* child) { addChild(std::unique_ptr<UIElement>(child)); }
    void addChild(std::unique_ptr<UIElement> child);
    /// Deletes a direct child; ignores other elements.
    void removeChild(UIElement* child);
    int getNumChildren() const { return static_cast<int>(m_children.size()); }
    UIElement* getChild(int i) const { return m_children[static_cast<std::size_t>(i)].get(); }

    /// Space between neighbours, pixels; default (4, 4).
    void setSpace(int x, int y);
    /// Space between border and children, pixels on each side; default 4.
    void setPadding(int padding);

protected:
    void draw(UIPainter& painter) override;
    void noteTexts() override;
    UIElement* find(int x, int y) override;

    UISize measureChild(int i);  ///< zero for a hidden child
    void placeChild(int i, int x, int y, UISize size) { getChild(i)->place(x, y, size); }
    bool isShown(int i) const { return !getChild(i)->isHidden(); }
    bool hasSetWidth(int i) const { return getChild(i)->m_set_size.width > 0; }
    UISize padded(UISize content) const;

    std::vector<std::unique_ptr<UIElement>> m_children;
    UISize m_space{4, 4};
    int m_padding = 4;
};

/// Left to right, vertically centred.
class ENGINE_API UIHLayout : public UILayout {
protected:
    UISize measure() override;
    void arrange() override;
};

/// Top to bottom; children without a set width get the width of the widest.
class ENGINE_API UIVLayout : public UILayout {
protected:
    UISize measure() override;
    void arrange() override;
};

/// Row by row, each child in the next cell; cells are left-aligned and vertically centred.
class ENGINE_API UIGridLayout : public UILayout {
public:
    void setNumColumns(int columns);  ///< at least 1, the default
    /// Columns with a ratio share the width in proportion, each at least as wide as its content; a column with ratio 0,
    /// the default, has the width of its content.
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
