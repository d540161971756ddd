// The glTF library's own code, as part of the engine: a plug-in may bring another version.
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#define TINYGLTF_IMPLEMENTATION
#define TINYGLTF_NO_INCLUDE_JSON
#include <tiny_gltf.h>
