// Conversions of edited texts. In a separate file, because ImGui's internal header contains a text editor of its own.
#include "gui/Utf8.h"

#include <imgui_internal.h>

std::vector<ImWchar> fromUtf8(const jString& text) {
    std::vector<ImWchar> characters(text.size() + 1);
    const int count = ImTextStrFromUtf8(characters.data(), static_cast<int>(characters.size()), text.data(),
                                        text.data() + text.size());
    characters.resize(static_cast<std::size_t>(count));
    return characters;
}

jString toUtf8(const std::vector<ImWchar>& text) {
    const ImWchar* const begin = text.data();
    const ImWchar* const end = begin + text.size();
    jString bytes(static_cast<std::size_t>(ImTextCountUtf8BytesFromStr(begin, end)) + 1, '\0');
    bytes.resize(static_cast<std::size_t>(ImTextStrToUtf8(bytes.data(), static_cast<int>(bytes.size()), begin, end)));
    return bytes;
}
