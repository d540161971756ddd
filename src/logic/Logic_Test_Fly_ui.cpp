// The panels: the camera bar, the buttons, the labels and the test panel, which has a control for each control node of
// the aircraft. Created once in `init`. Each frame first updates the controls' values and later places the panels in
// their corners. The UI root owns them.
#include <engine/core/Engine.h>
#include <engine/gui/UIEditLine.h>
#include <engine/gui/UIRoot.h>
#include <engine/gui/UIWidgets.h>
#include <engine/memory/Allocator.h>
#include <engine/scene/World.h>

#include <algorithm>
#include <cmath>

#include "src/aircraft/PlaneBase.h"
#include "src/logic/Logic_Test_Fly.h"

namespace {

constexpr vec4 GREY{0.5f, 0.5f, 0.5f, 0.5f}, RED{1.0f, 0.0f, 0.0f, 1.0f}, GREEN{0.0f, 1.0f, 0.0f, 1.0f};
constexpr int BAR_PADDING = 5, TEST_PADDING = 33;  ///< pixels
constexpr int LABEL_FONT = 20;
constexpr int SPEED_ID = 123456, PLACE_ID = 654321;
constexpr int MAX_SPEED = 1000000;                                ///< m/s, limit of typed values
constexpr double MIN_HEIGHT = -12000.0, MAX_HEIGHT = 10000000.0;  ///< metres, limits of typed values
constexpr double LABEL_LEFT = 0.02, WARNING_TOP = 0.9, VISIBILITY_TOP = 0.86, TEST_TOP = 0.3;  ///< shares of the window

UIRoot& uiRoot() {
    return *Engine::get()->getUIRoot();
}

template <class T, class... Args>
T* makeElement(const char* function, Args&&... args) {
    return jNew<T>({"src\\logic\\Logic_Test_Fly", function}, std::forward<Args>(args)...);
}

int share(int size, double part) {
    return static_cast<int>(size * part);
}

void placeLabel(UIElement& label, double top) {
    label.setPosition(share(uiRoot().getWidth(), LABEL_LEFT), share(uiRoot().getHeight(), top));
}

UILabel* makeGreenLabel(const jString& text, int width) {
    auto* const label = makeElement<UILabel>("Logic_Test_Fly::init_ui_test_btns", text);
    label->setFontColor(GREEN);
    label->setWidth(width);
    return label;
}

UISprite* makeIcon(const char* image) {
    auto* const icon = makeElement<UISprite>("Logic_Test_Fly::init_ui_cam", image);
    icon->setSize(16, 16);
    return icon;
}

bool isPlace(const dvec3& geo) {
    return std::abs(geo.x) <= 180.0 && std::abs(geo.y) <= 90.0 && geo.z >= MIN_HEIGHT && geo.z <= MAX_HEIGHT;
}

template <class Element>
const jString& textOf(const Element* element) {
    static const jString NONE;
    return element ? element->getText() : NONE;
}

}  // namespace

void Logic_Test_Fly::init_ui() {
    init_ui_cam();
    init_ui_btns();
    init_ui_test_btns();
}

void Logic_Test_Fly::init_ui_cam() {
    m_camera_bar = makeElement<UIHLayout>("Logic_Test_Fly::init_ui_cam");
    m_camera_bar->setSpace(1, 0);
    m_camera_bar->setBackgroundColor(GREY);
    m_camera_bar->setPadding(BAR_PADDING);
    uiRoot().addChild(m_camera_bar, UIRoot::EXPAND_NONE, -1);

    auto* const speed = makeElement<UIInt>(
        "Logic_Test_Fly::init_ui_cam", SPEED_ID, [this] { return getCamSpeed(); },
        [this](int typed) {
            const bool is_speed = typed >= 0 && typed <= MAX_SPEED;
            if (is_speed) setCamSpeed(typed);
            return is_speed;
        });
    speed->setSize(64, 16);
    auto* const place = makeElement<UIDVec3>(
        "Logic_Test_Fly::init_ui_cam", PLACE_ID, [this] { return get_cam_pos_geo(); },
        [this](const dvec3& typed) {
            if (isPlace(typed)) set_cam_pos_geo(typed);
            return isPlace(typed);
        });
    place->setSize(156, 16);
    for (UIElement* field : {static_cast<UIElement*>(speed), static_cast<UIElement*>(place)}) {
        field->setBackgroundColor(GREY);
    }
    m_camera_bar->addChild(makeIcon("data/core/editor/gui/run.dds"));
    m_camera_bar->addChild(speed);
    m_camera_bar->addChild(makeIcon("data/core/editor/gui/position.dds"));
    m_camera_bar->addChild(place);
    m_camera_bar->addChild(makeIcon("data/core/editor/gui/thr.png"));
    m_warning_label = add_scene_label("数据接收异常\n", RED, WARNING_TOP);
    m_visibility_label = add_scene_label("", GREEN, VISIBILITY_TOP);
}

UILabel* Logic_Test_Fly::add_scene_label(const jString& text, const vec4& color, double top) {
    auto* const label = makeElement<UILabel>("Logic_Test_Fly::init_ui_cam", text);
    label->setFontSize(LABEL_FONT);
    label->setFontColor(color);
    placeLabel(*label, top);
    label->setHidden(true);
    uiRoot().addChild(label, UIRoot::EXPAND_NONE, -1);
    return label;
}

void Logic_Test_Fly::init_ui_btns() {
    m_button_column = makeElement<UIVLayout>("Logic_Test_Fly::init_ui_btns");
    m_button_column->setSpace(1, 0);
    m_button_column->setBackgroundColor(GREY);
    m_button_column->setPadding(BAR_PADDING);
    uiRoot().addChild(m_button_column, UIRoot::EXPAND_NONE, -1);
    m_view_button = add_button("第三视角", &Logic_Test_Fly::on_click_change_view);
    m_fly_mode_button = add_button("手动飞行", &Logic_Test_Fly::on_click_change_flymode);
    add_button("世界渲染", &Logic_Test_Fly::on_world_enable);
    add_button("场景重置", &Logic_Test_Fly::on_click_reset);
}

UIButton* Logic_Test_Fly::add_button(const char* text, ClickHandler handler) {
    auto* const button = makeElement<UIButton>("Logic_Test_Fly::init_ui_btns", text);
    button->bindClick(
        [this, handler](const GUIEventMouse& event, UIElement* element) { (this->*handler)(event, element); });
    m_button_column->addChild(button);
    return button;
}

void Logic_Test_Fly::init_ui_test_btns() {
    m_test_panel = makeElement<UIGridLayout>("Logic_Test_Fly::init_ui_test_btns");
    m_test_panel->setNumColumns(3);
    m_test_panel->setColumnRatio(0, 0.0f);
    m_test_panel->setColumnRatio(1, 1.0f);
    m_test_panel->setColumnRatio(2, 1.0f);
    m_test_panel->setSpace(8, 2);  // 35 rows fit into a window of 1080 lines
    m_test_panel->setPadding(TEST_PADDING);
    if (m_aircraft) {
        for (const AirCraftPartInfo& part : m_aircraft->getAircraftInfo().parts) add_test_row(part);
    }
    m_test_panel->setPosition(0, share(uiRoot().getHeight(), TEST_TOP));
    m_test_panel->setHidden(true);
    uiRoot().addChild(m_test_panel, UIRoot::EXPAND_NONE, -1);
}

/// A part without a control keeps its row: the rows below keep their position and their columns.
void Logic_Test_Fly::add_test_row(const AirCraftPartInfo& part) {
    const int position = m_control_values.size();
    m_control_values.append(0.0f);
    m_test_panel->addChild(makeGreenLabel(part.show_name.empty() ? part.node_name : part.show_name, 120));
    switch (part.type) {
        case PART_ROTATION:
            return add_test_slider(position, -180.0f, 180.0f, &Logic_Test_Fly::set_node_deflection);
        case PART_OFFSET:
            return add_test_slider(position, -100.0f, 100.0f, &Logic_Test_Fly::set_node_offset);
        case PART_UV_OFFSET:
            return add_test_slider(position, -100.0f, 100.0f, &Logic_Test_Fly::set_node_uv_offset);
        case PART_DIGIT:
            return add_test_slider(position, 0.0f, 100.0f, &Logic_Test_Fly::set_node_digit);
        case PART_ONOFF:
            add_test_box(position);
            break;
        default:
            m_test_panel->addChild(makeGreenLabel("", 0));
    }
    m_test_panel->addChild(makeGreenLabel("", 0));
}

void Logic_Test_Fly::add_test_slider(int position, float low, float high, ChangeHandler handler) {
    auto* const slider = makeElement<UISlider>("Logic_Test_Fly::init_ui_test_btns");
    slider->setWidth(150);
    slider->setMinValue(low);
    slider->setMaxValue(high);
    bind_control(*slider, position, handler);
    m_sliders.append(slider);
    m_slider_labels.append(makeGreenLabel("0", 100));
    m_test_panel->addChild(slider);
    m_test_panel->addChild(m_slider_labels.last());
}

void Logic_Test_Fly::add_test_box(int position) {
    auto* const box = makeElement<UICheckBox>("Logic_Test_Fly::init_ui_test_btns");
    box->setChecked(true);
    bind_control(*box, position, &Logic_Test_Fly::set_node_onoff);
    m_test_panel->addChild(box);
}

void Logic_Test_Fly::bind_control(UIElement& control, int position, ChangeHandler handler) {
    control.setId(position);
    control.setTag(position);
    control.bindChange(
        [this, handler](const GUIEventChange& event, UIElement* element) { (this->*handler)(event, element); });
}

void Logic_Test_Fly::update_sliders() {
    for (int i = 0; i < m_sliders.size(); ++i) {
        const int value = static_cast<int>(m_control_values[m_sliders[i]->getTag()]);
        m_sliders[i]->setValue(static_cast<float>(value));
        m_slider_labels[i]->setText(ToString(value));
    }
}

bool Logic_Test_Fly::is_slider_held() const {
    return std::any_of(m_sliders.begin(), m_sliders.end(), [](const UISlider* slider) { return slider->isFocused(); });
}

void Logic_Test_Fly::update_ui_pos() {
    const int width = uiRoot().getWidth(), height = uiRoot().getHeight();
    m_button_column->setPosition(width - m_button_column->getWidth(), height - m_button_column->getHeight());
    m_camera_bar->setPosition(0, height - m_camera_bar->getHeight());
    placeLabel(*m_warning_label, WARNING_TOP);
    placeLabel(*m_visibility_label, VISIBILITY_TOP);
    m_test_panel->setHidden(!m_test_mode);
}

const jString& Logic_Test_Fly::getViewText() const {
    return textOf(m_view_button);
}

const jString& Logic_Test_Fly::getFlyModeText() const {
    return textOf(m_fly_mode_button);
}

const jString& Logic_Test_Fly::getVisibilityText() const {
    return textOf(m_visibility_label);
}

void Logic_Test_Fly::set_view_text(const char* text) {
    if (m_view_button) m_view_button->setText(text);
}

void Logic_Test_Fly::set_fly_mode_text(const char* text) {
    if (m_fly_mode_button) m_fly_mode_button->setText(text);
}

void Logic_Test_Fly::show_warning(bool shown) {
    if (m_warning_label) m_warning_label->setHidden(!shown);
}

void Logic_Test_Fly::show_visibility(const jString& text) {
    if (!m_visibility_label) return;
    m_visibility_label->setText(text);
    m_visibility_label->setHidden(false);
}

void Logic_Test_Fly::on_click_change_view(const GUIEventMouse&, UIElement*) {
    change_view();
}

void Logic_Test_Fly::on_click_change_flymode(const GUIEventMouse&, UIElement*) {
    change_flymode();
}

void Logic_Test_Fly::on_world_enable(const GUIEventMouse&, UIElement*) {
    m_world_enabled = !m_world_enabled;
    if (m_world) m_world->setEnabled(m_world_enabled);
}

void Logic_Test_Fly::on_click_reset(const GUIEventMouse&, UIElement*) {
    reset();
}
