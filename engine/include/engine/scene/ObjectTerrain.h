// The ground.
#pragma once

#include "engine/Api.h"
#include "engine/scene/Object.h"

class ElevationRaster;

/// The key of a terrain tile: its level in the tile tree (0 the whole raster) and its place in that level.
struct TileKey {
    int level = 0;
    int x = 0;
    int y = 0;
};

/// A height field over an elevation raster (any that GDAL reads). Between posts the ground is two flat triangles a
/// cell, split from the cell's south-west to its north-east post; picture, queries and colliders use the same ones. The
/// node's own transform plays no part. Heights are above the ellipsoid.
class ENGINE_API ObjectTerrain final : public Object {
public:
    /// Opens the raster; `isLoaded` tells whether that went well.
    ObjectTerrain(const jString& elevation, const jString& imagery);
    ~ObjectTerrain() override;

    int getType() const override { return TERRAIN; }
    bool isLoaded() const { return m_raster != nullptr; }
    const ElevationRaster& getRaster() const { return *m_raster; }  ///< REQUIRES isLoaded()
    const jString& getImagery() const { return m_imagery; }

    /// Height in metres at a place in degrees. False outside the raster and beside a post without data; `altitude` is
    /// then left alone. `key` (may be null) is the tile wanted; this terrain always answers from its finest posts.
    bool getAltitudeByLonLat(double lon, double lat, double& altitude, const TileKey* key = nullptr) const;

    int getNumSurfaces() const override { return isLoaded() ? 1 : 0; }
    bool getIntersection(const dvec3& from, const dvec3& to, int surface, dvec3& hit) const override;
    BoundBox getBoundBox() const override;
    /// "wetness", "snow", "autumn": 0..1, kept for the picture.
    bool setParameter(const jString& parameter, float value) override;
    float getWetness() const { return m_wetness; }
    float getSnow() const { return m_snow; }
    float getAutumn() const { return m_autumn; }

private:
    std::unique_ptr<ElevationRaster> m_raster;
    jString m_imagery;
    float m_wetness = 0.0f;
    float m_snow = 0.0f;
    float m_autumn = 0.0f;
};
