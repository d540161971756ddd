// Keys, mouse and wheel of the window.
#pragma once

#include <osgGA/GUIEventHandler>

class InputRouter;

/// Passes the window's keys, mouse and wheel to the engine's input.
class WindowInput final : public osgGA::GUIEventHandler {
public:
    explicit WindowInput(InputRouter& input) : m_input(input) {}
    bool handle(const osgGA::GUIEventAdapter& event, osgGA::GUIActionAdapter&) override;

private:
    void key(const osgGA::GUIEventAdapter& event, bool down);
    void button(const osgGA::GUIEventAdapter& event, bool down);
    void move(const osgGA::GUIEventAdapter& event);
    void wheel(const osgGA::GUIEventAdapter& event);

    InputRouter& m_input;
};
