// Keys for operations of the logic that have no button, and the modes in the window's title.
#include "Controls.h"

#include "app/scene/SceneCommandQueue.h"
#include "app/scene/SceneQuery.h"
#include "engine/core/Engine.h"
#include "engine/gui/UIRoot.h"
#include "engine/input/InputRouter.h"
#include "render/Picture.h"
#include "src/logic/Logic_Test_Fly.h"

Controls::Controls(Engine& engine, SceneCommandQueue& commands, const Logic_Test_Fly* logic, const SceneQuery* query,
                   Picture* picture, const std::string& language)
    : m_commands(commands),
      m_logic(logic),
      m_query(query),
      m_picture(picture),
      m_texts(language),
      m_help(*engine.getUIRoot(), m_texts) {
    if (query) m_panel.emplace(*engine.getUIRoot(), m_texts, commands, *query);
    engine.getInput()->bindKeyPress([this](const GUIEventKey& event) { press(event.key); });
}

void Controls::press(int key) {
    if (key == ControlApp::KEY_F10) m_help.toggle();
    if (!m_query) return;
    const auto give = [this](SceneCommand command) { m_commands.push(std::move(command), {"key"}); };
    if (key == ControlApp::KEY_F9) m_panel->toggle();
    if (key == 'm') give(command::Push{!m_query->isPushed()});
    if (key == 'b') give(command::BackToStart());
    if (key == 'u') give(command::Gear{false});
    if (key == 'j') give(command::Gear{true});
    if (key == 'h') give(command::LevelView());
}

void Controls::update() {
    m_help.update();
    if (m_panel) m_panel->update();
    if (m_logic && m_picture) updateTitle();
}

void Controls::updateTitle() {
    const int fly_mode = m_logic->getFlyMode(), player_mode = m_logic->getPlayerMode();
    if (fly_mode == m_fly_mode && player_mode == m_player_mode) return;
    m_fly_mode = fly_mode;
    m_player_mode = player_mode;
    m_picture->setTitle(m_texts.get("app.title") + " - " + m_texts.get("fly_mode." + std::to_string(fly_mode)) + " - " +
                        m_texts.get("view." + std::to_string(player_mode)));
}
