// The sea.
#pragma once

#include "engine/scene/Object.h"

/// The sea's surface over the whole globe; its mean level is height 0.
class ObjectOcean final : public Object {
public:
    int getType() const override { return OCEAN; }

    /// The surface point above or below a world position, world frame.
    dvec3 getWorldPoint(const dvec3& world) const;
    int getBeaufort() const { return m_beaufort; }  ///< sea state on the Beaufort scale
    void setBeaufort(int beaufort) { m_beaufort = beaufort; }
    /// Whether the sea follows the world's wind instead of its own sea state.
    void setUseGlobalWind(bool use) { m_use_global_wind = use; }
    bool isUseGlobalWind() const { return m_use_global_wind; }
    /// "beaufort".
    bool setParameter(const jString& parameter, float value) override;

private:
    int m_beaufort = 3;
    bool m_use_global_wind = true;
};
