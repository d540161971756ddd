// Assembles the helicopter.
#include "models/HelicopterPrefab.h"
#include "models/HelicopterShape.h"
#include "plan/Builders.h"

void writeHelicopter(const std::string& root) {
    using namespace heli;
    const std::string folder = root + "/data/assets/Targets/MODELS/HELICOPTER/";
    std::vector<Part> parts{fuselage(), mainRotor(), tailRotor()};
    for (std::vector<Part> more : {doors(), fittings()}) {
        for (Part& part : more) parts.push_back(std::move(part));
    }
    writePrefab(folder);
    writeModel(folder + "HELICOPTER.glb", parts);
}
