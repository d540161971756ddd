// The sea.
#pragma once

#include "engine/Api.h"
#include "engine/scene/Object.h"
#include "engine/scene/WaveField.h"

/// The sea's surface over the whole globe; its mean level is height 0. The waves are one periodic field on a flat map
/// around the node's geodetic position (longitude 0, latitude 0 when the node has none); the map is continuous except
/// at the opposite meridian.
class ENGINE_API ObjectOcean final : public Object {
public:
    ObjectOcean();

    int getType() const override { return OCEAN; }

    /// The surface point above or below a world position, including waves, world frame.
    dvec3 getWorldPoint(const dvec3& world) const;

    /// The current waves, for the engine's time (0 without an engine) and the current wind. The first call of a frame
    /// computes them. Owned by the ocean.
    const WaveField& getField() const;
    /// Field coordinates of a geodetic position (degrees): metres from the field's origin, east = (lon - lon0) a
    /// cos(lat0), north = (lat - lat0) a, with angles in radians and a the semi-major axis.
    void getFieldPlace(double lon, double lat, double& east, double& north) const;

    /// The current sea state on the Beaufort scale: from the world's wind when that is followed, otherwise its own.
    int getBeaufort() const;
    /// Its own sea state, clamped to 0..12.
    void setBeaufort(int beaufort);
    /// Whether the sea state follows the world's wind. Otherwise the sea uses its own sea state with the direction of
    /// the world's wind, or east when there is none.
    void setUseGlobalWind(bool use) { m_use_global_wind = use; }
    bool isUseGlobalWind() const { return m_use_global_wind; }
    /// "beaufort".
    bool setParameter(const jString& parameter, float value) override;

private:
    bool isGlobal() const { return m_use_global_wind && getWorld(); }
    void readOrigin() const;

    int m_beaufort = 3;
    bool m_use_global_wind = true;
    mutable WaveField m_field;
    mutable dvec3 m_place;                   ///< world position at which m_origin was computed
    mutable dvec3 m_origin;                  ///< geodetic
    mutable double m_east_per_degree = 0.0;  ///< metres
};
