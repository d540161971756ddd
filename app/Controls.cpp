// Keys for the logic's operations that have no button, and what the window says of the modes.
#include "Controls.h"

#include "engine/core/Engine.h"
#include "engine/core/Message.h"
#include "engine/gui/UIRoot.h"
#include "engine/input/InputRouter.h"
#include "render/Picture.h"
#include "src/logic/Logic_Test_Fly.h"

namespace {

constexpr int LEVEL_CAMERA = 654321;  // message that the logic answers by levelling its camera

}  // namespace

Controls::Controls(Engine& engine, Logic_Test_Fly* logic, Picture* picture, const std::string& language)
    : m_logic(logic), m_picture(picture), m_texts(language), m_help(*engine.getUIRoot(), m_texts) {
    engine.getInput()->bindKeyPress([this](const GUIEventKey& event) { press(event.key); });
}

void Controls::press(int key) {
    if (key == ControlApp::KEY_F10) m_help.toggle();
    if (!m_logic) return;
    const GUIEventMouse event;
    if (key == 'm') m_logic->on_move_foward(event, nullptr);
    if (key == 'b') m_logic->on_reset_postion(event, nullptr);
    if (key == 'u') m_logic->on_close_undercarriage(event, nullptr);
    if (key == 'j') m_logic->on_open_undercarriage(event, nullptr);
    if (key == 'h') {
        UiMsg message{LEVEL_CAMERA};
        MsgNode::send(&message);
    }
}

void Controls::update() {
    m_help.update();
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
