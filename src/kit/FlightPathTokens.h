// Tokens of a flight path file.
#pragma once

#include <string_view>

/// A number in the text form of the file.
struct PathToken {
    enum Kind { REAL, INTEGER };

    std::string_view text;  ///< part of the bytes given to the tokenizer
    int line = 0;           ///< line of its first character, from 1
    Kind kind = REAL;
};

/// Splits a file's bytes into numbers; skips white space, `//` and `/* */` comments. A real has a point, an exponent or
/// both ("1.0", ".5", "-1e3"); an integer is decimal or hexadecimal ("5", "-0x1F"). The bytes must outlive it.
class PathTokenizer {
public:
    explicit PathTokenizer(std::string_view bytes) : m_bytes(bytes) {}

    /// Reads the next number. False at the end, and at other text, which is not skipped.
    bool next(PathToken& token);
    bool isEnd() const { return m_at == m_bytes.size(); }
    int getLine() const { return m_line; }                          ///< line of the current position, from 1
    int getOpenCommentLine() const { return m_open_comment_line; }  ///< where an unterminated comment begins; 0: none

private:
    void skipBlanks();
    bool skipTo(std::string_view end, std::size_t from);
    void moveTo(std::size_t at);

    std::string_view m_bytes;
    std::size_t m_at = 0;
    int m_line = 1;
    int m_open_comment_line = 0;
};
