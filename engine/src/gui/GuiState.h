// The members of the UI root: elements at the top of the tree, mouse and keyboard, drawing.
#pragma once

#include "engine/gui/UIRoot.h"
#include "gui/FontSet.h"

class UIEditLine;

struct GuiState {
    /// An element at the top of the tree.
    struct Top {
        std::unique_ptr<UIElement> element;
        int expand = 0;
        int scroll = 0;           ///< pixels by which its content is moved up
        int hidden = 0;           ///< pixels of its height that do not fit into the window
        bool shows(int y) const;  ///< whether the element is visible in this row of the window
    };

    explicit GuiState(const jString& font) : fonts(font) { s_current = this; }
    ~GuiState();
    /// The current instance, null when there is none.
    static GuiState* get() { return s_current; }

    // The tree: UIRoot.cpp
    void layout();  ///< no effect when nothing has changed
    void adopt(UIElement& element);
    /// Deletes an element; while handlers are running only after all of them have returned.
    void dispose(std::unique_ptr<UIElement> element);
    void forget(const UIElement* element);
    int getTexture(const jString& path);  ///< 0, with one log line, when the file does not exist

    // Mouse and keyboard: PanelInput.cpp. Positions are pixels of the window.
    Top* findTop(int x, int y);
    UIElement* find(int x, int y);
    bool takesMouse(int x, int y) { return findTop(x, y) != nullptr; }
    void hover(int x, int y) { hovered = find(x, y); }
    void unhover() { hovered = nullptr; }
    void press(int x, int y);
    void drag(int x, int y);
    void release(int x, int y);
    void scroll(int delta, int x, int y);
    bool takesKeys();
    void key(int key, int modifiers);
    void text(char32_t codepoint);
    void beginEdit(UIEditLine& line) { edited = &line; }
    bool isEdited(const UIElement& element) const;
    void endEdit(bool keep);
    void endHandling();

    // The drawing: GuiDrawing.cpp
    void draw();

    std::vector<Top> tops;
    std::vector<std::unique_ptr<UIElement>> disposed;
    int handling = 0;  ///< nesting depth of operations that may call handlers
    int width = 1280;
    int height = 720;
    bool layout_known = true;

    UIElement* hovered = nullptr;
    UIElement* pressed = nullptr;
    UIEditLine* edited = nullptr;

    FontSet fonts;
    jVector<jString> images;
    ImGuiContext* context = nullptr;
    bool drawn = false;

private:
    inline static GuiState* s_current = nullptr;

    void makeContext();
    int findEnd(const UIElement& element, int element_width);
    void placeTop(Top& top);
    void drawTop(Top& top, UIPainter& painter);
};

/// Marks a scope in which handlers may be called.
class HandlerScope {
public:
    explicit HandlerScope(GuiState& state) : m_state(state) { ++m_state.handling; }
    ~HandlerScope() {
        if (--m_state.handling == 0) m_state.endHandling();
    }
    HandlerScope(const HandlerScope&) = delete;
    HandlerScope& operator=(const HandlerScope&) = delete;

private:
    GuiState& m_state;
};
