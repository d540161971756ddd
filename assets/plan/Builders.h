// Builders of the demonstration's files. Each writes into the given runtime root and throws std::runtime_error when a
// file cannot be written.
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
/// The animated objects on its deck, a deck hand and a flag: models and prefabs.
void writeDeckCrew(const std::string& root);
/// The airfield's buildings, the hill's mast and the target's vehicle: models and prefabs; the decals' pictures.
void writeAirfield(const std::string& root);
/// The recorded flight for automatic flight.
void writeFlightPath(const std::string& root);
/// The world file, with the positions of all objects.
void writeWorld(const std::string& root, const Island& island);
