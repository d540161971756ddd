// The jet's undercarriage and hook. Legs are modelled down, doors shut.
#include "models/JetShape.h"

namespace jet {
namespace {

Part noseLeg(const Paints& paints) {
    const dvec3 hinge{0.0, NOSE_WHEEL.y, -0.25};
    const dvec3 fork{0.0, NOSE_WHEEL.y, -1.15};
    Mesh strut = cylinder(paints.gear, hinge, fork, 0.10);
    strut.add(cylinder(paints.gear, {0.0, NOSE_WHEEL.y + 0.75, -0.35}, {0.0, NOSE_WHEEL.y, -0.95}, 0.045, 8));
    Mesh bogie = cylinder(paints.metal, fork, NOSE_WHEEL, 0.065);
    bogie.add(cylinder(paints.metal, NOSE_WHEEL - dvec3(0.3, 0, 0), NOSE_WHEEL + dvec3(0.3, 0, 0), 0.05, 8));
    bogie.addPair(wheel(paints.tyre, paints.gear, NOSE_WHEEL + dvec3(0.21, 0, 0), NOSE_WHEEL_RADIUS, 0.18));
    return {"nose_leg", hinge, strut, {}, {{"nose_wheel_steer", fork, bogie}}};
}

Part mainLeg(const Paints& paints, int side) {
    const dvec3 hinge{MAIN_WHEEL.x + 0.25, MAIN_WHEEL.y, 0.15};
    const dvec3 foot{hinge.x, hinge.y, MAIN_WHEEL.z};
    Mesh mesh = cylinder(paints.gear, hinge, {hinge.x, hinge.y, -0.85}, 0.12);
    mesh.add(cylinder(paints.metal, {hinge.x, hinge.y, -0.85}, foot - dvec3(0, 0, 0.08), 0.08));
    mesh.add(cylinder(paints.gear, foot + dvec3(0.08, 0, 0), foot - dvec3(0.3, 0, 0), 0.07, 10));
    mesh.add(cylinder(paints.gear, {hinge.x, hinge.y + 0.7, 0.1}, {hinge.x, hinge.y, -0.7}, 0.05, 8));
    mesh.add(wheel(paints.tyre, paints.gear, MAIN_WHEEL, MAIN_WHEEL_RADIUS, 0.36));
    return {withSide("main_leg", side), onSide(hinge, side), onSide(mesh, side)};
}

Part noseDoor(const Paints& paints, int side) {
    const Mesh plate = box(paints.skin, {0.0, 4.8, -0.47}, {0.33, 6.35, -0.44});
    return {withSide("nose_door", side), onSide({0.33, 5.6, -0.455}, side), onSide(plate, side)};
}

Part mainDoor(const Paints& paints, int side) {
    const Mesh plate = box(paints.skin, {1.90, -1.25, -0.17}, {2.55, 0.75, -0.14});
    return {withSide("main_door", side), onSide({2.55, -0.25, -0.155}, side), onSide(plate, side)};
}

Part rearNoseDoor(const Paints& paints) {
    return {"nose_door_rear", {0.0, 3.85, -0.425}, box(paints.skin, {-0.30, 3.85, -0.44}, {0.30, 4.25, -0.41})};
}

Part hook(const Paints& paints) {
    const dvec3 hinge{0.0, -8.2, -0.08}, tip{0.0, -10.35, -0.06};
    Mesh mesh = cylinder(paints.metal, hinge, tip, 0.06, 0.045, 10);
    mesh.add(taperedBox(paints.dark, {-0.09, -10.55, -0.16}, {0.09, -10.3, 0.0}, 0.02));
    return {"weigou001", hinge, mesh};
}

}  // namespace

std::vector<Part> gearParts(const Paints& paints) {
    std::vector<Part> parts{noseLeg(paints), rearNoseDoor(paints), hook(paints)};
    for (const int side : {-1, 1}) {
        parts.push_back(mainLeg(paints, side));
        parts.push_back(noseDoor(paints, side));
        parts.push_back(mainDoor(paints, side));
    }
    return parts;
}

}  // namespace jet
