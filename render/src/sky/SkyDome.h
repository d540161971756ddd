// The dome of the sky with clouds.
#pragma once

#include <osg/Geode>
#include <osg/Texture2D>

#include "sky/SkyModel.h"

class ShaderLibrary;
struct Environment;

/// Child of the sky's group, whose state has the clouds' texture and uniforms: the same clouds cover sun, moon and
/// stars.
class SkyDome {
public:
    SkyDome(osg::Group& group, ShaderLibrary& shaders);
    /// Writes a new sky into the table.
    void setPicture(const SkyPicture& picture);
    /// Updates sky and clouds for the frame; `heavens` is the current one.
    void update(const FrameView& view, const SkyLight& light, const Environment& environment, const Heavens& heavens,
                const SkyPicture& picture);
    osg::Texture2D* getRadiance() const { return m_radiance; }

private:
    void updateClouds(const FrameView& view, const SkyLight& light, const Environment& environment,
                      const SkyPicture& picture);

    osg::ref_ptr<osg::Texture2D> m_radiance;
    osg::ref_ptr<osg::Image> m_table;
    osg::ref_ptr<osg::Uniform> m_sun, m_glow_color;
    osg::ref_ptr<osg::Uniform> m_cloud_sheet, m_cloud_place, m_cloud_air, m_cloud_edge, m_cloud_slope, m_cloud_to_light,
        m_cloud_light, m_cloud_ambient;
};
