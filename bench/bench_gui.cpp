// The panels of a scene with the test panel of 35 rows open: cost per frame with and without a picture, compared with
// the same number of plain ImGui widgets.
#include <imgui.h>

#include "Bench.h"
#include "CountAllocations.h"
#include "engine/core/Engine.h"
#include "engine/gui/UIEditLine.h"
#include "engine/gui/UIRoot.h"
#include "engine/gui/UIWidgets.h"
#include "engine/input/InputRouter.h"

namespace {

constexpr int ROWS = 35;
constexpr int FRAMES = 200;
constexpr double LIMIT = 0.3e-3;  // seconds per frame

/// Camera bar, four buttons and the test panel, as in a scene.
class Panels {
public:
    Panels() {
        m_root.addChild(&m_bar);
        auto* const place = new UIDVec3(
            2, [] { return dvec3(112.35, 16.84, 200.0); }, [](const dvec3&) { return true; });
        place->setSize(156, 16);
        m_bar.addChild(place);
        m_root.addChild(&m_column);
        for (const char* text : {"第三视角", "手动飞行", "世界渲染", "场景重置"}) m_column.addChild(new UIButton(text));
        m_grid.setNumColumns(3);
        m_grid.setColumnRatio(1, 1.0f);
        m_grid.setColumnRatio(2, 1.0f);
        for (int i = 0; i < ROWS; ++i) addRow();
        m_root.addChild(&m_grid);
    }

    /// The calls of a logic in one frame; every value differs from that of the frame before.
    void update() {
        ++m_frame;
        for (int i = 0; i < m_sliders.size(); ++i) {
            const int value = (m_frame + 7 * i) % 360 - 180;
            m_sliders[i]->setValue(static_cast<float>(value));
            m_labels[i]->setText(ToString(value));
        }
        m_column.setPosition(m_root.getWidth() - m_column.getWidth(), m_root.getHeight() - m_column.getHeight());
        m_bar.setPosition(0, m_root.getHeight() - m_bar.getHeight());
        m_grid.setPosition(0, m_root.getHeight() * 3 / 10);
    }
    void draw() { m_engine.updateGui(); }
    void show(bool test_panel) { m_grid.setHidden(!test_panel); }
    void newGlyph(const char* text) { m_labels[0]->setText(text); }
    void takeEvents(int count) {
        for (int i = 0; i < count; ++i) m_engine.getInput()->mouseMove(i % 1280, i % 720);
        m_engine.beginFrame(0.016);
        m_engine.endFrame();
    }

private:
    void addRow() {
        auto* const name = new UILabel("right_wing_flap");
        name->setWidth(120);
        auto* const slider = new UISlider;
        slider->setMinValue(-180.0f);
        slider->setMaxValue(180.0f);
        slider->setWidth(150);
        auto* const value = new UILabel("0");
        value->setWidth(100);
        for (UIElement* const element :
             {static_cast<UIElement*>(name), static_cast<UIElement*>(slider), static_cast<UIElement*>(value)}) {
            m_grid.addChild(element);
        }
        m_sliders.append(slider);
        m_labels.append(value);
    }

    Engine m_engine;
    UIRoot& m_root = *m_engine.getUIRoot();
    UIHLayout& m_bar = *new UIHLayout;
    UIVLayout& m_column = *new UIVLayout;
    UIGridLayout& m_grid = *new UIGridLayout;
    jVector<UISlider*> m_sliders;
    jVector<UILabel*> m_labels;
    int m_frame = 0;
};

/// The same rows and buttons as plain ImGui widgets.
class BareImGui {
public:
    BareImGui() : m_context(ImGui::CreateContext(&m_atlas)) {
        ImGui::SetCurrentContext(m_context);
        ImGui::GetIO().IniFilename = nullptr;
        ImGui::GetIO().DisplaySize = {1280.0f, 720.0f};
        ImGui::GetIO().DeltaTime = 0.016f;
        m_atlas.Build();
    }
    ~BareImGui() { ImGui::DestroyContext(m_context); }
    BareImGui(const BareImGui&) = delete;
    BareImGui& operator=(const BareImGui&) = delete;

    void frame() {
        ImGui::SetCurrentContext(m_context);
        ImGui::NewFrame();
        ImGui::SetNextWindowSize({400.0f, 2000.0f});
        ImGui::Begin("panel");
        for (const char* text : {"third view", "manual", "world", "reset"}) ImGui::Button(text);
        ++m_value;
        for (int i = 0; i < ROWS; ++i) {
            ImGui::PushID(i);
            ImGui::TextUnformatted("right_wing_flap");
            ImGui::SameLine(120.0f);
            ImGui::SetNextItemWidth(150.0f);
            float value = static_cast<float>((m_value + 7 * i) % 360 - 180);
            ImGui::SliderFloat("##value", &value, -180.0f, 180.0f, "");
            ImGui::SameLine();
            ImGui::Text("%d", static_cast<int>(value));
            ImGui::PopID();
        }
        ImGui::End();
        ImGui::Render();
    }

private:
    ImFontAtlas m_atlas;
    ImGuiContext* m_context;
    int m_value = 0;
};

}  // namespace

int main() {
    Panels panels;
    BareImGui bare;
    const auto bareFrames = [&] {
        for (int i = 0; i < FRAMES; ++i) bare.frame();
    };
    const auto drawnFrames = [&] {
        for (int i = 0; i < FRAMES; ++i) panels.update(), panels.draw();
    };
    const auto undrawnFrames = [&] {
        for (int i = 0; i < FRAMES; ++i) panels.update();
    };
    bench::printHeader();
    const bench::Costs drawn = bench::compare(20, FRAMES, drawnFrames, bareFrames);
    bench::printRow("a frame of the panels, drawn, test panel open", drawn, 2.0);
    const bench::Costs undrawn = bench::compare(20, FRAMES, undrawnFrames, bareFrames);
    bench::printRow("a frame of the panels without a picture", undrawn, bench::NO_LIMIT);
    const long before = g_allocations;
    drawnFrames();
    const double allocations = static_cast<double>(g_allocations - before) / FRAMES;
    panels.show(false);
    bench::printRow("a frame of the panels, drawn, test panel hidden",
                    bench::compare(20, FRAMES, drawnFrames, bareFrames), bench::NO_LIMIT);

    panels.takeEvents(10000);
    const double events = bench::seconds([&] { panels.takeEvents(10000); });
    panels.show(true);
    std::vector<double> glyphs;
    for (const char* text : {"高", "度", "速", "海", "里", "航", "向", "左", "右"}) {
        panels.newGlyph(text);
        glyphs.push_back(bench::seconds([&] { panels.draw(); }));
    }
    const double glyph = bench::median(glyphs);
    std::printf(
        "a frame: %.1f us (below %.0f wanted), %.2f allocations; 10,000 events: %.2f ms; a new glyph: %.2f ms\n",
        drawn.ours * 1e6, LIMIT * 1e6, allocations, events * 1e3, glyph * 1e3);
    return drawn.ours < LIMIT ? 0 : 1;
}
