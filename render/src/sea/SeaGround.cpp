// The ground below the water: read once when the terrain changes.
#include "sea/SeaGround.h"

#include <algorithm>
#include <cmath>

SeaGround::SeaGround(const ElevationRaster& raster) : m_image(new osg::Image) {
    const auto strideOf = [](int posts) { return (posts - 1) / MAX_POSTS + 1; };
    const int column_stride = strideOf(raster.getNumColumns()), row_stride = strideOf(raster.getNumRows());
    m_columns = (raster.getNumColumns() - 1) / column_stride + 1;
    m_rows = (raster.getNumRows() - 1) / row_stride + 1;
    const double lon_step = raster.getLonStep() * column_stride, lat_step = raster.getLatStep() * row_stride;
    m_west = raster.getWest() - 0.5 * lon_step;
    m_south = raster.getSouth() - 0.5 * lat_step;
    m_per_lon = 1.0 / (lon_step * m_columns);
    m_per_lat = 1.0 / (lat_step * m_rows);
    read(raster, column_stride, row_stride);
    measure();
}

void SeaGround::read(const ElevationRaster& raster, int column_stride, int row_stride) {
    m_image->allocateImage(m_columns, m_rows, 1, GL_RED, GL_FLOAT);
    m_image->setInternalTextureFormat(GL_R16F);
    m_posts = reinterpret_cast<float*>(m_image->data());
    for (int row = 0; row < m_rows; ++row) {
        float* const out = m_posts + static_cast<std::ptrdiff_t>(row) * m_columns;
        for (int column = 0; column < m_columns; ++column) {
            const float height = raster.getPost(column * column_stride, row * row_stride);
            out[column] = std::isnan(height) ? DEEP : height;
        }
    }
}

void SeaGround::measure() {
    m_block_columns = (m_columns - 1) / BLOCK + 1;
    m_block_rows = (m_rows - 1) / BLOCK + 1;
    m_blocks.resize(static_cast<std::size_t>(m_block_columns) * static_cast<std::size_t>(m_block_rows));
    for (int row = 0; row < m_rows; ++row) {
        for (int column = 0; column < m_columns; ++column) {
            // A post on the border of blocks belongs to the cells of each.
            for (int y = std::max(row - 1, 0) / BLOCK; y <= row / BLOCK; ++y) {
                for (int x = std::max(column - 1, 0) / BLOCK; x <= column / BLOCK; ++x) {
                    m_blocks[static_cast<std::size_t>(y * m_block_columns + x)].expand(*getPost(column, row));
                }
            }
        }
    }
}

float SeaGround::getAltitude(float column, float row) const {
    if (!(column >= 0.0f && row >= 0.0f && column <= 1.0f && row <= 1.0f)) return DEEP;
    const float x = std::clamp(column * static_cast<float>(m_columns) - 0.5f, 0.0f, static_cast<float>(m_columns - 1));
    const float y = std::clamp(row * static_cast<float>(m_rows) - 0.5f, 0.0f, static_cast<float>(m_rows - 1));
    const int i = std::min(static_cast<int>(x), std::max(m_columns - 2, 0));
    const int j = std::min(static_cast<int>(y), std::max(m_rows - 2, 0));
    const float u = x - static_cast<float>(i), v = y - static_cast<float>(j);
    const float* const south = getPost(i, j);
    const float* const north = getPost(i, std::min(j + 1, m_rows - 1));
    return (south[0] * (1.0f - u) + south[1] * u) * (1.0f - v) + (north[0] * (1.0f - u) + north[1] * u) * v;
}

HeightRange SeaGround::getRange(double west, double south, double east, double north) const {
    HeightRange range;
    if (!(west >= 0.0 && south >= 0.0 && east <= 1.0 && north <= 1.0)) range.expand(DEEP);
    if (!(west <= 1.0 && south <= 1.0 && east >= 0.0 && north >= 0.0)) return range;
    const auto blockOf = [](double place, int posts, int blocks) {
        return std::clamp(static_cast<int>(std::floor((place * posts - 0.5) / BLOCK)), 0, blocks - 1);
    };
    const int last_row = blockOf(north, m_rows, m_block_rows);
    const int last_column = blockOf(east, m_columns, m_block_columns);
    for (int y = blockOf(south, m_rows, m_block_rows); y <= last_row; ++y) {
        for (int x = blockOf(west, m_columns, m_block_columns); x <= last_column; ++x) {
            range.expand(m_blocks[static_cast<std::size_t>(y * m_block_columns + x)]);
        }
    }
    return range;
}
