// Builds the list of keys once; F10 shows and hides it.
#include "HelpPanel.h"

#include <algorithm>

#include "PanelParts.h"
#include "Texts.h"
#include "engine/gui/UIRoot.h"

namespace {

constexpr HelpRow VIEW_ROWS[] = {{"", "help.view"},
                                 {"F1", "help.f1"},
                                 {"F9", "help.f9"},
                                 {"F10", "help.f10"},
                                 {"F11", "help.f11"},
                                 {"", "help.orbit"},
                                 {"Left+drag", "help.turn"},
                                 {"Wheel", "help.wheel"},
                                 {"", "help.free"},
                                 {"Left/right+drag", "help.look"},
                                 {"Left+W A S D", "help.move"},
                                 {"Shift", "help.shift"},
                                 {"Ctrl", "help.ctrl"},
                                 {"1 2 3 4", "help.speed"},
                                 {"Enter H", "help.level"}};

constexpr HelpRow SCENE_ROWS[] = {{"", "help.aircraft"},   {"M", "help.push"},     {"B", "help.back"},
                                  {"U J", "help.gear"},    {"G", "help.light"},    {"Ctrl+T", "help.test"},
                                  {"", "help.helicopter"}, {"R F", "help.rotor"},  {"W A S D", "help.stick"},
                                  {"Q E", "help.pedals"},  {"", "help.other"},     {"P O", "help.records"},
                                  {"K L", "help.offset"},  {"Alt+F4", "help.quit"}};

template <std::size_t N>
UILayout* makeColumn(const HelpRow (&rows)[N], const Texts& texts) {
    auto* const grid = new UIGridLayout;
    grid->setNumColumns(2);
    grid->setSpace(16, 3);
    for (const HelpRow& row : rows) {
        const bool is_heading = *row.key == '\0';
        grid->addChild(parts::makeLabel(is_heading ? texts.get(row.text) : jString(row.key),
                                        is_heading ? parts::HEADING_COLOR : parts::KEY_COLOR));
        grid->addChild(parts::makeLabel(is_heading ? jString() : texts.get(row.text)));
    }
    return grid;
}

}  // namespace

HelpPanel::HelpPanel(UIRoot& panels, const Texts& texts) : m_panels(panels) {
    auto* const columns = new UIHLayout;
    columns->setSpace(36, 0);
    columns->setPadding(18);
    columns->setBackgroundColor(parts::PANEL_COLOR);
    columns->addChild(makeColumn(VIEW_ROWS, texts));
    columns->addChild(makeColumn(SCENE_ROWS, texts));
    columns->setName("help");
    columns->setHidden(true);
    panels.addChild(columns);
    m_panel = columns;
}

void HelpPanel::toggle() {
    m_panel->setHidden(!m_panel->isHidden());
}

void HelpPanel::update() {
    if (m_panel->isHidden()) return;
    m_panel->setPosition(std::max((m_panels.getWidth() - m_panel->getWidth()) / 2, 0),
                         std::max((m_panels.getHeight() - m_panel->getHeight()) / 2, 0));
}
