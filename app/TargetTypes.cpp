// Reads the types of targets as the program starts.
#include "TargetTypes.h"

#include <cstdlib>

#include "Options.h"
#include "Texts.h"

std::vector<TargetType> readTargetTypes(const Texts& texts) {
    std::vector<TargetType> types;
    Package config;
    mjl::open(CONFIG_PATH, config, true);
    const Package* const paths = config.getPackage("target_type");
    if (!paths) return types;
    for (const Item& path : *paths) {
        const std::string code = path.getName().substr(1);  // the key is "_CODE"
        types.push_back({std::atoi(code.c_str()), texts.get("target_type." + code)});
    }
    return types;
}
