// Rain, hail and snow around the eye.
#pragma once

#include <osg/MatrixTransform>

#include <array>
#include <vector>

#include "base/FrameView.h"
#include "effects/SpriteStates.h"
#include "engine/text/Containers.h"

class ObjectParticles;
class ShaderLibrary;
class World;

/// Position and velocity of the drops of one kind relative to the eye. East, north, up.
class FallMotion {
public:
    /// `box`: side of the box that the drops repeat in, metres.
    explicit FallMotion(double box) : m_box(box) {}
    /// Advances by one frame of dt seconds. `local`: east, north, up and geocentric position of the eye; `velocity`: of
    /// the drops relative to the ground, m/s.
    void update(double dt, const dmat4& local, const dvec3& velocity);
    /// Displacement of the drops relative to the eye, metres, each component in [0, box).
    const dvec3& getOffset() const { return m_offset; }
    /// Velocity of the drops relative to the eye, m/s; the eye's contribution is smoothed over a tenth of a second.
    const dvec3& getVelocity() const { return m_velocity; }

private:
    double m_box;
    bool m_has_place = false;
    dvec3 m_place;  ///< of the eye, geocentric
    dvec3 m_eye_velocity;
    dvec3 m_velocity;
    dvec3 m_offset;
};

/// Draws the precipitation that the world's nodes "rain", "hail" and "snow" describe while they are active: spawn rate
/// relative to the authored rate gives the density, velocity the fall; size and colour give the look.
class Precipitation {
public:
    Precipitation(osg::Group& parent, ShaderLibrary& shaders);
    void update(const FrameView& view, const World& world);

private:
    struct Kind {
        jString node;  ///< the node's name
        FallMotion motion;
        osg::ref_ptr<osg::Geometry> geometry;
        osg::ref_ptr<osg::DrawArrays> quads;
        osg::ref_ptr<osg::Uniform> offset, centre, streak, look, color;
    };

    Kind makeKind(int index, ShaderLibrary& shaders, osg::Vec4Array* seeds);
    void setUniforms(Kind& kind, int index, const ObjectParticles& node, const FrameView& view);

    osg::ref_ptr<osg::Group> m_group;
    std::vector<Kind> m_kinds;
};
