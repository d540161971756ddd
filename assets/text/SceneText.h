// Writes structured text: worlds, prefabs, aircraft files.
#pragma once

#include <initializer_list>
#include <nlohmann/json.hpp>
#include <string>

#include "engine/math/Transform.h"

using Json = nlohmann::ordered_json;

/// Three numbers.
Json triple(const dvec3& v);
/// A node of the scene: `{ "type", "name", "position" }`; type "node" and a zero position are left out.
Json sceneNode(const std::string& type, const std::string& name, const dvec3& position = {});
/// Writes the value below a comment line; each list of plain values is on one line. Creates missing folders. Throws
/// std::runtime_error when the file cannot be written.
void writeText(const std::string& path, const std::string& comment, const Json& value);
