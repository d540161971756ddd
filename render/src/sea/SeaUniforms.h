// Shader values of the sea for a frame.
#pragma once

#include <osg/StateSet>

#include <array>
#include <string>

#include "base/FrameView.h"
#include "sea/SeaMesh.h"

class ObjectOcean;
class SeaSlopes;

class SeaUniforms {
public:
    /// Adds the common uniforms to the sea's state.
    explicit SeaUniforms(osg::StateSet& state);
    /// Adds the uniforms of a band of patches to its state.
    void addBand(int band, osg::StateSet& state);
    void update(const FrameView& view, const SeaMeshView& eye, const ObjectOcean& ocean, const SeaSlopes& slopes);

private:
    /// A second use of a cascade, rotated and scaled, for waves that the two cascades lack: ripples near the eye, and
    /// far away swell with another period.
    struct Layer {
        double turn;     ///< degrees
        double shrink;   ///< scale divisor
        float strength;  ///< factor on its slopes
    };
    struct LayerUniforms {
        LayerUniforms(osg::StateSet& state, const std::string& name, const Layer& values);
        void update(double length, float scale, const SeaMeshView& eye);

        Layer layer;
        osg::ref_ptr<osg::Uniform> map, place, turn;
    };

    void updateLevels(const SeaMeshView& eye, double pixel, double large, double small);
    void updateFoam(const SeaMeshView& eye, const ObjectOcean& ocean);

    osg::ref_ptr<osg::Uniform> m_per_metre, m_place, m_slope_scale, m_pixel, m_foam_map, m_foam_place, m_wake_place,
        m_gusts_place, m_lap, m_mean_square;
    std::array<osg::ref_ptr<osg::Uniform>, SeaMesh::NUM_BANDS> m_levels;
    LayerUniforms m_ripples, m_swell;
};
