// The base logic: tracks, notifications, test mode, levelling the camera, the order of the virtual operations.
#include "common/LogicBase.h"

#include <cstring>

#include "LogicWorld.h"
#include "engine/camera/CameraControl.h"
#include "engine/memory/Allocator.h"
#include "engine/track/Track.h"

namespace {

const std::string FOLDER = "data/assets/Anim/Fly_simulator/";

class OpenLogic : public LogicBase {
public:
    using LogicBase::adjust_geo_rotation_forward;
    using LogicBase::get_track;
    using LogicBase::load_track;
    using LogicBase::LogicBase;
    using LogicBase::m_test_mode;
    using LogicBase::m_tracks;
};

class LogicBaseTest : public SceneTest {
protected:
    void writeTrack(const std::string& file) { write(FOLDER + file, R"({ "channels": [] })"); }

    OpenLogic logic{&world(), engine().getCameraControl()};
};

TEST_F(LogicBaseTest, InitLoadsWhatThereIsInOrderAndNamesTheRest) {
    for (const char* file : {"airport_light_enable.anim", "TOD.anim", "runway_wet.anim"}) writeTrack(file);
    write(FOLDER + "snow.anim", "{");
    std::string fired;
    logic.m_signal_13_track_loaded.append([&](Track* track) { fired += track->getName() + "|"; });
    EXPECT_TRUE(logic.init());
    EXPECT_EQ(fired, FOLDER + "runway_wet.anim|" + FOLDER + "TOD.anim|" + FOLDER + "airport_light_enable.anim|");
    EXPECT_EQ(countLines("LogicBase::load_track:\"" + FOLDER + "snow.anim\" load failed"), 1);
    EXPECT_EQ(countLines("load failed"), 4);
}

TEST_F(LogicBaseTest, TracksAreFoundByPathTheFirstOfTwoAndMissingOnesAreIgnored) {
    writeTrack("TOD.anim");
    logic.setAirportLightEnable(true);
    logic.setTod(0.5f);
    logic.load_track("");
    EXPECT_TRUE(lines().empty());
    logic.load_track(FOLDER + "TOD.anim");
    logic.load_track(FOLDER + "TOD.anim");
    ASSERT_EQ(logic.m_tracks.size(), 2);
    logic.setTod(0.75f);
    EXPECT_EQ(logic.get_track(FOLDER + "TOD.anim"), logic.m_tracks[0].get());
    EXPECT_EQ(logic.m_tracks[0]->get(), 0.75f);
    EXPECT_EQ(logic.m_tracks[1]->get(), 0.0f);
    EXPECT_EQ(logic.get_track("TOD.anim"), nullptr);
}

TEST_F(LogicBaseTest, ACopySharesTracksAndHandlersAndNothingIsLeft) {
    writeTrack("TOD.anim");
    int dates = 0;
    const std::size_t before = jAllocator::get()->getBlockCount();
    {
        OpenLogic copy = [&] {
            OpenLogic original(&world(), nullptr);
            original.load_track(FOLDER + "TOD.anim");
            original.m_signal_24_date.append([&](int y, int m, int d) { dates += 10000 * y + 100 * m + d; });
            return OpenLogic(original);
        }();
        copy.setTod(0.25f);
        EXPECT_EQ(copy.m_tracks[0]->get(), 0.25f);
        copy.apply_date(2024, 6, 21);
        EXPECT_EQ(dates, 20240621);
    }
    EXPECT_EQ(jAllocator::get()->getBlockCount(), before);
}

TEST_F(LogicBaseTest, HandlersRunInOrderAndMayConnectMore) {
    std::string order;
    logic.m_signal_24_date.append([&](int, int, int) {
        order += "a";
        logic.m_signal_24_date.append([&](int, int, int) { order += "c"; });
    });
    logic.m_signal_24_date.append([&](int, int, int) { order += "b"; });
    logic.apply_date(1, 2, 3);
    EXPECT_EQ(order, "abc");
}

TEST_F(LogicBaseTest, OnlyCtrlTTogglesTheTestMode) {
    const auto release = [&](std::uint16_t key, std::uint8_t modifier) {
        return printedBy([&] { logic.onKeyRelease({key, modifier}, nullptr); });
    };
    EXPECT_EQ(release('t', 0) + release('s', 1), "");
    EXPECT_EQ(release('t', 1), "test mode open \n");
    EXPECT_EQ(release('t', 1), "test mode close \n");
}

TEST_F(LogicBaseTest, LevellingKeepsHeadingAndPlaceAndPutsTheVerticalInTheMiddle) {
    CameraControl& camera = *engine().getCameraControl();
    const EllipsoidModel& globe = engine().getEllipsoid();
    const dvec3 place = globe.toWorld({112.35, 16.84, 300.0});
    const dvec3 up = normalize(place);
    const dmat3 flat = [&] {
        const dvec3 x = normalize(cross({0.0, 0.0, 1.0}, up));
        return dmat3(x, up, cross(x, up));
    }();
    for (const double tilt : {0.0, 40.0, -89.9, 90.0, -90.0}) {
        for (const double turn : {0.0, 70.0, 200.0}) {
            const dquat heading = dquat(up, turn) * dquat(flat);
            camera.getPosition() = place;
            camera.getRotation() = heading * dquat(dvec3(1.0, 0.0, 0.0), tilt);
            camera.apply();
            logic.adjust_geo_rotation_forward();
            const dmat4& result = camera.getNode()->getWorldTransform();
            EXPECT_LT(length(result.getY() - up), 1e-9) << tilt;
            EXPECT_LT(length(cross(result.getX(), result.getY()) - result.getZ()), 1e-9) << tilt;
            EXPECT_LT(length(result.getTranslation() - place), 1e-6) << tilt;
            if (std::abs(tilt) < 90.0) {
                EXPECT_GT(dot(result.getX(), heading * dvec3(1.0, 0.0, 0.0)), 1.0 - 1e-6) << tilt << " " << turn;
            }
        }
    }
}

#if defined(__x86_64__)
/// The vtable entry that a pointer to a virtual operation names (Itanium C++ ABI, 2.3: 1 + the entry's byte offset).
template <class F>
int entry(F operation) {
    std::uintptr_t bits = 0;
    std::memcpy(&bits, &operation, sizeof bits);
    return (bits & 1) ? static_cast<int>((bits - 1) / sizeof(void*)) : -1;
}

/// A destructor takes two entries: operations behind slot 2 stand one entry further.
TEST(VirtualOrder, LogicBase) {
    using L = OpenLogic;
    const int entries[] = {entry(&L::getCamSpeed),
                           entry(&L::setCamSpeed),
                           3,
                           entry(&L::setRain),
                           entry(&L::setSnow),
                           entry(&L::setTod),
                           entry(&L::setAirportLightEnable),
                           entry(&L::setAirportLightBrightness),
                           entry(&L::getWorldPath),
                           entry(static_cast<const World* (L::*)() const>(&L::getWorld)),
                           entry(static_cast<World* (L::*)()>(&L::getWorld)),
                           entry(static_cast<const CameraControl* (L::*)() const>(&L::getCameraControl)),
                           entry(static_cast<CameraControl* (L::*)()>(&L::getCameraControl)),
                           entry(&L::apply_date),
                           entry(&L::init),
                           entry(&L::update),
                           entry(&L::render),
                           entry(&L::swap),
                           entry(&L::release),
                           entry(&L::onMouseDown),
                           entry(&L::onMouseUp),
                           entry(&L::onMouseMove),
                           entry(&L::onMouseWheel),
                           entry(&L::onKeyPress),
                           entry(&L::onKeyRelease),
                           entry(&L::load_track),
                           entry(&L::get_track),
                           entry(&L::set_aircraft_path),
                           entry(&L::set_airport_node),
                           entry(&L::set_carrier_node)};
    ASSERT_EQ(std::size(entries), 30u);
    for (int slot = 0; slot < 30; ++slot) EXPECT_EQ(entries[slot], slot < 2 ? slot : slot + 1);
}

TEST(VirtualOrder, CarrierJet) {
    using P = PlaneBase;
    using J = PlaneJ15;
    const int entries[] = {entry(&P::getPrefabPath),
                           entry(&P::isUndercarriageOpen),
                           entry(static_cast<bool (P::*)(World*)>(&P::init)),
                           entry(static_cast<bool (P::*)(World*, const jString&)>(&P::init)),
                           entry(&P::update),
                           entry(&P::refresh),
                           entry(&P::getBaseTransform),
                           entry(&P::setBaseTransform),
                           entry(&P::getAircraftInfo),
                           entry(&P::assignAircraftInfo),
                           entry(&P::getDamageState),
                           entry(&P::setDamageState),
                           entry(&P::setUndercarriage),
                           entry(&P::setWgsHPR),
                           entry(&P::setWgsPosition),
                           entry(&P::setWorldTransform),
                           entry(&P::getWorldTransform),
                           entry(&P::getWorldPosition),
                           entry(&P::openUndercarriage),
                           entry(&P::closeUndercarriage),
                           entry(&P::flyPose),
                           entry(&P::standPose),
                           entry(&P::setFlightState),
                           entry(&P::stopPose),
                           entry(&P::setAircraftInfo),
                           entry(&P::showDestroyed),
                           entry(&P::resetDamage),
                           entry(&P::resetToBase),
                           entry(&P::resetAt),
                           entry(&P::catchFire),
                           entry(&P::addPositionOffset),
                           entry(&P::addRotationDeflection),
                           entry(&J::isPhysicsEnabled),
                           entry(&J::setPhysicsEnabled),
                           entry(&J::getThrust),
                           entry(&J::setThrust),
                           entry(&J::isStanding),
                           entry(&J::getUserTransform),
                           entry(&J::setUserTransform),
                           entry(&J::getUserFlag1),
                           entry(&J::setUserFlag1),
                           entry(&J::getUserFlag2),
                           entry(&J::setUserFlag2)};
    ASSERT_EQ(std::size(entries), 43u);
    for (int slot = 0; slot < 43; ++slot) EXPECT_EQ(entries[slot], slot);
}
#endif

}  // namespace
