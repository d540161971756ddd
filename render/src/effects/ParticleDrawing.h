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

/// Particles face the eye, but for those below a decal, which the sea shows; those of a system that gives them no way
/// to rise or sink (foam) lie flat. Additive ones glow by themselves, the others are lit. What has no living particle
/// is not drawn; the first of them make a node, which stays until the system goes. Where thick smoke would cover the
/// picture too many times over, some of its largest particles stand for all of them.
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
        osg::ref_ptr<osg::MatrixTransform> place;  ///< null before the first particle lived
        osg::ref_ptr<SpriteGeometry> geometry;
        osg::ref_ptr<osg::Vec4Array> places;  ///< four vertices a particle: position from the origin, size
        osg::ref_ptr<osg::Vec4Array> ages;    ///< share of life passed, turn (radians), weight, how many it stands for
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
    double m_widest = 0.0;  ///< area, in pictures, from which on particles stand for others
    std::map<LookKey, Look> m_looks;
    std::unordered_map<int, System> m_systems;             ///< by node id
    std::vector<std::pair<float, std::uint32_t>> m_order;  ///< of the system being written: distance, index
};
