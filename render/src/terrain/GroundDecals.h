// Images laid on the ground.
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

/// Follows the world's decals: each is cut out of the ground's own triangles, so that it lies in them. The one with the
/// higher node id lies on top. Those without holes are drawn before the ground, which then need not be drawn there.
/// Ground under the sea takes none.
class GroundDecals {
public:
    explicit GroundDecals(ShaderLibrary& shaders);
    /// The ground to lie on; null for none. It outlives its being set here.
    void setGround(const ElevationRaster* raster, const TileBuilder* builder);
    void update(const DecalOrtho& decal);
    void remove(int id);

    osg::Group* getGroup() const { return m_group; }

private:
    /// A corner of what is cut: `local` in east, north, up round the decal, `image` in the decal's own frame, metres.
    struct Corner {
        dvec3 local, image;
        vec3 normal;  ///< of the ground, in the axes of `local`
        double height;
    };
    struct Decal {
        dmat4 world;  ///< of its node
        double width = 0.0, height = 0.0, depth = 0.0;
        std::string texture;
        bool is_active = false;
        osg::ref_ptr<osg::MatrixTransform> place;
        osg::ref_ptr<osg::Geometry> geometry;  ///< null while there is no ground under it
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
    dmat4 m_frame;     ///< of its `local` places
    dmat4 m_to_image;  ///< world to its own frame
    std::vector<Corner> m_polygon, m_clipped, m_triangles;
};
