// The sea.
#pragma once

#include "engine/Api.h"
#include "engine/scene/Object.h"
#include "engine/scene/WaveField.h"

/// The sea's surface over the whole globe; its mean level is height 0. Waves are those of one periodic field that lies
/// flat on a map round the node's geodetic place (round longitude 0, latitude 0 when the node has none); they fit
/// together everywhere but on the meridian opposite.
class ENGINE_API ObjectOcean final : public Object {
public:
    ObjectOcean();

    int getType() const override { return OCEAN; }

    /// The surface point above or below a world position, waves included, world frame.
    dvec3 getWorldPoint(const dvec3& world) const;

    /// The waves now, at the engine's time (0 without an engine) and in the wind of now. The first call of a frame
    /// computes them. Owned by the ocean.
    const WaveField& getField() const;
    /// Where a geodetic place (degrees) lies in the field: metres from its origin along the equator's scale,
    /// east = (lon - lon0) a cos(lat0), north = (lat - lat0) a, with angles in radians and a the semi-major axis.
    void getFieldPlace(double lon, double lat, double& east, double& north) const;

    /// The sea state on the Beaufort scale: that of the world's wind while it follows that, else its own.
    int getBeaufort() const;
    /// Its own sea state, 0..12; what lies outside is clamped.
    void setBeaufort(int beaufort);
    /// Whether the sea follows the world's wind instead of its own sea state. Its own waves run with that wind, too, or
    /// east when there is none.
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
    mutable dvec3 m_place;                   ///< world position that the origin was read at
    mutable dvec3 m_origin;                  ///< geodetic
    mutable double m_east_per_degree = 0.0;  ///< metres
};
