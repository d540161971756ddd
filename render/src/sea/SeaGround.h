// The ground under the water, as the shore needs it.
#pragma once

#include <osg/Image>

#include <vector>

class ElevationRaster;

/// Heights of an elevation raster, thinned out to at most 1024 posts a side. Places are fractions of its extent: columns
/// from the west and rows from the south, 0..1 inside.
class SeaGround {
public:
    static constexpr int MAX_POSTS = 1024;
    static constexpr float DEEP = -500.0f;  ///< stands for ground that is not known, metres

    explicit SeaGround(const ElevationRaster& raster);

    double getWest() const { return m_west; }    ///< longitude of column 0, degrees
    double getSouth() const { return m_south; }  ///< latitude of row 0, degrees
    double getWidth() const { return m_width; }  ///< degrees
    double getHeight() const { return m_height; }

    /// Height of the ground, metres; DEEP outside.
    float getAltitude(float column, float row) const;
    /// The lowest and the highest ground of an area, at least; DEEP both outside.
    void getRange(float west, float south, float east, float north, float& lowest, float& highest) const;
    /// The heights as texels, whose centres are the posts.
    osg::Image* getImage() const { return m_image; }
    int getNumColumns() const { return m_columns; }
    int getNumRows() const { return m_rows; }

private:
    static constexpr int BLOCK = 16;  ///< posts that share a range

    void read(const ElevationRaster& raster);
    void measure();
    const float* post(int column, int row) const;

    double m_west = 0.0, m_south = 0.0, m_width = 1.0, m_height = 1.0;
    int m_columns = 0, m_rows = 0;
    int m_block_columns = 0, m_block_rows = 0;
    osg::ref_ptr<osg::Image> m_image;
    std::vector<float> m_lowest, m_highest;  ///< of blocks, posts shared with the next ones included
};
