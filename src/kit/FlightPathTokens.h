// The words of a flight path file.
#pragma once

#include <string_view>

/// A number as it stands in the file.
struct PathToken {
    enum Kind { REAL, INTEGER };

    std::string_view text;  ///< into the bytes that it was read from
    int line = 0;           ///< that it starts on, from 1
    Kind kind = REAL;
};

/// Cuts a file's bytes into numbers, past white space, `//` and `/* */` comments. A real has a point, an exponent or
/// both ("1.0", ".5", "-1e3"); an integer is decimal or hexadecimal ("5", "-0x1F"). The bytes must outlive it.
class PathTokenizer {
public:
    explicit PathTokenizer(std::string_view bytes) : m_bytes(bytes) {}

    /// Reads the next number; false at the end and at what is none, which it stays at.
    bool next(PathToken& token);
    bool isEnd() const { return m_at == m_bytes.size(); }
    int getLine() const { return m_line; }                          ///< where it has come to, from 1
    int getOpenCommentLine() const { return m_open_comment_line; }  ///< where a comment begins that does not end; or 0

private:
    void skipBlanks();
    bool skipTo(std::string_view end, std::size_t from);
    void moveTo(std::size_t at);

    std::string_view m_bytes;
    std::size_t m_at = 0;
    int m_line = 1;
    int m_open_comment_line = 0;
};
