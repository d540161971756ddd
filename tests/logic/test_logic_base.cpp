// The base logic: levelling the camera, the order of the virtual operations.
#include "common/LogicBase.h"

#include <cstring>

#include "LogicWorld.h"
#include "engine/camera/CameraControl.h"

namespace {

class OpenLogic : public LogicBase {
public:
    using LogicBase::adjust_geo_rotation_forward;
    using LogicBase::LogicBase;
};

class LogicBaseTest : public SceneTest {
protected:
    OpenLogic logic{&world(), engine().getCameraControl()};
};

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

TEST(VirtualOrder, OperationsHaveTheirSlots) {
    using L = OpenLogic;
    // From 0; the logic's destructor takes two entries.
    const std::pair<int, int> slots[] = {{4, entry(&L::setRain)},
                                         {14, entry(&L::apply_date)},
                                         {16, entry(&L::update)},
                                         {19, entry(&L::release)},
                                         {30, entry(&L::set_carrier_node)},
                                         {4, entry(&PlaneBase::update)},
                                         {31, entry(&PlaneBase::addRotationDeflection)},
                                         {42, entry(&PlaneJ15::setUserFlag2)}};
    for (const auto& [slot, found] : slots) EXPECT_EQ(found, slot);
}
#endif

}  // namespace
