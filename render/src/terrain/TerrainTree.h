// Which pieces of the ground are drawn, and how finely.
#pragma once

#include <osg/MatrixTransform>

#include <memory>
#include <vector>

#include "base/FrameView.h"
#include "terrain/GroundTrees.h"
#include "terrain/TileMesh.h"

/// Draws a list of tiles, in its order.
class TileGroup final : public osg::Group {
public:
    void traverse(osg::NodeVisitor& visitor) override;
    std::vector<osg::MatrixTransform*> drawn;
};

/// How tiles are drawn.
struct TileStates {
    osg::ref_ptr<osg::StateSet> close;  ///< before the eye, with grains and blades
    osg::ref_ptr<osg::StateSet> near;   ///< with clumps and stones
    osg::ref_ptr<osg::StateSet> far;    ///< with no more than the imagery
    osg::ref_ptr<osg::StateSet> trees;
};

/// A tree of tiles over the raster: each is replaced by the four of half its stride when what it leaves out would show.
/// A few tiles are made in a frame; until all four are there the tile itself is drawn. A tile's triangles are as many
/// as its distance wants; round the eye they are the raster's own. Tiles that nobody needed for a while are dropped.
class TerrainTree {
public:
    /// `imagery` may be null; `place` is what it covers.
    TerrainTree(const ElevationRaster& raster, const osg::Image* imagery, const ImageryPlace& place,
                const TileStates& states);
    ~TerrainTree();

    /// Chooses what is drawn. All that is missing is made at once in the first frame and after a jump of the eye.
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
        dvec3 sides[5];          ///< planes through the eye, inward, of length 1; the last looks along the view
        double threshold = 0.0;  ///< angle of an error that shows, radians
        double extinction, eye_height;
        bool has_details;  ///< trees, and what the imagery does not show
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
