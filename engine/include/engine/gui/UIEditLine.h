// The widgets that are typed into: a line of text, an integer, a vector.
#pragma once

#include "engine/Api.h"
#include "engine/gui/UILayout.h"

class TextEdit;

/// One line of text. A click begins the editing with all of it selected; Enter, Tab or a click elsewhere takes the
/// typed text over and tells a change, Escape drops it.
class ENGINE_API UIEditLine : public UIElement {
public:
    explicit UIEditLine(const jString& text = {});
    ~UIEditLine() override;
    void setText(const jString& text);                 ///< while it is edited, what is typed stays
    const jString& getText() const { return m_text; }  ///< without what is being typed

protected:
    friend struct GuiState;

    UISize measure() override;
    void draw(UIPainter& painter) override;
    void noteTexts() override;
    void press(int x, int y) override;
    void drag(int x, int y) override;
    void release(int x, int y) override;

    /// Brings the text up to date before it is shown or edited.
    virtual void refresh() {}
    /// What becomes of a typed text.
    virtual void commit(const jString& text);
    /// Shows a text that no binding is told of; does not allocate when it is the one shown.
    void showText(const char* text);

private:
    void endEdit(bool keep);
    void editKey(int key, int modifiers);
    void editText(char32_t codepoint);
    void drawEdit(UIPainter& painter, float left, float top);
    float getScroll() const;
    float toText(int x) const;

    jString m_text;
    std::unique_ptr<TextEdit> m_edit;  ///< while it is edited
    bool m_fresh = false;              ///< the press that began the editing lasts
};

/// An integer that lives elsewhere. What is typed goes to the setter and then tells a change; a text that is no
/// integer, and a value that the setter refuses, is dropped with one log line and the last value stays.
class ENGINE_API UIInt : public UIEditLine {
public:
    using Getter = Function<int()>;
    using Setter = Function<bool(int)>;  ///< false refuses

    UIInt(int id, Getter getter, Setter setter);

protected:
    void refresh() override;
    void commit(const jString& text) override;

private:
    Getter m_getter;
    Setter m_setter;
};

/// A vector that lives elsewhere, in three fields; each typed number goes to the setter with the other two as they are.
/// What is no finite number, and what the setter refuses, is dropped with one log line and the last value stays.
class ENGINE_API UIDVec3 : public UIHLayout {
public:
    using Getter = Function<dvec3()>;
    using Setter = Function<bool(const dvec3&)>;  ///< false refuses

    UIDVec3(int id, Getter getter, Setter setter);

    void setSize(int width, int height) override;         ///< of each field
    void setBackgroundColor(const vec4& color) override;  ///< of each field
    bool isFocused() const override;
    UIEditLine* getField(int component) const;  ///< 0 to 2
    void setDecimals(int decimals);             ///< digits behind the point that are shown; 7 at first

private:
    class Field;
    friend class Field;

    Getter m_getter;
    Setter m_setter;
    int m_decimals = 7;
};
