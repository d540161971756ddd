// What makes the demonstration's files. Each writes below the runtime root that it is given and throws
// std::runtime_error when a file cannot be written.
#pragma once

#include <string>

class Island;

/// The carrier jet: model, wreck, prefab and aircraft file.
void writeJet(const std::string& root);
/// The aerobatic aircraft: model, wreck and prefab.
void writeExtra(const std::string& root);
/// The helicopter: model and prefab.
void writeHelicopter(const std::string& root);
/// The carrier with its landing lens: models and prefabs.
void writeCarrier(const std::string& root);
/// What moves on its deck, a deck hand and a flag: models and prefabs.
void writeDeckCrew(const std::string& root);
/// The airfield's buildings, the hill's mast and the target's vehicle: models and prefabs; the decals' pictures.
void writeAirfield(const std::string& root);
/// The recorded flight that automatic flight plays.
void writeFlightPath(const std::string& root);
/// The world file, which places everything.
void writeWorld(const std::string& root, const Island& island);
