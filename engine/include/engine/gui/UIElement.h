// The base of everything on a panel: its place, size and look, and what it tells when it is used.
#pragma once

#include <memory>

#include "engine/Api.h"
#include "engine/gui/Events.h"
#include "engine/math/Vec.h"
#include "engine/memory/Allocator.h"

class UIPainter;
struct GuiState;

/// Whole pixels.
struct UISize {
    int width = 0;
    int height = 0;
};

/// A widget or a layout. Places are pixels of the window from its top left, y downward. Its parent (a layout or the UI
/// root) owns it; one without a parent is owned by whoever made it. Colours are red, green, blue and opacity, 0..1, as
/// they show on the screen (not linear). Frame thread only.
///
/// What code sets fires no binding: bindings tell what the user did. A handler may add and remove any element, its own
/// too.
class ENGINE_API UIElement {
public:
    using ClickHandler = Function<void(const GUIEventMouse& event, UIElement* element)>;
    using ChangeHandler = Function<void(const GUIEventChange& event, UIElement* element)>;

    UIElement() = default;
    virtual ~UIElement();
    UIElement(const UIElement&) = delete;
    UIElement& operator=(const UIElement&) = delete;

    /// Elements live in blocks of the engine's allocator, so that an element is deleted the same way whether `jNew` or
    /// `new` made it; deleting takes it off the memory books.
    static void* operator new(std::size_t size) { return jAllocator::get()->localAlloc(size); }
    static void* operator new(std::size_t, void* place) noexcept { return place; }
    static void operator delete(void* block) {
        memRemoveInfo(block);
        jAllocator::get()->localFree(block);
    }
    static void operator delete(void*, void*) noexcept {}

    UIElement* getParent() const { return m_parent; }  ///< null at the top and outside a tree

    // What handlers know it by; the engine does not look at them.
    int getId() const { return m_id; }
    void setId(int id) { m_id = id; }
    int getTag() const { return m_tag; }
    void setTag(int tag) { m_tag = tag; }
    const jString& getName() const { return m_name; }
    void setName(const jString& name) { m_name = name; }

    // Place and size. Sizes and places follow every change at once, in the same frame.
    /// Where an element at the top of the tree stands; a layout places its children itself.
    void setPosition(int x, int y);
    int getX();  ///< of the window, as it stands now; 0 outside a tree
    int getY();
    int getWidth();
    int getHeight();
    /// 0, as at first, lets the content decide. Texts and layouts grow beyond it when their content needs more.
    void setWidth(int width) { setSize(width, m_set_size.height); }
    void setHeight(int height) { setSize(m_set_size.width, height); }
    virtual void setSize(int width, int height);

    /// A hidden element takes no room in its layout and no clicks.
    void setHidden(bool hidden);
    bool isHidden() const { return m_hidden; }  ///< its own flag
    bool isVisible() const;                     ///< in the tree, with no hidden one above

    // Look.
    void setFontSize(int size);  ///< height of a line, pixels; 6 to 128, 16 at first
    int getFontSize() const { return m_font_size; }
    void setFontColor(const vec4& color) { m_font_color = color; }
    /// Without one a layout at the top of the tree is dark and half transparent, widgets have their usual look.
    virtual void setBackgroundColor(const vec4& color);

    // Use.
    /// Calls a handler after a click: pressed and released on this element with the left button.
    void bindClick(ClickHandler handler) { m_click_handlers.push_back(std::move(handler)); }
    /// Calls a handler after each change of its value by the user.
    void bindChange(ChangeHandler handler) { m_change_handlers.push_back(std::move(handler)); }
    /// Held by the user: pressed with the mouse, or its text being edited.
    virtual bool isFocused() const;

protected:
    friend struct GuiState;
    friend class UILayout;

    /// The size that its content and what was set ask for.
    virtual UISize measure() = 0;
    /// Places what is inside, after its own place is known.
    virtual void arrange() {}
    virtual void draw(UIPainter& painter) = 0;
    /// Takes the glyphs of its texts into the font.
    virtual void noteTexts() {}
    /// What takes the mouse there; null where it falls through to the scene.
    virtual UIElement* find(int x, int y) { return contains(x, y) ? this : nullptr; }
    virtual void press(int x, int y) { (void)x, (void)y; }
    virtual void drag(int x, int y) { (void)x, (void)y; }
    virtual void release(int x, int y);

    UISize getSize();
    void contentChanged();  ///< its size may be another now
    void fireClick(int x, int y);
    void fireChange(double value);
    bool contains(int x, int y) const;
    UISize sizeOr(UISize content) const;       ///< what was set, else the content's
    UISize sizeAtLeast(UISize content) const;  ///< the larger of what was set and the content's
    const UISize& getMeasured();
    void place(int x, int y, UISize size);

    UIElement* m_parent = nullptr;
    int m_id = 0;
    int m_tag = 0;
    jString m_name;
    int m_set_x = 0, m_set_y = 0;
    UISize m_set_size;
    UISize m_measured;
    int m_x = 0, m_y = 0;  ///< as laid out
    UISize m_size;         ///< as laid out
    int m_font_size = 16;
    vec4 m_font_color{0.93f, 0.94f, 0.96f, 1.0f};
    vec4 m_background{0.0f, 0.0f, 0.0f, 0.0f};
    bool m_has_background = false;
    bool m_hidden = false;
    bool m_in_root = false;     ///< at the top of the UI root's tree
    bool m_size_known = false;  ///< m_measured holds
    jList<ClickHandler> m_click_handlers;
    jList<ChangeHandler> m_change_handlers;
};
