// Draws the lamps as points of light that are visible from afar.
#pragma once

#include <osg/MatrixTransform>

#include <array>
#include <cstdint>
#include <map>
#include <unordered_map>
#include <vector>

#include "base/FrameView.h"
#include "effects/Lamp.h"
#include "effects/SpriteStates.h"

class ShaderLibrary;

/// Threshold of visibility of a point of light: illuminance at the eye, lux, for this background luminance (cd/m^2).
double getVisibleIlluminance(double background);

/// Lamps are batched by cells of the world. A change rewrites only its own batch; a frame without changes rewrites
/// nothing.
class LampPoints {
public:
    LampPoints(osg::Group& parent, ShaderLibrary& shaders);
    /// Adds or replaces the lamp of this node; draws nothing for one without intensity or size.
    void set(int id, const Lamp& lamp);
    void remove(int id);
    void update(const FrameView& view);

private:
    using CellKey = std::array<std::int64_t, 3>;
    struct Batch {
        explicit Batch(const dvec3& origin);
        void write(std::size_t at, const Lamp& lamp);
        void refresh();

        dvec3 origin;
        std::vector<int> ids;  ///< node ids of the lamps, in the order of the arrays
        osg::ref_ptr<osg::MatrixTransform> place;
        osg::ref_ptr<SpriteGeometry> geometry;
        osg::ref_ptr<osg::Vec4Array> places;  ///< position relative to the origin, diameter
        osg::ref_ptr<osg::Vec3Array> axes;    ///< world frame
        osg::ref_ptr<osg::Vec4Array> colors;  ///< candela; cosine of the half angle
        osg::ref_ptr<osg::DrawArrays> points;
        bool changed = true;
    };
    struct Slot {
        CellKey cell;
        std::size_t at;
    };

    static CellKey cellOf(const dvec3& position);
    Batch& batchOf(const CellKey& cell);

    osg::ref_ptr<osg::Group> m_group;
    /// 1 / threshold illuminance, focal length in pixels, pixels per 720th of the height
    osg::ref_ptr<osg::Uniform> m_sight;
    std::map<CellKey, Batch> m_batches;
    std::unordered_map<int, Slot> m_slots;  ///< by node id
};
