// What the prefabs of the aircraft have in common.
#pragma once

#include <string>
#include <vector>

#include "text/SceneText.h"

struct Part;

/// The burnt-out shell: of the outermost parts those named are torn off and left out, the rest is one charred mesh.
std::vector<Part> wreckOf(const std::vector<Part>& intact, const std::vector<std::string>& torn_off);
/// The look of a node: an empty one that names a model file beside the prefab.
Json lookNode(const std::string& name, const std::string& model, bool enabled);
Json particleNode(const std::string& name, const dvec3& position, const Json& settings);
/// "fire" with "fire_spe", its smoke and its glow, switched off; flames from an area of `size` metres.
Json fireNode(const dvec3& position, const dvec3& size);
/// A navigation light.
Json lampNode(const std::string& name, const dvec3& position, const dvec3& color, double intensity = 25.0);
/// A white spot ahead, turned down by `down` degrees.
Json spotNode(const std::string& name, const dvec3& position, double down, double intensity, double range);
/// "cam_first_player" at the pilot's eye, looking ahead.
Json pilotCamera(const dvec3& eye);
Json bodyShape(const std::string& name, const std::string& type, const dvec3& size, const dvec3& position);
/// Wheel middles for the physics and ground contacts for the feedback, front, left, right. They do not hang under the
/// legs: retracting those must not move the places that the host gets heights for.
void addWheelPlaces(Json& children, const std::vector<dvec3>& middles, const std::vector<dvec3>& contacts);
