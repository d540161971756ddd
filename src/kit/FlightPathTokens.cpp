// Splits a flight path file's bytes into tokens; used while a path is loaded.
#include "src/kit/FlightPathTokens.h"

#include <algorithm>

namespace {

// ASCII only, independent of the locale.
bool isBlank(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}
bool isDigit(char c) {
    return c >= '0' && c <= '9';
}
bool isHexDigit(char c) {
    return isDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

/// Number of consecutive characters from `at` on that pass the test.
template <class Test>
std::size_t runLength(std::string_view text, std::size_t at, Test test) {
    std::size_t end = at;
    while (end < text.size() && test(text[end])) ++end;
    return end - at;
}

/// Length of the exponent at `at`; 0 when there is none.
std::size_t exponentLength(std::string_view text, std::size_t at) {
    if (at >= text.size() || (text[at] != 'e' && text[at] != 'E')) return 0;
    std::size_t digits = at + 1;
    if (digits < text.size() && (text[digits] == '+' || text[digits] == '-')) ++digits;
    const std::size_t count = runLength(text, digits, isDigit);
    return count > 0 ? digits + count - at : 0;
}

/// Length of the real number at the start of the text; 0 when there is none.
std::size_t realLength(std::string_view text) {
    std::size_t at = text.starts_with('-') ? 1 : 0;
    std::size_t digits = runLength(text, at, isDigit);
    at += digits;
    const bool point = at < text.size() && text[at] == '.';
    if (point) {
        const std::size_t fraction = runLength(text, at + 1, isDigit);
        digits += fraction;
        at += 1 + fraction;
    }
    const std::size_t exponent = digits > 0 ? exponentLength(text, at) : 0;
    return digits > 0 && (point || exponent > 0) ? at + exponent : 0;
}

std::size_t integerLength(std::string_view text) {
    const std::size_t sign = text.starts_with('-') ? 1 : 0;
    const std::string_view digits = text.substr(sign);
    if (digits.starts_with("0x") || digits.starts_with("0X")) {
        const std::size_t count = runLength(digits, 2, isHexDigit);
        if (count > 0) return sign + 2 + count;
    }
    const std::size_t count = runLength(digits, 0, isDigit);
    return count > 0 ? sign + count : 0;
}

}  // namespace

bool PathTokenizer::next(PathToken& token) {
    skipBlanks();
    const std::string_view rest = m_bytes.substr(m_at);
    std::size_t length = realLength(rest);
    token.kind = length > 0 ? PathToken::REAL : PathToken::INTEGER;
    if (length == 0) length = integerLength(rest);
    token.text = rest.substr(0, length);
    token.line = m_line;
    m_at += length;
    return length > 0;
}

void PathTokenizer::skipBlanks() {
    for (;;) {
        moveTo(m_at + runLength(m_bytes, m_at, isBlank));
        const std::string_view rest = m_bytes.substr(m_at, 2);
        if (rest == "//") {
            skipTo("\n", m_at + 2);
        } else if (rest == "/*") {
            const int line = m_line;
            if (!skipTo("*/", m_at + 2)) m_open_comment_line = line;
        } else {
            return;
        }
    }
}

/// Moves past the next occurrence of `end`; moves to the end of the bytes and returns false when there is none.
bool PathTokenizer::skipTo(std::string_view end, std::size_t from) {
    const std::size_t found = m_bytes.find(end, from);
    moveTo(found == std::string_view::npos ? m_bytes.size() : found + end.size());
    return found != std::string_view::npos;
}

void PathTokenizer::moveTo(std::size_t at) {
    m_line += static_cast<int>(std::count(m_bytes.begin() + static_cast<std::ptrdiff_t>(m_at),
                                          m_bytes.begin() + static_cast<std::ptrdiff_t>(at), '\n'));
    m_at = at;
}
