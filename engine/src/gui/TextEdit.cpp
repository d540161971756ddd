// The editor's state machine is stb_textedit; this file provides the text, the font's widths and the keys.
#include "gui/TextEdit.h"

#include <algorithm>

#include "engine/gui/Keys.h"
#include "gui/FontSet.h"
#include "gui/Utf8.h"

namespace {

constexpr std::size_t MAX_LENGTH = 256;  // characters

struct TextLine {
    std::vector<ImWchar> characters;
    const ImFont* font = nullptr;
    float font_size = 0.0f;

    float widthOf(int i) const {
        const float advance = font->GetCharAdvance(characters[static_cast<std::size_t>(i)]);
        return advance * font_size / font->FontSize;
    }
    float widthTo(int end) const {
        float width = 0.0f;
        for (int i = 0; i < end; ++i) width += widthOf(i);
        return width;
    }
    bool insert(int at, const ImWchar* added, int count) {
        if (characters.size() + static_cast<std::size_t>(count) > MAX_LENGTH) return false;
        characters.insert(characters.begin() + at, added, added + count);
        return true;
    }
    void erase(int at, int count) { characters.erase(characters.begin() + at, characters.begin() + at + count); }
};

}  // namespace

#define STB_TEXTEDIT_STRING TextLine
#define STB_TEXTEDIT_CHARTYPE ImWchar
#include <imstb_textedit.h>

namespace {

void layoutRow(StbTexteditRow* row, const TextLine* line, int start) {
    const int length = static_cast<int>(line->characters.size());
    *row = {0.0f, line->widthTo(length), line->font_size, 0.0f, line->font_size, length - start};
}

}  // namespace

// Keys are characters or one of these.
#define STB_TEXTEDIT_K_LEFT 0x200000
#define STB_TEXTEDIT_K_RIGHT 0x200001
#define STB_TEXTEDIT_K_UP 0x200002
#define STB_TEXTEDIT_K_DOWN 0x200003
#define STB_TEXTEDIT_K_LINESTART 0x200004
#define STB_TEXTEDIT_K_LINEEND 0x200005
#define STB_TEXTEDIT_K_TEXTSTART 0x200006
#define STB_TEXTEDIT_K_TEXTEND 0x200007
#define STB_TEXTEDIT_K_DELETE 0x200008
#define STB_TEXTEDIT_K_BACKSPACE 0x200009
#define STB_TEXTEDIT_K_UNDO 0x20000A
#define STB_TEXTEDIT_K_REDO 0x20000B
#define STB_TEXTEDIT_K_PGUP 0x20000C
#define STB_TEXTEDIT_K_PGDOWN 0x20000D
#define STB_TEXTEDIT_K_SHIFT 0x400000
#define STB_TEXTEDIT_STRINGLEN(line) static_cast<int>((line)->characters.size())
#define STB_TEXTEDIT_LAYOUTROW(row, line, start) layoutRow(row, line, start)
#define STB_TEXTEDIT_GETWIDTH(line, start, i) (line)->widthOf((start) + (i))
#define STB_TEXTEDIT_KEYTOTEXT(key) ((key) < 0x200000 ? (key) : -1)
#define STB_TEXTEDIT_GETCHAR(line, i) (line)->characters[static_cast<std::size_t>(i)]
#define STB_TEXTEDIT_NEWLINE '\n'
#define STB_TEXTEDIT_INSERTCHARS(line, at, added, count) (line)->insert(at, added, count)
#define STB_TEXTEDIT_DELETECHARS(line, at, count) (line)->erase(at, count)
#define STB_TEXTEDIT_IMPLEMENTATION
#include <imstb_textedit.h>

namespace {

/// 0 for a key without an editing function.
int editorKey(int key, bool ctrl) {
    switch (key) {
        case Keys::KEY_LEFT:
            return STB_TEXTEDIT_K_LEFT;
        case Keys::KEY_RIGHT:
            return STB_TEXTEDIT_K_RIGHT;
        case Keys::KEY_HOME:
            return STB_TEXTEDIT_K_LINESTART;
        case Keys::KEY_END:
            return STB_TEXTEDIT_K_LINEEND;
        case Keys::KEY_DELETE:
            return STB_TEXTEDIT_K_DELETE;
        case Keys::KEY_BACKSPACE:
            return STB_TEXTEDIT_K_BACKSPACE;
        case 'z':
            return ctrl ? STB_TEXTEDIT_K_UNDO : 0;
        case 'y':
            return ctrl ? STB_TEXTEDIT_K_REDO : 0;
        default:
            return 0;
    }
}

}  // namespace

struct TextEdit::State {
    FontSet& fonts;
    int font_size;
    jString first;
    jString text;
    TextLine line;
    STB_TexteditState editor;

    void selectAll() {
        editor.select_start = 0;
        editor.select_end = editor.cursor = STB_TEXTEDIT_STRINGLEN(&line);
    }
    /// The atlas may have been rebuilt since the last event.
    TextLine* prepare() {
        fonts.note(text.c_str(), font_size);
        fonts.build();
        line.font = fonts.getFont(font_size);
        line.font_size = static_cast<float>(font_size);
        return &line;
    }
};

TextEdit::TextEdit(FontSet& fonts, int font_size, const jString& text)
    : m_state(new State{fonts, font_size, text, text, {}, {}}) {
    m_state->line.characters = fromUtf8(text);
    if (m_state->line.characters.size() > MAX_LENGTH) m_state->line.characters.resize(MAX_LENGTH);
    stb_textedit_initialize_state(&m_state->editor, 1);
    m_state->selectAll();
    m_state->prepare();
}

TextEdit::~TextEdit() = default;

void TextEdit::textChanged() {
    m_state->text = toUtf8(m_state->line.characters);
    m_state->fonts.note(m_state->text.c_str(), m_state->font_size);
}

void TextEdit::key(int key, int modifiers) {
    const bool ctrl = (modifiers & Keys::MOD_CTRL) != 0;
    if (key == 'a' && ctrl) m_state->selectAll();
    int code = editorKey(key, ctrl);
    if (code == 0) return;
    if (modifiers & Keys::MOD_SHIFT) code |= STB_TEXTEDIT_K_SHIFT;
    stb_textedit_key(m_state->prepare(), &m_state->editor, code);
    textChanged();
}

void TextEdit::type(char32_t codepoint) {
    if (codepoint < ' ' || codepoint == 0x7F || codepoint > IM_UNICODE_CODEPOINT_MAX) return;
    stb_textedit_key(m_state->prepare(), &m_state->editor, static_cast<int>(codepoint));
    textChanged();
}

void TextEdit::press(float x) {
    stb_textedit_click(m_state->prepare(), &m_state->editor, x, 0.0f);
}

void TextEdit::drag(float x) {
    stb_textedit_drag(m_state->prepare(), &m_state->editor, x, 0.0f);
}

const jString& TextEdit::getText() const {
    return m_state->text;
}

bool TextEdit::isChanged() const {
    return m_state->text != m_state->first;
}

float TextEdit::getCaret() const {
    return m_state->prepare()->widthTo(m_state->editor.cursor);
}

float TextEdit::getSelectionBegin() const {
    const STB_TexteditState& editor = m_state->editor;
    return m_state->prepare()->widthTo(std::min(editor.select_start, editor.select_end));
}

float TextEdit::getSelectionEnd() const {
    const STB_TexteditState& editor = m_state->editor;
    return m_state->prepare()->widthTo(std::max(editor.select_start, editor.select_end));
}
