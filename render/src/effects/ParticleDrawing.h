// Draws the world's particle systems.
#pragma once

#include <osg/MatrixTransform>

#include <map>
#include <string>
#include <tuple>
#include <unordered_map>
#include <utility>
#include <vector>

#include "base/FrameView.h"
#include "effects/SpriteStates.h"

class ObjectParticles;
class ShaderLibrary;

/// Particles face the eye. Exceptions: particles below a decal, which the sea draws, and those of a system without
/// vertical motion (foam), which are horizontal. Additive particles emit light, the others are lit. A system without
/// living particles is not drawn; its first particle creates a node, which is kept until the system is removed. Where
/// thick smoke would cover the picture too many times over, some of its largest particles are drawn in place of all of
/// them.
class ParticleDrawing {
public:
    ParticleDrawing(osg::Group& parent, ShaderLibrary& shaders);
    /// The system is read in every update until `remove`.
    void add(const ObjectParticles& particles);
    void remove(int id);
    void update(const FrameView& view);

private:
    /// Texture, additive, flat.
    using LookKey = std::tuple<std::string, bool, bool>;
    struct Look {
        osg::ref_ptr<osg::Group> group;
        int users = 0;
    };
    struct System {
        const ObjectParticles* particles = nullptr;
        LookKey look;
        osg::ref_ptr<osg::MatrixTransform> place;  ///< null until the first particle lived
        osg::ref_ptr<SpriteGeometry> geometry;
        osg::ref_ptr<osg::Vec4Array> places;  ///< four vertices per particle: position relative to the origin, size
        /// share of life passed, rotation (radians), weight, number of particles it represents
        osg::ref_ptr<osg::Vec4Array> ages;
        osg::ref_ptr<osg::DrawArrays> quads;
    };

    osg::Group& acquireLook(const LookKey& key);
    void releaseLook(const LookKey& key);
    void makeNode(System& system);
    void limitFill(const FrameView& view);
    void write(System& system, const FrameView& view);
    void sortByDistance(const ObjectParticles& particles, const dvec3& eye);

    ShaderLibrary& m_shaders;
    osg::ref_ptr<osg::Group> m_group;
    double m_widest = 0.0;  ///< area, in picture areas, from which on particles represent others
    std::map<LookKey, Look> m_looks;
    std::unordered_map<int, System> m_systems;  ///< by node id
    /// distance and index of the particles of the system being written
    std::vector<std::pair<float, std::uint32_t>> m_order;
};
