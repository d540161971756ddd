// Keys for the logic's operations that have no button, and what the window says of the modes.
#include "Controls.h"

#include "engine/core/Engine.h"
#include "engine/gui/UIRoot.h"
#include "engine/input/InputRouter.h"
#include "render/Picture.h"
#include "src/logic/Logic_Test_Fly.h"

Controls::Controls(Engine& engine, Logic_Test_Fly* logic, Instructor* instructor, Picture* picture,
                   const std::string& language)
    : m_logic(logic),
      m_instructor(instructor),
      m_picture(picture),
      m_texts(language),
      m_help(*engine.getUIRoot(), m_texts) {
    if (instructor) m_panel.emplace(*engine.getUIRoot(), m_texts, *instructor);
    engine.getInput()->bindKeyPress([this](const GUIEventKey& event) { press(event.key); });
}

void Controls::press(int key) {
    if (key == ControlApp::KEY_F10) m_help.toggle();
    if (!m_instructor) return;
    if (key == ControlApp::KEY_F9) m_panel->toggle();
    if (key == 'm') m_instructor->setPush(!m_instructor->isPushed());
    if (key == 'b') m_instructor->backToStart();
    if (key == 'u') m_instructor->setGear(false);
    if (key == 'j') m_instructor->setGear(true);
    if (key == 'h') m_instructor->levelView();
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
