// Builds the instructor's panel once; F9 shows and hides it.
#include "InstructorPanel.h"

#include <algorithm>
#include <cinttypes>
#include <cmath>
#include <cstdio>

#include "TargetTypes.h"
#include "Texts.h"
#include "app/scene/SceneCommandQueue.h"
#include "app/scene/SceneQuery.h"
#include "engine/gui/UIRoot.h"

namespace {

constexpr int REFRESH_FRAMES = 10;

template <class... Values>
std::string format(const char* pattern, Values... values) {
    char text[64];
    std::snprintf(text, sizeof text, pattern, values...);
    return text;
}

std::string showChoice(const std::string& chosen) {
    return chosen.empty() ? "-" : chosen + "  >";
}
std::string showPercent(double value) {
    return format("%.0f %%", value);
}
std::string showMetres(double value) {
    return format("%.0f m", value);
}
std::string showDegrees(double value) {
    return format("%03.0f\u00b0", value);
}
std::string showNumber(double value) {
    return format("%.0f", value);
}
std::string showTime(double hours) {
    const int minutes = static_cast<int>(std::lround(hours * 60.0));
    return format("%02d:%02d", minutes / 60, minutes % 60);
}

}  // namespace

InstructorPanel::InstructorPanel(UIRoot& panels, const Texts& texts, SceneCommandQueue& commands,
                                 const SceneQuery& query)
    : m_panels(panels),
      m_texts(texts),
      m_commands(commands),
      m_query(query),
      m_panel(new UIHLayout),
      m_types(readTargetTypes(texts)) {
    m_panel->setName("instructor");
    m_panel->setSpace(24, 0);
    m_panel->setPadding(12);
    m_panel->setBackgroundColor(parts::PANEL_COLOR);
    constexpr int GROUP_SPACE = 14;
    UIGridLayout* const left = parts::addGrid(*m_panel, 1);
    left->setSpace(0, GROUP_SPACE);
    addWeather(*left);
    addAircraft(*left);
    UIGridLayout* const right = parts::addGrid(*m_panel, 1);
    right->setSpace(0, GROUP_SPACE);
    addTargets(*right);
    addLink(*right);
    panels.addChild(m_panel);
    const int height = std::max(left->getHeight(), right->getHeight());
    left->setHeight(height);  // otherwise the shorter column would be centred vertically
    right->setHeight(height);
    m_panel->setHidden(true);
}

/// The command is applied before the panel's next update, which then shows the result.
void InstructorPanel::give(SceneCommand command) {
    m_commands.push(std::move(command), {"panel"});
    m_frames = 0;
}

/// A column of related rows under a heading.
UILayout& InstructorPanel::addGroup(UILayout& column, const char* key) {
    UIGridLayout& group = *parts::addGrid(column, 1);
    group.addChild(parts::makeLabel(m_texts.get(key), parts::HEADING_COLOR));
    return group;
}

/// `name` is the name of the slider; the key of its text is "panel." and the name.
void InstructorPanel::addRow(UILayout& grid, const char* name, parts::SliderRow::Range range,
                             parts::SliderRow::Read read, parts::SliderRow::Write write, parts::SliderRow::Show show) {
    m_rows.emplace_back(grid, name, m_texts.get(std::string("panel.") + name), range, std::move(read), std::move(write),
                        std::move(show));
}

void InstructorPanel::addWeather(UILayout& column) {
    UIGridLayout& grid = *parts::addGrid(addGroup(column, "panel.weather"), 3);
    const auto add = [&](const char* name, parts::SliderRow::Range range, double SceneWeather::*value,
                         parts::SliderRow::Write write, parts::SliderRow::Show show) {
        addRow(
            grid, name, range, [this, value] { return m_query.getWeather().*value; }, std::move(write),
            std::move(show));
    };
    add(
        "rain", {0, 100}, &SceneWeather::rain, [this](double v) { give(command::Rain{v}); }, showPercent);
    add(
        "snow", {0, 100}, &SceneWeather::snow, [this](double v) { give(command::Snow{v}); }, showPercent);
    add(
        "time", {0, 24}, &SceneWeather::time, [this](double v) { give(command::Time{v}); }, showTime);
    add(
        "visibility", {300, 30000, true}, &SceneWeather::visibility, [this](double v) { give(command::Visibility{v}); },
        [](double v) { return v > 0.0 ? showMetres(v) : std::string("-"); });
    add(
        "sea", {0, 12}, &SceneWeather::sea, [this](double v) { give(command::Sea{v}); }, showNumber);
}

void InstructorPanel::addAircraft(UILayout& column) {
    UILayout& group = addGroup(column, "panel.aircraft");
    UIGridLayout& lights = *parts::addGrid(group, 2);
    m_navigation_lights = new UICheckBox;
    m_navigation_lights->setName("navigation_lights");
    m_navigation_lights->bindChange(
        [this](const GUIEventChange& event, UIElement*) { give(command::NavigationLights{event.value > 0.0}); });
    lights.addChild(m_navigation_lights);
    lights.addChild(parts::makeLabel(m_texts.get("panel.navigation_lights")));

    UIGridLayout& buttons = *parts::addGrid(group, 2);
    const auto add = [&](const char* name, std::function<SceneCommand()> command) {
        parts::addButton(buttons, name, m_texts.get(std::string("panel.") + name),
                         [this, command = std::move(command)] { give(command()); });
    };
    add("fire", [] { return command::Fire(); });
    add("explode", [] { return command::Explode(); });
    add("push", [this] { return command::Push{!m_query.isPushed()}; });
    add("back", [] { return command::BackToStart(); });
    add("gear_up", [] { return command::Gear{false}; });
    add("gear_down", [] { return command::Gear{true}; });
    add("light", [] { return command::ToggleLight(); });
    add("test", [this] { return command::TestPanel{!m_query.isTestPanelShown()}; });
    add("view", [] { return command::NextView(); });
    add("level", [] { return command::LevelView(); });
    add("reset", [] { return command::Reset(); });
}

void InstructorPanel::addPlace(UILayout& group) {
    UIGridLayout& grid = *parts::addGrid(group, 3);
    const auto add = [&](const char* name, double& value, parts::SliderRow::Range range, double step,
                         parts::SliderRow::Show show) {
        addRow(
            grid, name, range, [&value] { return value; },
            [this, &value, step](double v) {
                value = std::round(v / step) * step;
                m_frames = 0;
            },
            std::move(show));
    };
    add("bearing", m_place.bearing, {0, 359}, 1.0, showDegrees);
    add("distance", m_place.distance, {20, 20000, true}, 10.0, showMetres);
    add("height", m_place.height, {0, 3000, true}, 1.0, showMetres);
    add("heading", m_place.heading, {0, 359}, 1.0, showDegrees);
}

void InstructorPanel::addTargets(UILayout& column) {
    UILayout& group = addGroup(column, "panel.targets");
    m_type_button = addChoice(group, "type", [this] { chooseNextType(); });
    addPlace(group);
    m_target_button = addChoice(group, "target", [this] { chooseNextTarget(); });
    UIGridLayout& buttons = *parts::addGrid(group, 3);
    const auto add = [&](const char* name, std::function<void()> act) {
        constexpr int WIDTH = 98;
        parts::addButton(buttons, name, m_texts.get(std::string("panel.") + name), std::move(act))->setWidth(WIDTH);
    };
    add("add", [this] { addTarget(); });
    add("move", [this] {
        if (!m_target.empty()) give(command::MoveTarget{m_target, m_place});
    });
    add("remove", [this] { removeTarget(); });
    addLabels(group, {{"panel.nearest", &m_nearest}});
}

/// A name and a button that selects the next choice.
UIButton* InstructorPanel::addChoice(UILayout& group, const char* name, std::function<void()> next) {
    UIGridLayout& grid = *parts::addGrid(group, 2);
    grid.addChild(makeName(std::string("panel.") + name));
    return parts::addButton(grid, name, "", std::move(next));
}

UILabel* InstructorPanel::makeName(const std::string& key) {
    constexpr int WIDTH = 84;
    UILabel* const name = parts::makeLabel(m_texts.get(key));
    name->setWidth(WIDTH);
    return name;
}

void InstructorPanel::addLink(UILayout& column) {
    UILayout& group = addGroup(column, "panel.link");
    addLabels(group, {{"panel.records", &m_records},
                      {"panel.feedback", &m_feedback},
                      {"panel.unsent", &m_unsent},
                      {"panel.refused", &m_refused},
                      {"panel.age", &m_age}});
}

/// Names on the left; `refresh` sets the values on the right.
void InstructorPanel::addLabels(UILayout& group, std::initializer_list<std::pair<const char*, UILabel**>> rows) {
    UIGridLayout& grid = *parts::addGrid(group, 2);
    for (const auto& [key, value] : rows) {
        grid.addChild(makeName(key));
        *value = parts::makeLabel("", parts::KEY_COLOR);
        (*value)->setName(key);
        grid.addChild(*value);
    }
}

void InstructorPanel::toggle() {
    m_panel->setHidden(!m_panel->isHidden());
    m_frames = 0;
}

void InstructorPanel::update() {
    if (m_panel->isHidden()) return;
    m_panel->setPosition(std::max(m_panels.getWidth() - m_panel->getWidth(), 0), 0);
    if (m_frames-- > 0) return;
    m_frames = REFRESH_FRAMES;
    refresh();
}

void InstructorPanel::refresh() {
    for (parts::SliderRow& row : m_rows) row.refresh();
    m_navigation_lights->setChecked(m_query.areNavigationLightsOn());
    m_type_button->setText(showChoice(m_types.empty() ? "" : m_types[m_type].name));
    const std::vector<std::string> targets = m_query.getTargets();
    if (std::find(targets.begin(), targets.end(), m_target) == targets.end()) {
        m_target = targets.empty() ? std::string() : targets.back();
    }
    m_target_button->setText(showChoice(m_target));
    double distance = 0.0;
    const std::string nearest = m_query.getNearest(distance);
    m_nearest->setText(nearest.empty() ? std::string("-") : nearest + ", " + showMetres(distance));
    refreshLink();
}

void InstructorPanel::refreshLink() {
    const LinkHealth link = m_query.getLink();
    m_records->setText(format("%" PRIu64, link.records));
    m_feedback->setText(format("%" PRIu64, link.feedback));
    m_unsent->setText(format("%" PRIu64, link.unsent));
    m_refused->setText(format("%" PRIu64, link.refused));
    m_age->setText(link.age < 0.0 ? std::string("-") : format("%.1f s", link.age));
}

void InstructorPanel::addTarget() {
    if (m_types.empty()) return;
    std::string name;
    do {
        name = "T" + std::to_string(++m_last_number);
    } while (m_query.hasTarget(name));
    give(command::AddTarget{name, m_types[m_type].code, m_place});
    m_target = name;
}

void InstructorPanel::chooseNextType() {
    if (!m_types.empty()) m_type = (m_type + 1) % m_types.size();
    refresh();
}

void InstructorPanel::chooseNextTarget() {
    const std::vector<std::string> targets = m_query.getTargets();
    const auto chosen = std::find(targets.begin(), targets.end(), m_target);
    if (chosen != targets.end()) m_target = chosen + 1 == targets.end() ? targets.front() : *(chosen + 1);
    refresh();
}

void InstructorPanel::removeTarget() {
    if (!m_target.empty()) give(command::RemoveTarget{m_target});
}
