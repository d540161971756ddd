// The base logic: tracks, notifications, levelling the camera, the order of the virtual operations.
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
    using LogicBase::load_track;
    using LogicBase::LogicBase;
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
    logic.setTod(0.5f);  // without its track: nothing
    EXPECT_TRUE(lines().empty());
    EXPECT_TRUE(logic.init());
    EXPECT_EQ(fired, FOLDER + "runway_wet.anim|" + FOLDER + "TOD.anim|" + FOLDER + "airport_light_enable.anim|");
    EXPECT_EQ(countLines("LogicBase::load_track:\"" + FOLDER + "snow.anim\" load failed"), 1);
    EXPECT_EQ(countLines("load failed"), 4);
    logic.setTod(0.75f);
    EXPECT_EQ(logic.m_tracks[1]->get(), 0.75f);
    EXPECT_EQ(logic.m_tracks[0]->get() + logic.m_tracks[2]->get(), 0.0f);
}

TEST_F(LogicBaseTest, ACopySharesTracksAndHandlersAndNothingIsLeft) {
    writeTrack("TOD.anim");
    std::string order;
    const std::size_t before = jAllocator::get()->getBlockCount();
    {
        auto original = std::make_unique<OpenLogic>(&world(), nullptr);
        const int books = memGetInfos().size();
        original->load_track(FOLDER + "TOD.anim");
        EXPECT_EQ(memGetInfos().size(), books + 2) << "the track and what counts its owners";
        original->m_signal_24_date.append([&](int, int, int) { order += "a"; });
        original->m_signal_24_date.append(
            [&](int y, int m, int d) { order += std::to_string(10000 * y + 100 * m + d); });
        OpenLogic copy(*original);
        original.reset();
        copy.setTod(0.25f);
        EXPECT_EQ(copy.m_tracks[0]->get(), 0.25f);
        copy.apply_date(2024, 6, 21);
        EXPECT_EQ(order, "a20240621");
    }
    EXPECT_EQ(jAllocator::get()->getBlockCount(), before);
}

TEST_F(LogicBaseTest, LevellingKeepsHeadingAndPlaceAndPutsTheVerticalInTheMiddle) {
    CameraControl& camera = *engine().getCameraControl();
    const dvec3 place = engine().getEllipsoid().toWorld({112.35, 16.84, 300.0}), up = normalize(place);
    const dvec3 east = normalize(cross({0.0, 0.0, 1.0}, up));
    for (const double tilt : {0.0, 40.0, -89.9, 90.0, -90.0}) {
        for (const double turn : {0.0, 70.0, 200.0}) {
            const dquat heading = dquat(up, turn) * dquat(dmat3(east, up, cross(east, up)));
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

TEST(VirtualOrder, OperationsStandInTheirSlots) {
    using L = OpenLogic;
    using P = PlaneBase;
    using J = PlaneJ15;
    // Slots count operations from 0, a destructor as one; the logic's takes two entries.
    const std::pair<int, int> logic[] = {
        {3, entry(&L::setRain)},      {5, entry(&L::setTod)},        {8, entry(&L::getWorldPath)},
        {13, entry(&L::apply_date)},  {14, entry(&L::init)},         {15, entry(&L::update)},
        {16, entry(&L::render)},      {17, entry(&L::swap)},         {18, entry(&L::release)},
        {19, entry(&L::onMouseDown)}, {24, entry(&L::onKeyRelease)}, {29, entry(&L::set_carrier_node)}};
    for (const auto& [slot, found] : logic) EXPECT_EQ(found, slot + 1);
    const std::pair<int, int> plane[] = {{0, entry(&P::getPrefabPath)},      {4, entry(&P::update)},
                                         {8, entry(&P::getAircraftInfo)},    {12, entry(&P::setUndercarriage)},
                                         {18, entry(&P::openUndercarriage)}, {22, entry(&P::setFlightState)},
                                         {25, entry(&P::showDestroyed)},     {31, entry(&P::addRotationDeflection)},
                                         {32, entry(&J::isPhysicsEnabled)},  {36, entry(&J::isStanding)},
                                         {42, entry(&J::setUserFlag2)}};
    for (const auto& [slot, found] : plane) EXPECT_EQ(found, slot);
}
#endif

}  // namespace
