// Reads the font, records the glyphs in use and builds their atlas; the panels' layout uses it to measure texts.
#include "gui/FontSet.h"

#include <imgui_freetype.h>
#include <imgui_internal.h>

#include <cfloat>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "engine/text/Log.h"
#include "gui/FontFile.h"

namespace {

constexpr std::uintmax_t MAX_FILE_SIZE = std::uintmax_t{256} << 20;

}  // namespace

void FontSet::note(const char* text, int size) {
    ImFontGlyphRangesBuilder& glyphs = getSize(size).glyphs;
    const char* const end = text + std::strlen(text);
    while (text < end) {
        unsigned int codepoint = 0;
        text += ImTextCharFromUtf8(&codepoint, text, end);
        if (codepoint == 0 || codepoint > IM_UNICODE_CODEPOINT_MAX || glyphs.GetBit(codepoint)) continue;
        glyphs.SetBit(codepoint);
        m_changed = true;
    }
}

FontSet::Size& FontSet::getSize(int size) {
    const auto found = m_sizes.find(size);
    if (found != m_sizes.end()) return found->second;
    m_changed = true;
    Size& made = m_sizes[size];
    for (ImWchar c = ' '; c <= '~'; ++c) made.glyphs.SetBit(c);
    return made;
}

void FontSet::readFile() {
    if (m_file.empty()) {
        const FontFile found = findFont();
        m_file = found.path;
        m_index = found.index;
    }
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(std::filesystem::path(std::string(m_file)), error);
    if (!error && size < MAX_FILE_SIZE) m_bytes.resize(static_cast<std::size_t>(size));
    std::ifstream in(m_file, std::ios::binary);
    if (!in.read(m_bytes.data(), static_cast<std::streamsize>(m_bytes.size()))) m_bytes.clear();
    if (m_bytes.empty()) {
        jLog::warning("font \"%s\": cannot be read; the panels lack Chinese characters", m_file.c_str());
    }
}

bool FontSet::addFonts() {
    m_atlas.Clear();
    m_atlas.FontBuilderIO = ImGuiFreeType::GetBuilderForFreeType();
    for (auto& [size, entry] : m_sizes) {
        ImFontConfig config;
        config.SizePixels = static_cast<float>(size);
        if (m_bytes.empty()) {
            entry.font = m_atlas.AddFontDefault(&config);
            continue;
        }
        entry.ranges.clear();
        entry.glyphs.BuildRanges(&entry.ranges);
        config.FontDataOwnedByAtlas = false;
        config.FontNo = m_index;
        entry.font = m_atlas.AddFontFromMemoryTTF(m_bytes.data(), static_cast<int>(m_bytes.size()), config.SizePixels,
                                                  &config, entry.ranges.Data);
    }
    const bool is_built = m_atlas.Build();
    m_atlas.ClearInputData();  // a copy of the file per size
    return is_built;
}

void FontSet::build() {
    if (!m_changed) return;
    m_changed = false;
    if (!m_failed) readFile();
    if (!addFonts()) {
        jLog::warning("font \"%s\": is no font; the panels lack Chinese characters", m_file.c_str());
        m_bytes.clear();
        addFonts();
    }
    m_failed = m_bytes.empty();
    // Several megabytes, needed again only for new glyphs.
    m_bytes = std::vector<char>();
    m_published = false;
}

UISize FontSet::measure(const jString& text, int size) {
    note(text.c_str(), size);
    build();
    const auto height = static_cast<float>(size);
    const ImVec2 extent = getFont(size)->CalcTextSizeA(height, FLT_MAX, 0.0f, text.data(), text.data() + text.size());
    return {static_cast<int>(std::ceil(extent.x)), static_cast<int>(std::ceil(extent.y))};
}

ImFont* FontSet::getFont(int size) const {
    const auto found = m_sizes.find(size);
    if (found != m_sizes.end() && found->second.font) return found->second.font;
    return m_atlas.Fonts.empty() ? nullptr : m_atlas.Fonts[0];
}

const UIFontAtlas& FontSet::publish() {
    if (m_published) return m_picture;
    unsigned char* pixels = nullptr;
    m_atlas.GetTexDataAsAlpha8(&pixels, &m_picture.width, &m_picture.height);
    m_picture.pixels.assign(pixels, pixels + m_picture.width * m_picture.height);
    ++m_picture.revision;
    m_published = true;
    return m_picture;
}
