// Changes of the input state within a frame.
#include "engine/input/ControlApp.h"

void ControlApp::setKey(int key, bool down) {
    if (!valid(key)) return;
    const auto i = static_cast<std::size_t>(key);
    // Key repeats are not clicks.
    if (down && !m_held[i]) m_clicked[i] = true;
    m_held[i] = down;
}

void ControlApp::endFrame() {
    m_clicked.fill(false);
    m_dx = m_dy = 0.0;
    m_wheel = 0;
}
