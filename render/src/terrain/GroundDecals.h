// Images on the ground.
#pragma once

#include <osg/MatrixTransform>

#include <array>
#include <map>
#include <string>
#include <vector>

#include "engine/math/Transform.h"
#include "terrain/TileMesh.h"

class DecalOrtho;
class ShaderLibrary;

/// Follows the world's decals: each is cut out of the ground's own triangles and therefore coplanar with them. A decal
/// with a higher node id is drawn over one with a lower id. Opaque decals are drawn before the ground, which then need
/// not be drawn there. Ground below the sea has no decals.
class GroundDecals {
public:
    explicit GroundDecals(ShaderLibrary& shaders);
    /// The ground for the decals; null for none. It must exist until it is replaced here.
    void setGround(const ElevationRaster* raster, const TileBuilder* builder);
    void update(const DecalOrtho& decal);
    void remove(int id);

    osg::Group* getGroup() const { return m_group; }

private:
    /// A corner of a cut polygon: `local` in east, north, up around the decal, `image` in the decal's own frame,
    /// metres.
    struct Corner {
        dvec3 local, image;
        vec3 normal;  ///< normal of the ground, in the axes of `local`
        double height;
    };
    struct Decal {
        dmat4 world;  ///< pose of its node
        double width = 0.0, height = 0.0, depth = 0.0;
        std::string texture;
        bool is_active = false;
        osg::ref_ptr<osg::MatrixTransform> place;
        osg::ref_ptr<osg::Geometry> geometry;  ///< null without ground below the decal
        osg::ref_ptr<osg::Uniform> rank = new osg::Uniform("u_rank", 0.0f);
        osg::ref_ptr<osg::Uniform> size = new osg::Uniform("u_size", osg::Vec2f());
    };

    void cut(Decal& decal);
    void cutBlock(const Decal& decal, int column, int row, int size);
    void cutTriangle(const Decal& decal, const Corner& a, const Corner& b, const Corner& c);
    void clip(const Decal& decal);
    void write(Decal& decal) const;
    static void load(Decal& decal);
    void rank();
    bool isLevel(int column, int row, int size) const;
    Corner cornerAt(int column, int row) const;

    osg::ref_ptr<osg::Group> m_group;
    const ElevationRaster* m_raster = nullptr;
    const TileBuilder* m_builder = nullptr;
    std::map<int, Decal> m_decals;  ///< by node id
    // Of the decal that is being cut.
    dmat4 m_frame;     ///< frame of its `local` positions
    dmat4 m_to_image;  ///< from the world to its own frame
    std::vector<Corner> m_polygon, m_clipped, m_triangles;
};
