// The demonstration with its logic, scene commands and panels in this process, and simulated mouse and keyboard input.
#pragma once

#include <memory>

#include "app/Controls.h"
#include "app/Options.h"
#include "app/TargetTypes.h"
#include "app/scene/SceneCommandQueue.h"
#include "app/scene/SceneController.h"
#include "app/scene/SceneQuery.h"
#include "common/LogicFrame.h"
#include "engine/gui/UIRoot.h"
#include "engine/input/InputRouter.h"
#include "src/logic/AppData.h"
#include "src/logic/Logic_Test_Fly.h"
#include "support/DemoScene.h"
#include "support/FakeHost.h"

class InstructorScene : public DemoScene {
protected:
    explicit InstructorScene(const std::string& aircraft = Options().aircraft) {
        loadWorld();
        const auto set = [](const char* key, int port) { mjl::setOverride(AppData::PATH, key, std::to_string(port)); };
        set("local_port", host.getViewerPort());
        set("recv_from_flightSimulation_port", host.getSendPort());
        set("send_to_flightSimulation_port", host.getFeedbackPort());
        m_logic.reset(static_cast<Logic_Test_Fly*>(CreateLogic(&world(), engine().getCameraControl())));
        logic().set_aircraft_path(aircraft);
        logic().set_airport_node(Options().airport);
        logic().set_carrier_node(Options().carrier);
        logic().init();
        m_query.emplace(engine(), logic());
        m_controller.emplace(engine(), logic(), &logic(), &*m_query);
    }
    ~InstructorScene() override {
        input().clearBindings();
        panels().clear();
        m_controls.reset();
        m_logic.reset();
        mjl::clearOverrides();
    }

    Engine& engine() { return *Engine::get(); }
    InputRouter& input() { return *engine().getInput(); }
    UIRoot& panels() { return *engine().getUIRoot(); }
    Logic_Test_Fly& logic() { return *m_logic; }
    SceneQuery& query() { return *m_query; }
    SceneCommandQueue& commands() { return m_commands; }

    /// Pushes a command given by its text and runs the frame that applies it; false when it causes a log line.
    bool give(const std::string& text) {
        const std::size_t before = complaints().size();
        m_commands.push(parseCommand(text, readTargetTypes(Texts("en"))).value(), {"test", 7});
        frames(1);
        return complaints().size() == before;
    }
    /// Opens the window with its panels, and the instructor's panel by its key.
    void openPanel(const std::string& language, int width = 1280, int height = 720) {
        m_controls = std::make_unique<Controls>(engine(), m_commands, &logic(), &*m_query, nullptr, language);
        input().resize(width, height);
        input().keyEvent(ControlApp::KEY_F9, true);
        input().keyEvent(ControlApp::KEY_F9, false);
        frames(2);
    }
    /// Runs frames as the application does.
    void frames(int count, double dt = 1.0 / 60.0) {
        for (int i = 0; i < count; ++i) runFrame(engine(), logic(), dt, Steps{*this});
    }

    UIElement& element(const jString& name) {
        for (int i = 0; i < panels().getNumChildren(); ++i) {
            if (UIElement* const found = find(*panels().getChild(i), name)) return *found;
        }
        throw std::runtime_error("no element " + name);
    }
    jString text(const jString& label) { return dynamic_cast<UILabel&>(element(label)).getText(); }
    /// Presses and releases the mouse button at a fraction of an element's width.
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
    struct Steps : FrameSteps {
        explicit Steps(InstructorScene& of) : scene(of) {}
        void begun() {
            scene.m_commands.apply(*scene.m_controller);
            scene.m_controller->update();
        }
        void placed() {
            scene.m_query->update();
            if (scene.m_controls) scene.m_controls->update();
        }
        InstructorScene& scene;
    };
    struct End {
        void operator()(Logic_Test_Fly* logic) const {
            logic->release();
            jDelete(static_cast<LogicBase*>(logic));
        }
    };
    static UIElement* find(UIElement& from, const jString& name) {
        if (from.getName() == name) return &from;
        const auto* const layout = dynamic_cast<const UILayout*>(&from);
        for (int i = 0; layout && i < layout->getNumChildren(); ++i) {
            if (UIElement* const found = find(*layout->getChild(i), name)) return found;
        }
        return nullptr;
    }

    std::unique_ptr<Logic_Test_Fly, End> m_logic;
    SceneCommandQueue m_commands;
    std::optional<SceneQuery> m_query;
    std::optional<SceneController> m_controller;
    std::unique_ptr<Controls> m_controls;
};
