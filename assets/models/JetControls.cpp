// The table for the jet's aircraft file.
#include "models/JetControls.h"

#include "models/JetShape.h"

namespace jet {
namespace {

const dvec3 NONE{};
const dvec3 X{1.0, 0.0, 0.0}, Y{0.0, 1.0, 0.0}, Z{0.0, 0.0, 1.0};

/// The hinge line between two ribs at a fraction of the chord, from left to right, so that a positive angle lowers the
/// trailing edge on both sides.
dvec3 hinge(const Rib& root, const Rib& tip, double fraction, int side) {
    dvec3 line = normalize(chordPoint(tip, fraction) - chordPoint(root, fraction));
    return side > 0 ? line : dvec3(line.x, -line.y, -line.z);
}

/// Upward on the left and downward on the right: opposite angles turn both rudders in the same direction.
dvec3 rudderHinge(int side) {
    return normalize(chordPoint(FIN_TIP, RUDDER) - chordPoint(FIN_ROOT, RUDDER)) * -side;
}

Control surface(const std::string& label, const std::string& node, int side, const dvec3& axis) {
    return {(side < 0 ? "左" : "右") + label, withSide(node, side), NONE, NONE, axis, 0};
}

void addDoors(std::vector<Control>& list) {
    list.push_back({"前起落架左舱门", "nose_door_left", {0, 0, 88}, NONE, Y});
    list.push_back({"前起落架右舱门", "nose_door_right", {0, 0, -88}, NONE, Y});
    list.push_back({"左主起落架舱门", "main_door_left", {0, 0, 85}, NONE, Y});
    list.push_back({"右主起落架舱门", "main_door_right", {0, 0, -85}, NONE, Y});
    list.push_back({"前起落架后舱门", "nose_door_rear", {0, -80, 0}, NONE, X});
}

/// Left surfaces at odd positions, right ones at even positions: the two groups that a flight state deflects.
void addSurfaces(std::vector<Control>& list) {
    for (const int side : {-1, 1}) list.push_back(surface("鸭翼", "canard", side, -X));
    for (const int side : {-1, 1}) {
        list.push_back(surface("前缘襟翼", "leading_flap", side, -hinge(WING_ROOT, WING_TIP, NOSE_FLAP, side)));
    }
    for (const int side : {-1, 1}) {
        list.push_back(surface("副翼", "aileron", side, hinge(WING_ROOT, WING_TIP, TRAILING_FLAP, side)));
    }
    for (const int side : {-1, 1}) {
        list.push_back(surface("襟副翼", "flaperon", side, hinge(WING_ROOT, WING_TIP, TRAILING_FLAP, side)));
    }
    for (const int side : {-1, 1}) list.push_back(surface("平尾", "stabilator", side, X));
    for (const int side : {-1, 1}) list.push_back(surface("方向舵", "rudder", side, rudderHinge(side)));
}

void addLegsAndHook(std::vector<Control>& list) {
    list.push_back({"前起落架", "nose_leg", NONE, {0, 97, 0}, X});
    list.push_back({"左主起落架", "main_leg_left", NONE, {75, 0, -90}, X});
    list.push_back({"右主起落架", "main_leg_right", NONE, {-75, 0, 90}, X});
    list.push_back({"尾钩", "weigou001", {0, 40, 0}, NONE, X});
}

void addOthers(std::vector<Control>& list) {
    list.push_back({"座舱盖", "canopy", NONE, NONE, X});
    list.push_back({"减速板", "airbrake", NONE, NONE, -X});
    list.push_back(surface("进气道斜板", "intake_ramp", -1, X));
    list.push_back(surface("进气道斜板", "intake_ramp", 1, X));
    list.push_back({"受油管", "refuelling_probe", NONE, NONE, X});
    list.push_back(surface("折叠机翼", "wing_fold", -1, Y));
    list.push_back(surface("折叠机翼", "wing_fold", 1, -Y));
    list.push_back({"登机梯", "ladder", NONE, NONE, -Y});
    list.push_back({"雷达罩", "radome", NONE, NONE, X});
    list.push_back({"前轮转向", "nose_wheel_steer", NONE, NONE, Z});
    list.push_back({"着陆灯", "landing_light", NONE, NONE, Z, 1});
    list.push_back({"加力火光", "afterburner", NONE, NONE, Z, 1});
    list.push_back({"左尾焰", "exhaust_left", NONE, NONE, Z, 1});
    list.push_back({"右尾焰", "exhaust_right", NONE, NONE, Z, 1});
}

}  // namespace

const std::vector<Control>& controls() {
    static const std::vector<Control> LIST = [] {
        std::vector<Control> list;
        addDoors(list);
        addSurfaces(list);
        addLegsAndHook(list);
        addOthers(list);
        return list;
    }();
    return LIST;
}

dvec3 standingRotation(const std::string& node) {
    for (const Control& control : controls()) {
        if (control.node == node) return node == "weigou001" ? control.close : control.open;
    }
    return {};
}

}  // namespace jet
