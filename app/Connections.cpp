// All connections between engine, logic and picture.
#include "Connections.h"

#include "common/LogicBase.h"
#include "engine/core/Engine.h"
#include "engine/gui/UIRoot.h"
#include "engine/input/ControlApp.h"
#include "engine/input/InputRouter.h"
#include "engine/scene/World.h"
#include "render/Picture.h"
#include "src/logic/Logic_Test_Fly.h"

void connectLogic(Engine& engine, LogicBase& logic, Logic_Test_Fly* fly_logic, Picture* picture) {
    InputRouter& input = *engine.getInput();
    IApp* const app = engine.getApp();
    input.bindKeyPress([&logic, app](const GUIEventKey& event) { logic.onKeyPress(event, app); });
    input.bindKeyRelease([&logic, app](const GUIEventKey& event) { logic.onKeyRelease(event, app); });
    input.bindMouseDown([&logic, app](const GUIEventMouse& event) { logic.onMouseDown(event, app); });
    input.bindMouseUp([&logic, app](const GUIEventMouse& event) { logic.onMouseUp(event, app); });
    input.bindMouseMove([&logic, app](const GUIEventMouse& event) { logic.onMouseMove(event, app); });
    input.bindWheel([&logic, app, fly_logic](const GUIEventWheel& event) {
        logic.onMouseWheel(event, app);
        // onMouseWheel has no effect without a plane: for the helicopter, and for a logic that polls the wheel, the
        // turn is added to the polled input.
        if (!fly_logic || !fly_logic->getAircraftNode()) app->getControl()->addWheel(event.delta);
    });

    logic.m_signal_24_date.append([&engine](int year, int month, int day) {
        Environment& environment = engine.getWorld()->getEnvironment();
        environment.year = year;
        environment.month = month;
        environment.day = day;
    });
    if (!picture || !fly_logic) return;
    logic.m_signal_20_fog.append(
        [picture, fly_logic](float) { picture->setVisibility(fly_logic->getFogVisibility()); });
}

void disconnectInput(Engine& engine) {
    engine.getInput()->clearBindings();
    engine.getUIRoot()->clear();
}
