// The ground.
#pragma once

#include "engine/Api.h"
#include "engine/scene/Object.h"

class ElevationRaster;

/// The key of a terrain tile: its level in the tile tree (0 is the whole raster) and its position in that level.
struct TileKey {
    int level = 0;
    int x = 0;
    int y = 0;
};

/// A height field over an elevation raster (any that GDAL reads). Between posts the ground is two flat triangles per
/// cell, split from the cell's south-west to its north-east post; picture, queries and colliders use the same
/// triangles. The node's own transform has no effect. Heights are above the ellipsoid.
class ENGINE_API ObjectTerrain final : public Object {
public:
    /// Opens the raster; `isLoaded` reports success.
    ObjectTerrain(const jString& elevation, const jString& imagery);
    ~ObjectTerrain() override;

    int getType() const override { return TERRAIN; }
    bool isLoaded() const { return m_raster != nullptr; }
    const ElevationRaster& getRaster() const { return *m_raster; }  ///< REQUIRES isLoaded()
    const jString& getImagery() const { return m_imagery; }

    /// Height in metres at a position in degrees. False outside the raster and next to a post without data; `altitude`
    /// is then unchanged. `key` (may be null) is the requested tile; the result always has the finest resolution.
    bool getAltitudeByLonLat(double lon, double lat, double& altitude, const TileKey* key = nullptr) const;

    int getNumSurfaces() const override { return isLoaded() ? 1 : 0; }
    bool getIntersection(const dvec3& from, const dvec3& to, int surface, dvec3& hit) const override;
    BoundBox getBoundBox() const override;
    /// "wetness", "snow", "autumn": 0..1, used by the picture.
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
