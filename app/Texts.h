// The application's display texts.
#pragma once

#include <string>

#include "engine/text/Package.h"

/// Texts of "config/string.txt" in one language, "zh" or "en".
class Texts {
public:
    /// Reads the file. Without it each key is its own text, with one log line.
    explicit Texts(std::string language);
    /// The text of a key, given without the suffix of the language. The key itself when the file has no text.
    jString get(const std::string& key) const;

private:
    std::string m_language;
    Package m_package;
};

/// "zh" when the environment's language is Chinese, otherwise "en".
std::string environmentLanguage();
