// Keeps the tiles of an elevation raster and computes heights from them; called by queries at any point of the frame.
// Only the first access to a tile reads the file.
#include "engine/scene/ElevationRaster.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "engine/scene/RasterSource.h"
#include "engine/text/Log.h"

namespace {

constexpr float HOLE = std::numeric_limits<float>::quiet_NaN();
constexpr int READ_AT_ONCE = 64;           // tiles
constexpr long long TILE_LIMIT = 1 << 24;  // keeps the table of tiles below 200 MB
// A position computed from an edge post's own coordinates may be this far outside, in cells, by rounding.
constexpr double EDGE_SLACK = 1e-6;

int divideUp(int n, int d) {
    return (n + d - 1) / d;
}

}  // namespace

std::unique_ptr<ElevationRaster> ElevationRaster::open(const jString& path) {
    std::unique_ptr<RasterSource> source = RasterSource::open(path);
    if (!source) return nullptr;
    const long long tiles = static_cast<long long>(divideUp(source->getNumColumns() - 1, TILE_CELLS)) *
                            divideUp(source->getNumRows() - 1, TILE_CELLS);
    if (tiles > TILE_LIMIT) {
        jLog::error("%s: an elevation raster of %d x %d posts is too large", path.c_str(), source->getNumColumns(),
                    source->getNumRows());
        return nullptr;
    }
    std::unique_ptr<ElevationRaster> raster(new ElevationRaster(std::move(source)));
    if (tiles <= READ_AT_ONCE && !raster->readAll()) return nullptr;
    return raster;
}

ElevationRaster::ElevationRaster(std::unique_ptr<RasterSource> source)
    : m_source(std::move(source)),
      m_columns(m_source->getNumColumns()),
      m_rows(m_source->getNumRows()),
      m_tile_columns(divideUp(m_columns - 1, TILE_CELLS)),
      m_tile_rows(divideUp(m_rows - 1, TILE_CELLS)),
      m_west(m_source->getWest()),
      m_south(m_source->getSouth()),
      m_lon_step(m_source->getLonStep()),
      m_lat_step(m_source->getLatStep()),
      m_middle(m_west + 0.5 * (m_columns - 1) * m_lon_step) {
    const std::size_t tiles = static_cast<std::size_t>(m_tile_columns) * m_tile_rows;
    m_range.expand(-HEIGHT_LIMIT);
    m_range.expand(HEIGHT_LIMIT);
    m_tiles.reserve(std::min<std::size_t>(tiles, MAX_TILES));
    m_slots.assign(tiles, -1);
    m_tile_ranges.resize(tiles);
    m_measured.assign(tiles, false);
}

ElevationRaster::~ElevationRaster() = default;

bool ElevationRaster::readAll() {
    HeightRange range;
    for (int i = 0; i < m_tile_columns * m_tile_rows && !m_failed; ++i) range.expand(getTileRange(i));
    m_range = range;
    return !m_failed;
}

PostPlace ElevationRaster::toPosts(double lon, double lat) const {
    double from_middle = lon - m_middle;
    if (std::fabs(from_middle) > 180.0) from_middle = std::remainder(from_middle, 360.0);
    return {0.5 * (m_columns - 1) + from_middle / m_lon_step, (lat - m_south) / m_lat_step};
}

bool ElevationRaster::isInside(const PostPlace& place) const {
    return place.column >= -EDGE_SLACK && place.column <= m_columns - 1 + EDGE_SLACK && place.row >= -EDGE_SLACK &&
           place.row <= m_rows - 1 + EDGE_SLACK;
}

float ElevationRaster::getPost(int column, int row) const {
    const int cell_column = std::min(column, m_columns - 2), cell_row = std::min(row, m_rows - 2);
    const Tile& tile = getTile(tileAt(cell_column, cell_row));
    const int c = column - cell_column + cell_column % TILE_CELLS, r = row - cell_row + cell_row % TILE_CELLS;
    return tile.posts[static_cast<std::size_t>(r) * TILE_POSTS + c];
}

CellHeights ElevationRaster::getCell(int column, int row) const {
    const Tile& tile = getTile(tileAt(column, row));
    const float* south = &tile.posts[static_cast<std::size_t>(row % TILE_CELLS) * TILE_POSTS + column % TILE_CELLS];
    return {south[0], south[1], south[TILE_POSTS], south[TILE_POSTS + 1]};
}

bool ElevationRaster::getAltitude(double lon, double lat, double& altitude) const {
    const PostPlace place = toPosts(lon, lat);
    if (!isInside(place)) return false;
    const int column = std::clamp(static_cast<int>(place.column), 0, m_columns - 2);
    const int row = std::clamp(static_cast<int>(place.row), 0, m_rows - 2);
    const double u = place.column - column, v = place.row - row;
    const double height = planeOf(getCell(column, row), u >= v).at(u, v);
    if (std::isnan(height)) return false;
    altitude = height;
    return true;
}

HeightRange ElevationRaster::getRange(int first_column, int first_row, int last_column, int last_row) const {
    const int left = first_column / BLOCK_CELLS, right = last_column / BLOCK_CELLS;
    const int bottom = first_row / BLOCK_CELLS, top = last_row / BLOCK_CELLS;
    HeightRange range;
    if (right - left < 4 && top - bottom < 4) {
        for (int r = bottom; r <= top; ++r) {
            for (int c = left; c <= right; ++c) range.expand(getBlockRange(c, r));
        }
        return range;
    }
    if (right / TILE_BLOCKS - left / TILE_BLOCKS > 1 || top / TILE_BLOCKS - bottom / TILE_BLOCKS > 1) return m_range;
    for (int r = bottom / TILE_BLOCKS; r <= top / TILE_BLOCKS; ++r) {
        for (int c = left / TILE_BLOCKS; c <= right / TILE_BLOCKS; ++c) {
            range.expand(getTileRange(r * m_tile_columns + c));
        }
    }
    return range;
}

bool ElevationRaster::prepare(int first_column, int first_row, int last_column, int last_row, int& budget) const {
    for (int r = first_row / TILE_CELLS; r <= last_row / TILE_CELLS; ++r) {
        for (int c = first_column / TILE_CELLS; c <= last_column / TILE_CELLS; ++c) {
            const int index = r * m_tile_columns + c;
            if (m_slots[static_cast<std::size_t>(index)] < 0 && budget-- <= 0) return budget = 0, false;
            getTile(index);
        }
    }
    return true;
}

const HeightRange& ElevationRaster::getBlockRange(int block_column, int block_row) const {
    const Tile& tile = getTile(block_row / TILE_BLOCKS * m_tile_columns + block_column / TILE_BLOCKS);
    return tile.blocks[static_cast<std::size_t>(block_row % TILE_BLOCKS * TILE_BLOCKS + block_column % TILE_BLOCKS)];
}

HeightRange ElevationRaster::getTileRange(int index) const {
    if (!m_measured[static_cast<std::size_t>(index)]) load(index);
    return m_tile_ranges[static_cast<std::size_t>(index)];
}

const ElevationRaster::Tile& ElevationRaster::getTile(int index) const {
    const int slot = m_slots[static_cast<std::size_t>(index)];
    if (slot < 0) return load(index);
    Tile& tile = m_tiles[static_cast<std::size_t>(slot)];
    tile.used = ++m_uses;
    return tile;
}

const ElevationRaster::Tile& ElevationRaster::load(int index) const {
    Tile& tile = takeSlot();
    const int column = index % m_tile_columns * TILE_CELLS, row = index / m_tile_columns * TILE_CELLS;
    const int columns = std::min(TILE_POSTS, m_columns - column), rows = std::min(TILE_POSTS, m_rows - row);
    std::fill(tile.posts.begin(), tile.posts.end(), HOLE);
    if (!m_source->read(column, row, columns, rows, tile.posts.data(), TILE_POSTS)) m_failed = true;
    tile.index = index;
    tile.used = ++m_uses;
    m_slots[static_cast<std::size_t>(index)] = static_cast<std::int16_t>(&tile - m_tiles.data());
    m_tile_ranges[static_cast<std::size_t>(index)] = measure(tile);
    m_measured[static_cast<std::size_t>(index)] = true;
    return tile;
}

/// A new tile while there is room, otherwise the least recently used one.
ElevationRaster::Tile& ElevationRaster::takeSlot() const {
    if (m_tiles.size() < m_tiles.capacity()) {
        Tile& tile = m_tiles.emplace_back();
        tile.posts.resize(static_cast<std::size_t>(TILE_POSTS) * TILE_POSTS);
        tile.blocks.resize(static_cast<std::size_t>(TILE_BLOCKS) * TILE_BLOCKS);
        return tile;
    }
    Tile& oldest =
        *std::min_element(m_tiles.begin(), m_tiles.end(), [](const Tile& a, const Tile& b) { return a.used < b.used; });
    m_slots[static_cast<std::size_t>(oldest.index)] = -1;
    return oldest;
}

HeightRange ElevationRaster::measure(Tile& tile) const {
    HeightRange all;
    for (int block = 0; block < TILE_BLOCKS * TILE_BLOCKS; ++block) {
        const int column = block % TILE_BLOCKS * BLOCK_CELLS, row = block / TILE_BLOCKS * BLOCK_CELLS;
        HeightRange range;
        for (int r = row; r <= row + BLOCK_CELLS; ++r) {
            const float* line = &tile.posts[static_cast<std::size_t>(r) * TILE_POSTS];
            for (int c = column; c <= column + BLOCK_CELLS; ++c) range.expand(line[c]);  // a NaN has no effect
        }
        tile.blocks[static_cast<std::size_t>(block)] = range;
        all.expand(range);
    }
    return all;
}
