// Draws the panels into one ImGui frame; called for a picture's frame, never in a run without a picture.
#include <algorithm>

#include "engine/text/Log.h"
#include "gui/UIPainter.h"

namespace {

ImU32 toColor(const vec4& color) {
    return ImGui::ColorConvertFloat4ToU32({color.x, color.y, color.z, color.w});
}

ImVec2 corner(int x, int y, UISize size = {}) {
    return {static_cast<float>(x + size.width), static_cast<float>(y + size.height)};
}

}  // namespace

GuiState::~GuiState() {
    s_current = nullptr;
    if (context) ImGui::DestroyContext(context);
}

void GuiState::makeContext() {
    context = ImGui::CreateContext(fonts.getAtlas());
    ImGui::SetCurrentContext(context);
    ImGuiIO& io = ImGui::GetIO();
    io.IniFilename = nullptr;  // ImGui writes no settings file
    io.LogFilename = nullptr;
    io.BackendFlags |= ImGuiBackendFlags_RendererHasVtxOffset;
    io.DeltaTime = 1.0f / 60.0f;  // unused, but ImGui requires a step above 0
}

void GuiState::draw() {
    layout();
    fonts.note("", 16);
    fonts.build();
    fonts.publish();
    if (!context) makeContext();
    ImGui::SetCurrentContext(context);
    ImGui::GetIO().DisplaySize = corner(width, height);
    ImGui::NewFrame();
    UIPainter painter(*this, *ImGui::GetBackgroundDrawList());
    for (Top& top : tops) {
        if (!top.element->isHidden()) drawTop(top, painter);
    }
    ImGui::Render();
    drawn = true;
}

void GuiState::drawTop(Top& top, UIPainter& painter) {
    UIElement& element = *top.element;
    if (top.hidden == 0) {
        element.draw(painter);
        return;
    }
    const int room = element.m_size.height - top.hidden;
    const int y = element.m_set_y;
    painter.clip(element.m_x, y, {element.m_size.width, room});
    element.draw(painter);
    painter.unclip();
    constexpr int BAR = 4;
    const int bar_y = y + room * top.scroll / element.m_size.height;
    const int bar_height = std::max(room * room / element.m_size.height, BAR);
    painter.fill(element.m_x + element.m_size.width - 2 * BAR, bar_y, {BAR, bar_height}, UIPainter::EDGE);
}

const ImDrawData* UIRoot::getDrawData() const {
    if (!m_state->drawn) return nullptr;
    ImGui::SetCurrentContext(m_state->context);
    return ImGui::GetDrawData();
}

void UIPainter::fill(int x, int y, UISize size, const vec4& color, float rounding) {
    m_list.AddRectFilled(corner(x, y), corner(x, y, size), toColor(color), rounding);
}

void UIPainter::frame(int x, int y, UISize size, const vec4& color, float rounding) {
    m_list.AddRect(corner(x, y), corner(x, y, size), toColor(color), rounding);
}

void UIPainter::line(float x1, float y1, float x2, float y2, const vec4& color, float width) {
    m_list.AddLine({x1, y1}, {x2, y2}, toColor(color), width);
}

void UIPainter::image(int texture, int x, int y, UISize size) {
    const auto id = reinterpret_cast<ImTextureID>(static_cast<std::intptr_t>(texture));
    m_list.AddImage(id, corner(x, y), corner(x, y, size));
}

void UIPainter::text(float x, float y, const jString& text, int font_size, const vec4& color) {
    ImFont* const font = m_state.fonts.getFont(font_size);
    m_list.AddText(font, static_cast<float>(font_size), {x, y}, toColor(color), text.data(), text.data() + text.size());
}

void UIPainter::clip(int x, int y, UISize size) {
    m_list.PushClipRect(corner(x, y), corner(x, y, size), true);
}

bool UIPainter::shows(int y, int height) const {
    const ImVec2 low = m_list.GetClipRectMin(), high = m_list.GetClipRectMax();
    return static_cast<float>(y + height) > low.y && static_cast<float>(y) < high.y;
}
