// The demonstration's ground as it looks from the air.
#pragma once

#include <string>

class Island;

/// Writes the picture of the island and its shallows (GeoTIFF, JPEG within). Throws std::runtime_error when it cannot
/// be written.
void writeImagery(const std::string& path, const Island& island);
