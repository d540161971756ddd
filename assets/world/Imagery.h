// The picture of the demonstration's ground from above.
#pragma once

#include <string>

class Island;

/// Writes the picture of the island and its shallow water (GeoTIFF with JPEG compression). Throws std::runtime_error
/// when it cannot be written.
void writeImagery(const std::string& path, const Island& island);
