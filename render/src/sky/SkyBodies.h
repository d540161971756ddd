// Sun, moon and stars.
#pragma once

#include <osg/Geode>

#include "sky/SkyModel.h"

class ShaderLibrary;

class SkyBodies {
public:
    /// Adds the bodies to the sky's group; see SkyDome for its state.
    SkyBodies(osg::Group& group, ShaderLibrary& shaders);
    void update(const FrameView& view, const SkyLight& light, const Heavens& heavens, const SkyPicture& picture);

private:
    /// A square with a disc in its centre.
    struct Disc {
        osg::ref_ptr<osg::Geode> geode;
        osg::ref_ptr<osg::Uniform> direction, right, up, radiance, halo, to_sun;
    };
    Disc makeDisc(osg::Group& group, osg::Program* program);
    osg::ref_ptr<osg::Geode> makeStarField(ShaderLibrary& shaders);
    osg::ref_ptr<osg::Geode> makeGalaxy(ShaderLibrary& shaders);
    static void place(const Disc& disc, const dvec3& direction, const Heavens& heavens);

    Disc m_sun, m_moon;
    osg::ref_ptr<osg::Group> m_stars;  ///< stars and the Milky Way
    osg::ref_ptr<osg::Uniform> m_to_local, m_depth, m_gain, m_galaxy_light;
};
