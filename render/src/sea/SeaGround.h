// The ground below the water, for depths near the shore.
#pragma once

#include <osg/Image>

#include <cstddef>
#include <vector>

#include "engine/scene/ElevationRaster.h"

/// Heights of an elevation raster, reduced to at most 1024 posts per side. Positions are texture coordinates of its
/// image: columns from the west and rows from the south, posts at the centres of texels.
class SeaGround {
public:
    static constexpr int MAX_POSTS = 1024;
    static constexpr float DEEP = -500.0f;  ///< metres; used where the ground is unknown

    explicit SeaGround(const ElevationRaster& raster);

    double getColumn(double lon) const { return (lon - m_west) * m_per_lon; }  ///< of a longitude in degrees
    double getRow(double lat) const { return (lat - m_south) * m_per_lat; }    ///< of a latitude in degrees
    double getColumnsPerDegree() const { return m_per_lon; }
    double getRowsPerDegree() const { return m_per_lat; }

    /// Height of the ground, metres; DEEP outside the raster.
    float getAltitude(float column, float row) const;
    /// Bounds of the ground heights of an area, conservative; DEEP outside the raster.
    HeightRange getRange(double west, double south, double east, double north) const;
    /// The heights, metres, one float per texel.
    osg::Image* getImage() const { return m_image; }

private:
    static constexpr int BLOCK = 16;  ///< cells per side of a block

    const float* getPost(int column, int row) const {
        return m_posts + static_cast<std::ptrdiff_t>(row) * m_columns + column;
    }
    void read(const ElevationRaster& raster, int column_stride, int row_stride);
    void measure();

    double m_west = 0.0, m_south = 0.0;  ///< degrees, outer edges of the outermost texels
    double m_per_lon = 1.0, m_per_lat = 1.0;
    int m_columns = 0, m_rows = 0;
    int m_block_columns = 0, m_block_rows = 0;
    osg::ref_ptr<osg::Image> m_image;
    float* m_posts = nullptr;  ///< data of the image
    std::vector<HeightRange> m_blocks;
};
