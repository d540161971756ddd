// Refines, prunes and traverses the tree of tiles, once per frame before drawing.
#include "terrain/TerrainTree.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "base/Convert.h"
#include "engine/globe/EllipsoidModel.h"

namespace {

constexpr int MAX_STRIDE = 64;        // maximum stride, in posts, of a tile with geometry
constexpr double FINE_REACH = 200.0;  // metres around the eye where the ground is drawn from all posts
// metres from the eye to which the detail of the close and near states is visible
constexpr double GRAIN_REACH = 250.0;
constexpr double DETAIL_REACH = 900.0;
constexpr double TREE_REACH = 600.0;  // metres; same as in the trees' shader
constexpr double JUMP = 400.0;        // metres between two frames; after a larger move all tiles are made at once
constexpr int AT_ONCE = 1 << 20;
constexpr unsigned KEEP = 900;   // frames for which an unused tile is kept
constexpr int KEPT_TILES = 256;  // unused tiles are dropped only above this number

/// Maximum error of the ground on screen, pixels.
double thresholdOf(Quality quality) {
    return quality == Quality::LOW ? 4.0 : quality == Quality::MEDIUM ? 2.5 : 1.0;
}

/// Tolerance of a tile's triangles by fineness, metres: 0 is the raster's own triangulation, each further step adds a
/// factor of the square root of two.
double toleranceOf(int fineness) {
    return fineness == 0 ? 0.0 : std::exp2(0.5 * fineness - 2.0);
}
int finenessFor(double tolerance) {
    return std::clamp(static_cast<int>(std::floor(2.0 * std::log2(tolerance) + 4.0)), 1, 20);
}

}  // namespace

struct TerrainTree::Tile {
    TileArea area;
    dmat4 frame;
    dvec3 low, high;  ///< bounding box in `frame`
    dvec3 middle;     ///< centre of the box, geocentric
    double radius = 0.0;
    double error = 0.0;
    bool is_drawable = true;                          ///< false when the tile is too coarse
    bool is_ground = true;                            ///< false when there is nothing to draw
    int fineness = -1;                                ///< fineness of its triangles, -1 without triangles
    unsigned used = 0;                                ///< the last frame that used it
    osg::ref_ptr<osg::MatrixTransform> place, trees;  ///< null until they are used
    std::unique_ptr<Tile> children[4];                ///< south-west, south-east, north-west, north-east; all or none
    bool hasChildren() const { return children[0] != nullptr; }
};

void TileGroup::traverse(osg::NodeVisitor& visitor) {
    for (osg::MatrixTransform* tile : drawn) tile->accept(visitor);
}

TerrainTree::TerrainTree(const ElevationRaster& raster, const osg::Image* imagery, const ImageryPlace& place,
                         const TileStates& states)
    : m_raster(raster),
      m_builder(raster, place),
      m_states(states),
      m_trees(raster, imagery, place),
      m_group(new TileGroup),
      m_woods(new TileGroup) {
    m_group->setCullingActive(false);
    m_group->drawn.reserve(1024);
    m_woods->setCullingActive(false);
    m_woods->setStateSet(m_states.trees);
    m_woods->drawn.reserve(256);
    int stride = 1;
    while (stride * TILE_CELLS < std::max(raster.getNumColumns(), raster.getNumRows()) - 1) stride *= 2;
    m_root = makeTile({0, 0, stride});
}

TerrainTree::~TerrainTree() = default;

int TerrainTree::getNumTriangles() const {
    unsigned count = 0;
    for (const osg::MatrixTransform* tile : m_group->drawn) {
        count += tile->getChild(0)->asGeometry()->getPrimitiveSet(0)->getNumIndices() / 3;
    }
    return static_cast<int>(count);
}

std::unique_ptr<TerrainTree::Tile> TerrainTree::makeTile(const TileArea& area) {
    auto tile = std::make_unique<Tile>();
    tile->area = area;
    tile->used = m_frame;
    tile->is_drawable = area.stride <= MAX_STRIDE;
    const TileMeasures measures = tile->is_drawable ? m_builder.measure(area) : m_builder.place(area);
    tile->error = measures.error;
    // The highest posts may be among those omitted.
    tile->is_ground = !measures.heights.isEmpty() && measures.heights.max + 2.0 * measures.error >= MIN_SEEN_HEIGHT;
    tile->frame = measures.frame;
    const double sag = (measures.half_east * measures.half_east + measures.half_north * measures.half_north) /
                       (2.0 * EllipsoidModel::SEMI_MINOR);
    tile->low = {-measures.half_east, -measures.half_north, measures.heights.min - measures.error - sag};
    tile->high = {measures.half_east, measures.half_north, measures.heights.max + measures.error};
    tile->middle = measures.frame * ((tile->low + tile->high) * 0.5);
    tile->radius = 0.5 * length(tile->high - tile->low);
    ++m_num_tiles;
    return tile;
}

void TerrainTree::shape(Tile& tile, int fineness, double distance) {
    // The skirt extends below any coarser neighbour that may be drawn.
    const double skirt = 1.0 + 4.0 * errorAllowed(distance);
    const osg::ref_ptr<osg::Geometry> geometry = m_builder.build(tile.area, tile.frame, toleranceOf(fineness), skirt);
    tile.fineness = fineness;
    if (!tile.place) {
        tile.place = new osg::MatrixTransform(toOsg(tile.frame));
        tile.place->setCullingActive(false);
    }
    tile.place->removeChildren(0, tile.place->getNumChildren());
    if (geometry) tile.place->addChild(geometry);
}

void TerrainTree::look(const FrameView& view) {
    const dvec3 moved = view.camera.t - m_sight.eye;
    const bool is_new = m_frame == 0 || length(moved) > JUMP;
    m_seen_budget = is_new ? AT_ONCE : 3;
    m_unseen_budget = 1;
    m_shape_budget = is_new ? AT_ONCE : 4;
    m_read_budget = is_new ? AT_ONCE : 2;
    m_sight.eye = view.camera.t;
    m_sight.extinction = view.extinction;
    m_sight.eye_height = view.geodetic.z;
    m_sight.has_details = view.quality != Quality::LOW;
    const osg::Matrixd& p = view.projection;
    m_sight.threshold = thresholdOf(view.quality) * 2.0 / (view.height * p(1, 1));
    // A point is right of the left edge when clip x + w > 0, and so on; w is the depth along -Z.
    const auto plane = [&](double x, double y, double z) { return normalize(rotate(view.camera, dvec3(x, y, z))); };
    m_sight.sides[0] = plane(p(0, 0), 0.0, p(2, 0) - 1.0);
    m_sight.sides[1] = plane(-p(0, 0), 0.0, -p(2, 0) - 1.0);
    m_sight.sides[2] = plane(0.0, p(1, 1), p(2, 1) - 1.0);
    m_sight.sides[3] = plane(0.0, -p(1, 1), -p(2, 1) - 1.0);
    m_sight.sides[4] = plane(0.0, 0.0, -1.0);
}

void TerrainTree::update(const FrameView& view) {
    look(view);
    ++m_frame;
    m_group->drawn.clear();
    m_woods->drawn.clear();
    visit(*m_root, true);
    if (m_frame % 64 == 0 && m_num_tiles > KEPT_TILES) prune(*m_root);
}

bool TerrainTree::isInSight(const Tile& tile) const {
    const dvec3 to_tile = tile.middle - m_sight.eye;
    for (const dvec3& side : m_sight.sides) {
        if (dot(side, to_tile) < -tile.radius) return false;
    }
    return true;
}

/// Distance from the eye to the tile's box; also sets `eye` to its position in the tile's frame.
double TerrainTree::distanceTo(const Tile& tile, dvec3& eye) const {
    const dvec3 to_eye = m_sight.eye - tile.frame.t;
    eye = {dot(to_eye, tile.frame.x), dot(to_eye, tile.frame.y), dot(to_eye, tile.frame.z)};
    const auto outside = [](double v, double low, double high) { return std::max({low - v, v - high, 0.0}); };
    return length(dvec3(outside(eye.x, tile.low.x, tile.high.x), outside(eye.y, tile.low.y, tile.high.y),
                        outside(eye.z, tile.low.z, tile.high.z)));
}

/// Whether the transmittance of the air is too low to change a pixel; the same formula as in the shaders.
bool TerrainTree::isLostInAir(const Tile& tile, double distance) const {
    constexpr double DEPTH = 6.0;
    const double top = std::max(m_sight.eye_height, tile.high.z), bottom = std::max(tile.low.z, 0.0);
    const double climb = (std::max(top - bottom, 1.0)) / HAZE_HEIGHT;
    const double least = std::exp(-std::max(bottom, 0.0) / HAZE_HEIGHT) * (1.0 - std::exp(-climb)) / climb;
    return m_sight.extinction * least * distance > DEPTH;
}

bool TerrainTree::needsSplit(const Tile& tile, double distance) const {
    if (tile.area.stride == 1) return false;
    return !tile.is_drawable || distance < TREE_REACH || tile.error > errorAllowed(distance);
}

void TerrainTree::visit(Tile& tile, bool is_seen) {
    tile.used = m_frame;
    if (!tile.is_ground) return;
    dvec3 eye;
    const double distance = distanceTo(tile, eye);
    if (isLostInAir(tile, distance)) return;
    is_seen = is_seen && isInSight(tile);
    if (needsSplit(tile, distance) && (tile.hasChildren() || split(tile, is_seen))) {
        // From near to far, so that ground behind a hill fails the depth test.
        const int first = (eye.x < 0.0 ? 0 : 1) + (eye.y < 0.0 ? 0 : 2);
        for (const int step : {0, 1, 2, 3}) visit(*tile.children[first ^ step], is_seen);
    } else if (is_seen && tile.is_drawable) {
        draw(tile, distance);
    }
}

void TerrainTree::draw(Tile& tile, double distance) {
    const bool is_exact = distance < FINE_REACH && tile.area.stride == 1;
    const int wanted = is_exact ? 0 : finenessFor(std::max(errorAllowed(distance), errorAllowed(FINE_REACH)));
    const bool is_wrong = tile.fineness > wanted || tile.fineness < wanted - 2;
    if (tile.fineness < 0 || (is_wrong && m_shape_budget-- > 0)) shape(tile, wanted, distance);
    osg::StateSet* const state = !m_sight.has_details || distance >= DETAIL_REACH ? m_states.far
                                 : distance < GRAIN_REACH                         ? m_states.close
                                                                                  : m_states.near;
    if (tile.place->getStateSet() != state) tile.place->setStateSet(state);
    if (tile.place->getNumChildren() > 0) m_group->drawn.push_back(tile.place);
    if (m_sight.has_details && distance < TREE_REACH && tile.area.stride == 1) drawTrees(tile);
}

void TerrainTree::drawTrees(Tile& tile) {
    if (!tile.trees) {
        if (m_shape_budget-- <= 0) return;
        tile.trees = new osg::MatrixTransform(toOsg(tile.frame));
        tile.trees->setCullingActive(false);
        const osg::ref_ptr<osg::Geometry> geometry = m_trees.plant(tile.area, tile.frame);
        if (geometry) tile.trees->addChild(geometry);
    }
    if (tile.trees->getNumChildren() > 0) m_woods->drawn.push_back(tile.trees);
}

/// Reads the posts of a tile from a raster that is not in memory, a few in each frame.
bool TerrainTree::readPosts(const TileArea& area) {
    if (area.stride > 2 * MAX_STRIDE) return true;  // only its children need posts
    const int reach = (TILE_CELLS + 1) * area.stride;
    const int last_column = m_raster.getNumColumns() - 2, last_row = m_raster.getNumRows() - 2;
    return m_raster.prepare(std::clamp(area.column - area.stride, 0, last_column),
                            std::clamp(area.row - area.stride, 0, last_row), std::min(area.column + reach, last_column),
                            std::min(area.row + reach, last_row), m_read_budget);
}

bool TerrainTree::split(Tile& tile, bool is_seen) {
    int& budget = is_seen ? m_seen_budget : m_unseen_budget;
    if (budget <= 0) return false;
    const int stride = tile.area.stride / 2, size = stride * TILE_CELLS;
    if (!readPosts({tile.area.column, tile.area.row, tile.area.stride})) return false;
    --budget;
    for (int i = 0; i < 4; ++i) {
        const TileArea area{tile.area.column + (i % 2) * size, tile.area.row + (i / 2) * size, stride};
        if (area.column >= m_raster.getNumColumns() - 1 || area.row >= m_raster.getNumRows() - 1) {
            tile.children[i] = std::make_unique<Tile>();
            tile.children[i]->is_ground = false;
            ++m_num_tiles;
        } else {
            tile.children[i] = makeTile(area);
        }
    }
    return true;
}

void TerrainTree::prune(Tile& tile) {
    if (!tile.hasChildren()) return;
    bool is_needed = false;
    for (const auto& child : tile.children) {
        prune(*child);
        is_needed = is_needed || child->hasChildren() || m_frame - child->used < KEEP;
    }
    if (is_needed) return;
    for (auto& child : tile.children) child.reset();
    m_num_tiles -= 4;
}
