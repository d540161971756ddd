// The editing of one line of text.
#pragma once

#include <memory>

#include "engine/text/Containers.h"

class FontSet;

/// Caret, selection, undo. Begins with all selected; places are pixels from the text's left end.
class TextEdit {
public:
    /// REQUIRES that `fonts` outlives it.
    TextEdit(FontSet& fonts, int font_size, const jString& text);
    ~TextEdit();

    void key(int key, int modifiers);  ///< a number and modifiers of Keys; others do nothing
    void type(char32_t codepoint);     ///< control characters, and those beyond 256, are dropped
    void press(float x);
    void drag(float x);

    const jString& getText() const;
    bool isChanged() const;  ///< another text than at first
    float getCaret() const;
    float getSelectionBegin() const;
    float getSelectionEnd() const;  ///< the begin when nothing is selected

private:
    struct State;

    void textChanged();

    std::unique_ptr<State> m_state;
};
