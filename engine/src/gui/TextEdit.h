// Editing of one line of text.
#pragma once

#include <memory>

#include "engine/text/Containers.h"

class FontSet;

/// Caret, selection, undo. Initially all text is selected; positions are pixels from the text's left end.
class TextEdit {
public:
    /// REQUIRES that `fonts` outlives it.
    TextEdit(FontSet& fonts, int font_size, const jString& text);
    ~TextEdit();

    void key(int key, int modifiers);  ///< `key` and `modifiers` as in Keys; other keys have no effect
    void type(char32_t codepoint);     ///< ignores control characters, and characters beyond 256
    void press(float x);
    void drag(float x);

    const jString& getText() const;
    bool isChanged() const;  ///< the text differs from the initial one
    float getCaret() const;
    float getSelectionBegin() const;
    float getSelectionEnd() const;  ///< equals the begin when nothing is selected

private:
    struct State;

    void textChanged();

    std::unique_ptr<State> m_state;
};
