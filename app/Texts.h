// The application's display texts.
#pragma once

#include <string>

#include "engine/text/Package.h"

/// Texts of "config/string.txt" in one language, "zh" or "en".
class Texts {
public:
    /// Reads the file; without it every key stands for itself, with one log line.
    explicit Texts(std::string language);
    /// The text of a key without its language's ending; the key itself when the file has none.
    jString get(const std::string& key) const;

private:
    std::string m_language;
    Package m_package;
};

/// "zh" where the environment's language is Chinese, else "en".
std::string environmentLanguage();
