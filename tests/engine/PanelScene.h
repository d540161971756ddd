// An engine with panels, and a hand on mouse and keyboard.
#pragma once

#include <gtest/gtest.h>

#include "engine/core/Engine.h"
#include "engine/gui/UIEditLine.h"
#include "engine/gui/UIRoot.h"
#include "engine/gui/UIWidgets.h"
#include "engine/input/InputRouter.h"
#include "engine/text/Log.h"

class PanelScene : public testing::Test {
protected:
    explicit PanelScene(const EngineSettings& settings = {}) : engine(settings) {
        jLog::setSink([this](jLog::Level, const jString& line) { log.append(line); });
    }
    ~PanelScene() override { jLog::setSink({}); }

    void frame() {
        engine.endFrame();
        engine.beginFrame(1.0 / 60.0);
    }

    template <class T, class... Args>
    T* add(Args&&... args) {
        T* const element = new T(std::forward<Args>(args)...);
        root.addChild(element);
        return element;
    }
    template <class T, class... Args>
    T* addTo(UILayout& layout, Args&&... args) {
        T* const element = new T(std::forward<Args>(args)...);
        layout.addChild(element);
        return element;
    }

    /// Moves the mouse to the middle of an element.
    void pointAt(UIElement& element) {
        input.mouseMove(element.getX() + element.getWidth() / 2, element.getY() + element.getHeight() / 2);
    }
    void press() { input.mouseButton(ControlApp::BUTTON_LEFT, true); }
    void release() { input.mouseButton(ControlApp::BUTTON_LEFT, false); }
    /// All within one frame.
    void click(UIElement& element) {
        pointAt(element);
        press();
        release();
        frame();
    }
    void type(const char32_t* text) {
        for (; *text; ++text) {
            input.keyEvent(static_cast<int>(*text), true);
            input.textEvent(*text);
            input.keyEvent(static_cast<int>(*text), false);
        }
    }
    void hit(int key, int modifiers = 0) {
        input.keyEvent(key, true, modifiers);
        input.keyEvent(key, false, modifiers);
    }

    Engine engine;
    UIRoot& root = *engine.getUIRoot();
    InputRouter& input = *engine.getInput();
    ControlApp& control = *engine.getApp()->getControl();
    jVector<jString> log;
};
