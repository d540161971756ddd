// The instructor's panel: weather, aircraft, targets and the host link, operated with the mouse.
#pragma once

#include <deque>
#include <string>
#include <utility>
#include <vector>

#include "PanelParts.h"
#include "app/scene/SceneCommand.h"

class SceneCommandQueue;
class SceneQuery;
class Texts;
class UIRoot;

/// At the upper right, hidden at first. Its elements belong to the panels, which must not be used after this object is
/// destroyed.
class InstructorPanel {
public:
    InstructorPanel(UIRoot& panels, const Texts& texts, SceneCommandQueue& commands, const SceneQuery& query);
    InstructorPanel(const InstructorPanel&) = delete;
    InstructorPanel& operator=(const InstructorPanel&) = delete;

    void toggle();
    /// Once a frame, before the panels are drawn: updates the position and, a few times a second, the values.
    void update();

private:
    void addRow(UILayout& grid, const char* name, parts::SliderRow::Range range, parts::SliderRow::Read read,
                parts::SliderRow::Write write, parts::SliderRow::Show show);
    void addWeather(UILayout& column);
    void addAircraft(UILayout& column);
    void addTargets(UILayout& column);
    void addPlace(UILayout& group);
    void addLink(UILayout& column);
    void give(SceneCommand command);
    UILayout& addGroup(UILayout& column, const char* key);
    UIButton* addChoice(UILayout& group, const char* name, std::function<void()> next);
    UILabel* makeName(const std::string& key);
    void addLabels(UILayout& group, std::initializer_list<std::pair<const char*, UILabel**>> rows);
    void refresh();
    void refreshLink();
    void addTarget();
    void chooseNextType();
    void chooseNextTarget();
    void removeTarget();

    UIRoot& m_panels;
    const Texts& m_texts;
    SceneCommandQueue& m_commands;
    const SceneQuery& m_query;
    UILayout* m_panel;
    std::deque<parts::SliderRow> m_rows;  ///< the sliders hold references to them
    int m_frames = 0;                     ///< frames until the values are refreshed

    UICheckBox* m_navigation_lights = nullptr;
    UIButton* m_type_button = nullptr;
    UIButton* m_target_button = nullptr;
    UILabel *m_nearest = nullptr, *m_records = nullptr, *m_feedback = nullptr, *m_unsent = nullptr,
            *m_refused = nullptr, *m_age = nullptr;

    std::vector<TargetType> m_types;
    std::size_t m_type = 0;
    RelativePlace m_place{0.0, 1000.0, 0.0, 0.0};
    std::string m_target;   ///< name of the selected target, for move and remove; empty for none
    int m_last_number = 0;  ///< counter for the names of targets added here
};
