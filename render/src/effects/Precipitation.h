// Rain, hail and snow round the eye.
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

/// Where the drops of one kind are now and how they move, seen from the eye. East, north, up.
class FallMotion {
public:
    /// The box that the drops repeat in is `box` metres wide.
    explicit FallMotion(double box) : m_box(box) {}
    /// One frame of dt seconds, the eye at a geocentric place in its local frame, the drops falling with a velocity
    /// over the ground (m/s).
    void update(double dt, const dmat4& local, const dvec3& velocity);
    /// What the drops have moved against the eye, each component in [0, box).
    const dvec3& getOffset() const { return m_offset; }
    /// Velocity of the drops against the eye, m/s; the eye's own share is smoothed over a tenth of a second.
    const dvec3& getVelocity() const { return m_velocity; }

private:
    double m_box;
    bool m_has_place = false;
    dvec3 m_place;  ///< of the eye, geocentric
    dvec3 m_eye_velocity;
    dvec3 m_velocity;
    dvec3 m_offset;
};

/// Draws what the world's nodes "rain", "hail" and "snow" stand for while they are active: their spawn rate over the
/// authored one is the density, their velocity the fall, size and colour the look.
class Precipitation {
public:
    Precipitation(osg::Group& parent, ShaderLibrary& shaders);
    void update(const FrameView& view, const World& world);

private:
    struct Kind {
        jString node;  ///< its name
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
