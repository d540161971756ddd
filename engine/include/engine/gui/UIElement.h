// Base class of all panel elements: position, size, appearance and handlers.
#pragma once

#include <memory>

#include "engine/Api.h"
#include "engine/gui/Events.h"
#include "engine/math/Vec.h"
#include "engine/memory/Allocator.h"

class UIPainter;
struct GuiState;

/// A size in whole pixels.
struct UISize {
    int width = 0;
    int height = 0;
};

/// A widget or a layout. Positions are pixels from the window's top left corner, y downward. Its parent (a layout or
/// the UI root) owns it; without a parent it is owned by its creator. Colours are red, green, blue and opacity, 0..1,
/// display values (not linear). Frame thread only.
///
/// Changes by code fire no binding: bindings report the user's actions. A handler may add and remove any element,
/// including its own.
class ENGINE_API UIElement {
public:
    using ClickHandler = Function<void(const GUIEventMouse& event, UIElement* element)>;
    using ChangeHandler = Function<void(const GUIEventChange& event, UIElement* element)>;

    UIElement() = default;
    virtual ~UIElement();
    UIElement(const UIElement&) = delete;
    UIElement& operator=(const UIElement&) = delete;

    /// Elements use blocks of the engine's allocator, so that deletion is the same for elements made by `jNew` and by
    /// `new`; deletion also removes the registration of the memory.
    static void* operator new(std::size_t size) { return jAllocator::get()->localAlloc(size); }
    static void* operator new(std::size_t, void* place) noexcept { return place; }
    static void operator delete(void* block) {
        memRemoveInfo(block);
        jAllocator::get()->localFree(block);
    }
    static void operator delete(void*, void*) noexcept {}

    UIElement* getParent() const { return m_parent; }  ///< null at the top of the tree and outside a tree

    // Identification for handlers; the engine does not use it.
    int getId() const { return m_id; }
    void setId(int id) { m_id = id; }
    int getTag() const { return m_tag; }
    void setTag(int tag) { m_tag = tag; }
    const jString& getName() const { return m_name; }
    void setName(const jString& name) { m_name = name; }

    // Position and size. Changes take effect at once, in the same frame.
    /// Position of an element at the top of the tree; a layout places its children itself.
    void setPosition(int x, int y);
    int getX();  ///< in the window; 0 outside a tree
    int getY();
    int getWidth();
    int getHeight();
    /// 0, the default, uses the content's size. Texts and layouts are larger than a set size when their content needs
    /// it.
    void setWidth(int width) { setSize(width, m_set_size.height); }
    void setHeight(int height) { setSize(m_set_size.width, height); }
    virtual void setSize(int width, int height);

    /// A hidden element takes no space in its layout and receives no clicks.
    void setHidden(bool hidden);
    bool isHidden() const { return m_hidden; }  ///< its own flag only
    bool isVisible() const;                     ///< in the tree, and neither it nor an ancestor is hidden

    // Appearance.
    void setFontSize(int size);  ///< line height, pixels; 6 to 128, default 16
    int getFontSize() const { return m_font_size; }
    void setFontColor(const vec4& color) { m_font_color = color; }
    /// Default: dark and half transparent for a layout at the top of the tree, the standard look for widgets.
    virtual void setBackgroundColor(const vec4& color);

    // Handlers.
    /// Adds a handler for clicks: press and release of the left button on this element.
    void bindClick(ClickHandler handler) { m_click_handlers.push_back(std::move(handler)); }
    /// Adds a handler for changes of the value by the user.
    void bindChange(ChangeHandler handler) { m_change_handlers.push_back(std::move(handler)); }
    /// Used by the user: pressed with the mouse, or its text is being edited.
    virtual bool isFocused() const;

protected:
    friend struct GuiState;
    friend class UILayout;

    /// Size required by content and set size.
    virtual UISize measure() = 0;
    /// Arranges the content; called after its own position is set.
    virtual void arrange() {}
    virtual void draw(UIPainter& painter) = 0;
    /// Registers the glyphs of its texts with the font.
    virtual void noteTexts() {}
    /// The element that receives the mouse at this position; null where it passes to the scene.
    virtual UIElement* find(int x, int y) { return contains(x, y) ? this : nullptr; }
    virtual void press(int x, int y) { (void)x, (void)y; }
    virtual void drag(int x, int y) { (void)x, (void)y; }
    virtual void release(int x, int y);

    UISize getSize();
    void contentChanged();  ///< reports that its size may have changed
    void fireClick(int x, int y);
    void fireChange(double value);
    bool contains(int x, int y) const;
    UISize sizeOr(UISize content) const;       ///< the set size, otherwise the content's
    UISize sizeAtLeast(UISize content) const;  ///< the larger of the set size and the content's
    const UISize& getMeasured();
    void place(int x, int y, UISize size);

    UIElement* m_parent = nullptr;
    int m_id = 0;
    int m_tag = 0;
    jString m_name;
    int m_set_x = 0, m_set_y = 0;
    UISize m_set_size;
    UISize m_measured;
    int m_x = 0, m_y = 0;  ///< position of the current layout
    UISize m_size;         ///< size of the current layout
    int m_font_size = 16;
    vec4 m_font_color{0.93f, 0.94f, 0.96f, 1.0f};
    vec4 m_background{0.0f, 0.0f, 0.0f, 0.0f};
    bool m_has_background = false;
    bool m_hidden = false;
    bool m_in_root = false;     ///< it is at the top of the UI root's tree
    bool m_size_known = false;  ///< m_measured is valid
    jList<ClickHandler> m_click_handlers;
    jList<ChangeHandler> m_change_handlers;
};
