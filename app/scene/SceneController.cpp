// The effect of each scene command on the engine and the logic.
#include "app/scene/SceneController.h"

#include <algorithm>
#include <cmath>
#include <filesystem>

#include "app/scene/SceneQuery.h"
#include "engine/core/Engine.h"
#include "engine/scene/NodeWalk.h"
#include "engine/scene/ObjectOcean.h"
#include "engine/scene/ObjectPrefab.h"
#include "engine/scene/World.h"
#include "src/logic/Logic_Test_Fly.h"
#include "src/logic/Target.h"
#include "src/logic/WeaponFiles.h"

namespace {

constexpr int LEVEL_CAMERA = 654321;  // message to the logic that levels its camera

constexpr double TORPEDO_SPEED = 20.0, TORPEDO_RUN = 60.0;  // m/s; seconds
constexpr double WAKE_LIFE = 10.0;                          // seconds for which the wake remains after the run

constexpr struct {
    const char* path;
    float duration;  // seconds
} EFFECTS[] = {{weapons::EXPLOSION, 20.0f},
               {weapons::AIRCRAFT_EXPLOSION, 6.0f},
               {weapons::WATER_EXPLOSION, 12.0f},
               {weapons::WATER_DROP, 12.0f},
               {weapons::DECOY, 12.0f}};
static_assert(std::size(EFFECTS) == std::size(command::EFFECT_NAMES));

constexpr const char* NO_AIRCRAFT = "there is no aircraft to measure from";

void setPose(TargetInfo& info, const dvec3& geo, const RelativePlace& place) {
    info.pose[0] = geo.x;
    info.pose[1] = geo.y;
    info.pose[2] = geo.z;
    info.pose[4] = place.heading;
}

}  // namespace

/// One operator per command. False with `error` set when it cannot be executed.
struct SceneController::Operations {
    Engine& engine;
    Logic_Test_Fly& fly;
    const SceneQuery& query;
    std::vector<Torpedo>& torpedoes;
    std::string& error;

    bool fail(std::string why) {
        error = std::move(why);
        return false;
    }

    bool isJet() const { return fly.getAircraftNode() && fly.getAircraftType() == "PlaneJ15"; }

    bool operator()(const command::Rain& c) {
        fly.setRain(static_cast<float>(c.percent / 100.0));
        return true;
    }

    bool operator()(const command::Snow& c) {
        fly.setSnow(static_cast<float>(c.percent / 100.0));
        return true;
    }

    bool operator()(const command::Time& c) {
        fly.setTod(static_cast<float>(c.hours / 24.0));
        return true;
    }

    bool operator()(const command::Date&) { return true; }  // applied before

    bool operator()(const command::Visibility& c) {
        fly.setVisibilityDistance(static_cast<int>(std::lround(c.metres / Logic_Test_Fly::VISIBILITY_STEP)));
        return true;
    }

    bool operator()(const command::Sea& c) {
        ObjectOcean* const ocean = fly.getOcean();
        if (!ocean) return fail("the world has no ocean");
        ocean->setBeaufort(static_cast<int>(std::lround(c.beaufort)));
        return true;
    }

    bool operator()(const command::SetTrack& c) {
        const jString file = LogicBase::TRACK_FOLDER + c.name + ".anim";
        if (!std::filesystem::exists(std::string(engine.resolvePath(file)))) {
            return fail("there is no track \"" + c.name + "\": " + file + " is missing");
        }
        fly.set_anim(file, static_cast<float>(c.percent));
        return true;
    }

    bool operator()(const command::NavigationLights& c) {
        Object* const model = fly.getModel();
        if (!model) return fail("there is no aircraft with lights");
        fly.setNaviLight(c.on ? 1 : 0);
        forEachNode(*model, [on = c.on](Node& node) {
            if (node.getName().rfind("navigation", 0) == 0) node.setEnabled(on);
        });
        return true;
    }

    bool operator()(const command::ToggleLight&) {
        if (!fly.getHelicopter() && !isJet()) return fail("this aircraft has no such light");
        fly.toggle_light();
        return true;
    }

    bool operator()(const command::Wipers& c) {
        fly.set_wipers(c.on);
        return fly.getHelicopter() || fail("this aircraft has no wipers");
    }

    bool operator()(const command::Gear& c) {
        if (!isJet()) return fail("this aircraft's gear does not move");
        fly.set_gear(c.down);
        return true;
    }

    bool operator()(const command::Push& c) {
        if (!fly.getAircraftNode()) return fail("there is no aircraft to push");
        fly.set_moving_forward(c.on);
        return true;
    }

    bool operator()(const command::BackToStart&) {
        if (!fly.getAircraftNode()) return fail("there is no aircraft to put back");
        fly.back_to_start();
        return true;
    }

    bool operator()(const command::Fire&) {
        // Checked first: without an aircraft, emit_missile leaks the missile that it creates.
        if (!fly.getAircraftNode()) return fail("there is no aircraft that fires missiles");
        const int missiles = fly.getNumMissiles();
        fly.emit_missile();
        return fly.getNumMissiles() > missiles || fail("the missile's model cannot be loaded");
    }

    bool operator()(const command::Explode&) { return fly.plan_explosion() || fail("there is no aircraft to blow up"); }

    bool operator()(const command::Reset&) {
        fly.reset();
        return true;
    }

    bool operator()(const command::View& c) {
        fly.set_player_mode(static_cast<PLAYER_MODE>(c.mode));
        return true;
    }

    bool operator()(const command::NextView&) {
        fly.change_view();
        return true;
    }

    bool operator()(const command::LevelView&) {
        UiMsg message{LEVEL_CAMERA};
        MsgNode::send(&message);
        return true;
    }

    bool operator()(const command::FlightMode& c) {
        fly.set_fly_mode(static_cast<FLY_MODE>(c.mode));
        return true;
    }

    bool operator()(const command::TestPanel& c) {
        fly.set_test_mode(c.on);
        return true;
    }

    /// False when there is no aircraft to measure from.
    bool resolve(const RelativePlace& place, dvec3& geo) {
        constexpr double DECK_STEP = 5.0;  // metres above the aircraft's origin that count as deck
        const Object* const aircraft = fly.getModel();
        if (!aircraft) return false;
        const dvec3 position = aircraft->getWorldPosition();
        const EllipsoidModel& globe = engine.getEllipsoid();
        const double azimuth = place.bearing * jMath::DEG2RAD;
        const dmat4 level = globe.getWGSTransform(position);
        geo = globe.toWGS(level * (dvec3(std::sin(azimuth), std::cos(azimuth), 0.0) * place.distance));
        const double ground = query.getSurfaceBelow({geo.x, geo.y, -1e9}).height;
        geo.z = std::max(globe.toWGS(position).z, ground) + DECK_STEP;
        geo.z = query.getSurfaceBelow(geo).height + place.height;
        return true;
    }

    bool operator()(const command::AddTarget& c) {
        if (query.hasTarget(c.name)) return fail("there is a target of that name already");
        dvec3 geo;
        if (!resolve(c.place, geo)) return fail(NO_AIRCRAFT);
        TargetInfo info;
        info.name = c.name;
        info.type = static_cast<std::uint16_t>(c.type);
        setPose(info, geo, c.place);
        return fly.apply_target(info) || fail("the target cannot be made");
    }

    bool operator()(const command::MoveTarget& c) {
        const Target* const target = fly.get_target(c.name);
        if (!target) return fail("there is no such target");
        dvec3 geo;
        const bool was_enabled = target->getPrefab()->isEnabled();
        target->getPrefab()->setEnabled(false);  // the target must not be its own ground
        const bool found = resolve(c.place, geo);
        target->getPrefab()->setEnabled(was_enabled);
        if (!found) return fail(NO_AIRCRAFT);
        TargetInfo info = target->getInfo();
        setPose(info, geo, c.place);
        return fly.apply_target(info) || fail("the target cannot be moved");
    }

    bool operator()(const command::RemoveTarget& c) {
        return fly.remove_target(c.name) || fail("there is no such target");
    }

    bool operator()(const command::PlayEffect& c) {
        dvec3 geo;
        if (!resolve(c.place, geo)) return fail(NO_AIRCRAFT);
        const EllipsoidModel& globe = engine.getEllipsoid();
        const auto& effect = EFFECTS[c.effect];
        fly.start_effect(effect.path, effect.duration, globe.getWGSTransform(globe.toWorld(geo)));
        return true;
    }

    bool operator()(const command::LaunchTorpedo& c) {
        dvec3 geo;
        if (!resolve(c.place, geo)) return fail(NO_AIRCRAFT);
        Node* const torpedo = fly.create_objectPrefab(weapons::TORPEDO, "torpedo");
        if (!torpedo) return fail("the torpedo's model cannot be loaded");
        torpedo->setWgsPosition(geo);
        torpedo->setWgsHPR({c.place.heading, 0.0, 0.0});
        torpedoes.push_back({torpedo, TORPEDO_RUN});
        return true;
    }
};

SceneController::SceneController(Engine& engine, LogicBase& logic, Logic_Test_Fly* fly, const SceneQuery* query)
    : m_engine(engine), m_logic(logic), m_fly(fly), m_query(query) {
    logic.m_signal_2_reset.append([this](int) {
        for (Torpedo& torpedo : m_torpedoes) torpedo.left = -WAKE_LIFE;
    });
}

bool SceneController::apply(const SceneCommand& command, std::string& error) {
    if (const auto* const date = std::get_if<command::Date>(&command)) {
        m_logic.apply_date(date->year, date->month, date->day);  // available in every logic
        return true;
    }
    if (!m_fly) {
        error = "this logic has no such operation";
        return false;
    }
    return std::visit(Operations{m_engine, *m_fly, *m_query, m_torpedoes, error}, command);
}

void SceneController::update() {
    if (!m_fly) return;
    m_fly->update_missle();
    runTorpedoes(static_cast<double>(m_engine.getFrameTime()));
}

void SceneController::runTorpedoes(double dt) {
    const EllipsoidModel& globe = m_engine.getEllipsoid();
    for (Torpedo& torpedo : m_torpedoes) {
        torpedo.left -= dt;
        if (torpedo.left < 0.0) torpedo.node->setEnabled(false);
        const dmat4& now = torpedo.node->getWorldTransform();
        dvec3 geo = globe.toWGS(now.t + now.y * (TORPEDO_SPEED * dt));
        geo.z = globe.toWGS(now.t).z;
        torpedo.node->setWgsPosition(geo);
    }
    std::erase_if(m_torpedoes, [this](const Torpedo& torpedo) {
        if (torpedo.left > -WAKE_LIFE) return false;
        m_engine.getWorld()->removeNode(torpedo.node);
        return true;
    });
}
