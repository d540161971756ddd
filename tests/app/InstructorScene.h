// The demonstration with its logic and an instructor, in this process, and a hand on mouse and keyboard.
#pragma once

#include <memory>

#include "DemoScene.h"
#include "app/Controls.h"
#include "app/Instructor.h"
#include "app/Options.h"
#include "engine/gui/UIRoot.h"
#include "engine/input/InputRouter.h"
#include "src/logic/Logic_Test_Fly.h"
#include "support/FakeHost.h"

class InstructorScene : public DemoScene {
protected:
    explicit InstructorScene(const std::string& aircraft = Options().aircraft) {
        loadWorld();
        const auto set = [](const char* key, int port) { mjl::setOverride(CONFIG_PATH, key, std::to_string(port)); };
        set("local_port", host.getViewerPort());
        set("recv_from_flightSimulation_port", host.getSendPort());
        set("send_to_flightSimulation_port", host.getFeedbackPort());
        m_logic = jMakeLogic();
        logic().set_aircraft_path(aircraft);
        logic().set_airport_node(Options().airport);
        logic().set_carrier_node(Options().carrier);
        logic().init();
        m_instructor = std::make_unique<Instructor>(engine(), logic());
    }
    ~InstructorScene() override {
        input().clearBindings();
        panels().clear();
        m_controls.reset();
        m_instructor.reset();
        m_logic.reset();
        mjl::clearOverrides();
    }

    Engine& engine() { return *Engine::get(); }
    InputRouter& input() { return *engine().getInput(); }
    UIRoot& panels() { return *engine().getUIRoot(); }
    Logic_Test_Fly& logic() { return *m_logic; }
    Instructor& instructor() { return *m_instructor; }

    /// The window with its panels, and the instructor's opened by its key.
    void openPanel(const std::string& language, int width = 1280, int height = 720) {
        m_controls = std::make_unique<Controls>(engine(), &logic(), m_instructor.get(), nullptr, language);
        input().resize(width, height);
        input().keyEvent(ControlApp::KEY_F9, true);
        input().keyEvent(ControlApp::KEY_F9, false);
        frames(2);
    }
    /// As the application runs them.
    void frames(int count, double dt = 1.0 / 60.0) {
        for (int i = 0; i < count; ++i) {
            m_instructor->update();
            engine().beginFrame(dt);
            m_logic->update(engine().getFrameTime());
            engine().step();
            m_logic->swap();
            if (m_controls) m_controls->update();
            engine().endFrame();
        }
    }

    UIElement& element(const jString& name) {
        for (int i = 0; i < panels().getNumChildren(); ++i) {
            if (UIElement* const found = find(*panels().getChild(i), name)) return *found;
        }
        throw std::runtime_error("no element " + name);
    }
    jString text(const jString& label) { return dynamic_cast<UILabel&>(element(label)).getText(); }
    /// Presses and lets go at a share of an element's width.
    void click(const jString& name, double share = 0.5) {
        UIElement& it = element(name);
        input().mouseMove(it.getX() + share * it.getWidth(), it.getY() + 0.5 * it.getHeight());
        input().mouseButton(ControlApp::BUTTON_LEFT, true);
        frames(1);
        EXPECT_FALSE(engine().getApp()->getControl()->isLeftButtonDown()) << name << " lets the mouse through";
        input().mouseButton(ControlApp::BUTTON_LEFT, false);
        frames(1);
    }

    FakeHost host{findFreePort()};

private:
    struct End {
        void operator()(Logic_Test_Fly* logic) const {
            logic->release();
            jDelete(static_cast<LogicBase*>(logic));
        }
    };
    std::unique_ptr<Logic_Test_Fly, End> jMakeLogic() {
        return {static_cast<Logic_Test_Fly*>(CreateLogic(&world(), engine().getCameraControl())), End()};
    }
    static UIElement* find(UIElement& from, const jString& name) {
        if (from.getName() == name) return &from;
        const auto* const layout = dynamic_cast<const UILayout*>(&from);
        for (int i = 0; layout && i < layout->getNumChildren(); ++i) {
            if (UIElement* const found = find(*layout->getChild(i), name)) return found;
        }
        return nullptr;
    }

    std::unique_ptr<Logic_Test_Fly, End> m_logic;
    std::unique_ptr<Instructor> m_instructor;
    std::unique_ptr<Controls> m_controls;
};
