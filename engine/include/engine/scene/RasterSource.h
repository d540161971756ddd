// An elevation or imagery file through GDAL: opened, put into WGS84, read in windows. Nothing of GDAL leaves this
// class.
#pragma once

#include <memory>
#include <vector>

#include "engine/Api.h"
#include "engine/text/Containers.h"

/// A grid of posts in longitude and latitude (WGS84, degrees). Column 0 is the westernmost, row 0 the southernmost,
/// however the file stores them; posts lie at the pixels' centres.
class ENGINE_API RasterSource {
public:
    /// Null, with one log line naming the file, when GDAL cannot read it or it has no georeference.
    /// `kind` names the raster's use in log lines.
    static std::unique_ptr<RasterSource> open(const jString& path, const char* kind = "elevation");
    ~RasterSource();
    RasterSource(const RasterSource&) = delete;
    RasterSource& operator=(const RasterSource&) = delete;

    int getNumColumns() const { return m_columns; }
    int getNumRows() const { return m_rows; }
    double getWest() const { return m_west; }
    double getSouth() const { return m_south; }
    double getLonStep() const { return m_lon_step; }
    double getLatStep() const { return m_lat_step; }
    const jString& getPath() const { return m_path; }

    /// Reads a window of posts into `out`, south row first, `stride` floats from row to row: metres, NaN where the file
    /// has no data. False, with `out` untouched and one log line, when the file cannot be read there. REQUIRES a window
    /// inside the grid.
    bool read(int column, int row, int columns, int rows, float* out, int stride);
    /// Reads the whole raster as colours, scaled to width x height: red, green, blue, south row first; the first band
    /// is taken for the missing ones. False with one log line when the file cannot be read.
    bool readColors(int width, int height, unsigned char* out);

private:
    RasterSource() = default;
    bool openFile();
    bool turnToWgs84();
    bool isNorthUpWgs84() const;
    bool readGrid();
    float toHeight(double value) const;

    jString m_path;
    const char* m_kind = "";
    void* m_file = nullptr;  ///< the data set as it stands in the file
    void* m_grid = nullptr;  ///< the data set read from: the file's own, or one resampled from it on the fly
    int m_columns = 0, m_rows = 0;
    double m_west = 0.0, m_south = 0.0, m_lon_step = 1.0, m_lat_step = 1.0;
    bool m_west_first = true, m_south_first = false;  ///< how the file orders its columns and rows
    bool m_has_no_data = false;
    double m_no_data = 0.0, m_scale = 1.0, m_offset = 0.0;
    std::vector<double> m_window;
    std::vector<unsigned char> m_band;
};
