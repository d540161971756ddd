// Display texts, read once at the start of the program.
#include "Texts.h"

#include <cstdlib>

Texts::Texts(std::string language) : m_language(std::move(language)) {
    mjl::open("config/string.txt", m_package, true);
}

jString Texts::get(const std::string& key) const {
    const std::string full = key + "." + m_language;
    return m_package.has(full.c_str()) ? m_package.getString(full.c_str()) : jString(key);
}

std::string environmentLanguage() {
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const char* const value = std::getenv(name);
        if (value && *value) return std::string(value).rfind("zh", 0) == 0 ? "zh" : "en";
    }
    return "en";
}
