// Parts of effects as structured text.
#include "effects/ParticleNodes.h"

Json particleSystem(const std::string& name, const dvec3& position, Json settings, const std::string& picture) {
    Json node = sceneNode("particles", name, position);
    if (!picture.empty()) settings["texture"] = picture;
    node["particles"] = std::move(settings);
    return node;
}

Json glow(const dvec3& position, const dvec3& color, double intensity, double range) {
    Json node = sceneNode("light", "glow", position);
    node["light"] = {{"color", triple(color)}, {"intensity", intensity}, {"range", range}};
    return node;
}

void writeEffect(const std::string& path, const std::string& comment, Json top, const Json& children) {
    top["children"] = children;
    writeText(path, comment, {{"node", top}});
}
