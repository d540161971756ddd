// Widgets with text input: a line of text, an integer, a vector.
#pragma once

#include "engine/Api.h"
#include "engine/gui/UILayout.h"

class TextEdit;

/// One line of text. A click starts editing with all text selected; Enter, Tab or a click elsewhere accepts the typed
/// text and fires a change, Escape discards it.
class ENGINE_API UIEditLine : public UIElement {
public:
    explicit UIEditLine(const jString& text = {});
    ~UIEditLine() override;
    void setText(const jString& text);                 ///< text being edited is kept
    const jString& getText() const { return m_text; }  ///< without uncommitted input

protected:
    friend struct GuiState;

    UISize measure() override;
    void draw(UIPainter& painter) override;
    void noteTexts() override;
    void press(int x, int y) override;
    void drag(int x, int y) override;
    void release(int x, int y) override;

    /// Updates the text before it is shown or edited.
    virtual void refresh() {}
    /// Accepts a typed text.
    virtual void commit(const jString& text);
    /// Shows a text without firing a change; does not allocate when it is already shown.
    void showText(const char* text);

private:
    void endEdit(bool keep);
    void editKey(int key, int modifiers);
    void editText(char32_t codepoint);
    void drawEdit(UIPainter& painter, float left, float top);
    float getScroll() const;
    float toText(int x) const;

    jString m_text;
    std::unique_ptr<TextEdit> m_edit;  ///< null unless being edited
    bool m_begin_press = false;        ///< the press that started editing is still held
};

/// An integer stored elsewhere. Typed values are passed to the setter and fire a change; a text that is not an integer,
/// and a value that the setter refuses, is discarded with one log line and the last value is kept.
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

/// A vector stored elsewhere, in three fields; each typed number is passed to the setter with the other two unchanged.
/// Input that is not a finite number, and values that the setter refuses, are discarded with one log line and the last
/// value is kept.
class ENGINE_API UIDVec3 : public UIHLayout {
public:
    using Getter = Function<dvec3()>;
    using Setter = Function<bool(const dvec3&)>;  ///< false refuses

    UIDVec3(int id, Getter getter, Setter setter);

    void setSize(int width, int height) override;         ///< of each field
    void setBackgroundColor(const vec4& color) override;  ///< of each field
    bool isFocused() const override;
    UIEditLine* getField(int component) const;  ///< 0 to 2
    void setDecimals(int decimals);             ///< digits shown after the decimal point; default 7

private:
    class Field;
    friend class Field;

    Getter m_getter;
    Setter m_setter;
    int m_decimals = 7;
};
