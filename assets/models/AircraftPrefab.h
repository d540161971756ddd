// Shared parts of the aircraft prefabs.
#pragma once

#include <string>
#include <vector>

#include "text/SceneText.h"

struct Part;

/// The burnt wreck: the outermost parts named in `torn_off` are left out, all others become one charred mesh.
std::vector<Part> wreckOf(const std::vector<Part>& intact, const std::vector<std::string>& torn_off);
/// A node for one appearance: a node with a reference to a model file beside the prefab.
Json lookNode(const std::string& name, const std::string& model, bool enabled);
Json particleNode(const std::string& name, const dvec3& position, const Json& settings);
/// "fire" with "fire_spe", its smoke and its glow, disabled; flames from an area of `size` metres.
Json fireNode(const dvec3& position, const dvec3& size);
/// A navigation light.
Json lampNode(const std::string& name, const dvec3& position, const dvec3& color, double intensity = 25.0);
/// A white spot light ahead, pitched down by `down` degrees.
Json spotNode(const std::string& name, const dvec3& position, double down, double intensity, double range);
/// "cam_first_player" at the pilot's eye, pointing ahead.
Json pilotCamera(const dvec3& eye);
Json bodyShape(const std::string& name, const std::string& type, const dvec3& size, const dvec3& position);
/// Wheel centres for the physics and ground contacts for the feedback: front, left, right. They are not children of the
/// legs: retracting a leg must not move the points at which the host gets heights.
void addWheelPlaces(Json& children, const std::vector<dvec3>& middles, const std::vector<dvec3>& contacts);
