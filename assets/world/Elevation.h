// The demonstration's ground: an island with hills, beaches and a level airfield, and the surrounding sea bed.
#pragma once

#include <string>

#include "plan/Noise.h"

/// Metres per degree at the runway's middle.
struct MetresPerDegree {
    double lon, lat;
};
MetresPerDegree metresPerDegree();

/// Heights as a function of the position.
class Island {
public:
    Island();
    /// Height above the ellipsoid in metres, at metres east and north of the runway's middle. Exactly AIRFIELD_HEIGHT
    /// on the level ground.
    double height(double east, double north) const;
    /// The same at a longitude and latitude in degrees.
    double heightAt(double lon, double lat) const;
    /// Position of the highest hill: longitude, latitude in degrees.
    void summit(double& lon, double& lat) const;

private:
    double shoreDistance(double right, double along) const;
    double wildHeight(double east, double north, double right, double along) const;

    Noise m_coast, m_hills, m_detail;
};

/// Writes the height raster (GeoTIFF, single precision). Throws std::runtime_error when it cannot be written.
void writeElevation(const std::string& path, const Island& island);
