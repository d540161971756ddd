// Reads the types of targets: codes from the configuration, names from the display texts.
#include "TargetTypes.h"

#include "Texts.h"
#include "src/logic/AppData.h"

std::vector<TargetType> readTargetTypes(const Texts& texts) {
    std::vector<TargetType> types;
    for (const int code : AppData::get().getTargetTypes()) {
        types.push_back({code, texts.get("target_type." + std::to_string(code))});
    }
    return types;
}
