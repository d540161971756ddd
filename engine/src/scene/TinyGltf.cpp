// The implementation of the glTF library, private to the engine: a plug-in may contain another version.
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#define TINYGLTF_IMPLEMENTATION
#define TINYGLTF_NO_INCLUDE_JSON
#include <tiny_gltf.h>
