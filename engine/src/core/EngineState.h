// The members of the engine, for its own sources.
#pragma once

#include "engine/camera/CameraControl.h"
#include "engine/core/Engine.h"
#include "engine/gui/UIRoot.h"
#include "engine/input/InputRouter.h"
#include "engine/scene/World.h"

struct EngineState {
    explicit EngineState(const EngineSettings& settings) : random(settings.seed), panels(settings.font) {}

    EllipsoidModel ellipsoid;
    Random random;
    ControlApp control;
    IApp app{&control};
    UIRoot panels;
    InputRouter input{control, panels};
    CameraControl camera;
    double frame_time = 0.0;
    double time = 0.0;
    int frame = 0;
    int clamps = 0;
    std::unique_ptr<World> world;  ///< constructed last, destroyed first: nodes may use all of the above
};
