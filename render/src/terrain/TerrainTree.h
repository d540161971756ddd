// Selection of the tiles to draw and of their resolution.
#pragma once

#include <osg/MatrixTransform>

#include <memory>
#include <vector>

#include "base/FrameView.h"
#include "terrain/GroundTrees.h"
#include "terrain/TileMesh.h"

/// Draws a list of tiles in the order of the list.
class TileGroup final : public osg::Group {
public:
    void traverse(osg::NodeVisitor& visitor) override;
    std::vector<osg::MatrixTransform*> drawn;
};

/// Drawing states of tiles by distance.
struct TileStates {
    osg::ref_ptr<osg::StateSet> close;  ///< right in front of the eye, with grains and blades
    osg::ref_ptr<osg::StateSet> near;   ///< with clumps and stones
    osg::ref_ptr<osg::StateSet> far;    ///< imagery only
    osg::ref_ptr<osg::StateSet> trees;
};

/// A quadtree of tiles over the raster: a tile is replaced by its four children of half its stride when the detail that
/// it omits would be visible. A few tiles are made per frame; until all four children exist the tile itself is drawn.
/// The number of a tile's triangles depends on its distance; around the eye they are the raster's own. Tiles unused for
/// a while are dropped.
class TerrainTree {
public:
    /// `imagery` may be null; `place` is its extent.
    TerrainTree(const ElevationRaster& raster, const osg::Image* imagery, const ImageryPlace& place,
                const TileStates& states);
    ~TerrainTree();

    /// Selects the tiles to draw. In the first frame and after a jump of the eye all missing tiles are made at once.
    void update(const FrameView& view);
    TileGroup* getGroup() const { return m_group; }
    TileGroup* getTrees() const { return m_woods; }
    TileBuilder& getBuilder() { return m_builder; }

    int getNumTiles() const { return m_num_tiles; }  ///< in memory
    int getNumTriangles() const;                     ///< drawn

private:
    struct Tile;
    struct Sight {
        dvec3 eye;
        /// planes through the eye, normals inward, of length 1; the last normal is the view direction
        dvec3 sides[5];
        double threshold = 0.0;  ///< smallest visible error as an angle, radians
        double extinction, eye_height;
        bool has_details;  ///< whether to draw trees and detail beyond the imagery
    };

    void look(const FrameView& view);
    void visit(Tile& tile, bool is_seen);
    void draw(Tile& tile, double distance);
    void drawTrees(Tile& tile);
    bool isInSight(const Tile& tile) const;
    double distanceTo(const Tile& tile, dvec3& eye) const;
    bool isLostInAir(const Tile& tile, double distance) const;
    double errorAllowed(double distance) const { return distance * m_sight.threshold; }
    bool needsSplit(const Tile& tile, double distance) const;
    bool split(Tile& tile, bool is_seen);
    bool readPosts(const TileArea& area);
    std::unique_ptr<Tile> makeTile(const TileArea& area);
    void shape(Tile& tile, int fineness, double distance);
    void prune(Tile& tile);

    const ElevationRaster& m_raster;
    TileBuilder m_builder;
    const TileStates m_states;
    GroundTrees m_trees;
    osg::ref_ptr<TileGroup> m_group, m_woods;
    std::unique_ptr<Tile> m_root;
    Sight m_sight;
    unsigned m_frame = 0;
    int m_seen_budget = 0, m_unseen_budget = 0, m_shape_budget = 0, m_read_budget = 0;
    int m_num_tiles = 0;
};
