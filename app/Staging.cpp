// Sets the scene up: the view once the world is loaded, the rest as the command line asks once the logic is
// initialised.
#include "Staging.h"

#include <filesystem>

#include "Options.h"
#include "engine/camera/CameraControl.h"
#include "engine/core/Engine.h"
#include "engine/scene/World.h"
#include "engine/text/Log.h"
#include "src/logic/Logic_Test_Fly.h"

void placeCamera(Engine& engine, const CameraPlace& place) {
    const EllipsoidModel& globe = engine.getEllipsoid();
    const dvec3 position = globe.toWorld(dvec3(place.geodetic[0], place.geodetic[1], place.geodetic[2]));
    const dquat attitude = globe.fromWgsHPR(position, dvec3(place.wgs_hpr[0], place.wgs_hpr[1], place.wgs_hpr[2]));
    CameraControl& camera = *engine.getCameraControl();
    // From a model's axes (+Y ahead, +Z up) to a camera's (-Z ahead, +Y up).
    camera.getRotation() = attitude * dquat(dvec3(1.0, 0.0, 0.0), 90.0);
    camera.getPosition() = position;
    camera.apply();
}

void placeCameraAtStart(Engine& engine) {
    const Environment& environment = engine.getWorld()->getEnvironment();
    const dvec3 &geo = environment.camera_geodetic, &hpr = environment.camera_wgs_hpr;
    placeCamera(engine, {{geo.x, geo.y, geo.z}, {hpr.x, hpr.y, hpr.z}});
}

void stageWeather(const Options& options, const Engine& engine, LogicBase& logic, Logic_Test_Fly* fly_logic) {
    if (options.date) logic.apply_date((*options.date)[0], (*options.date)[1], (*options.date)[2]);
    if (!fly_logic) {
        if (!options.tracks.empty() || options.visibility) jLog::warning("this logic has no weather to set");
        return;
    }
    for (const auto& [name, percent] : options.tracks) {
        const jString file = LogicBase::TRACK_FOLDER + name + ".anim";
        if (!std::filesystem::exists(std::string(engine.resolvePath(file)))) {
            jLog::warning("there is no track \"%s\": %s is missing", name.c_str(), file.c_str());
        }
        fly_logic->set_anim(file, percent);
    }
    if (options.visibility) fly_logic->setVisibilityDistance(*options.visibility / Logic_Test_Fly::VISIBILITY_STEP);
}
