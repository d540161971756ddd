// An elevation or imagery file read with GDAL: opened, converted to WGS84, read in windows. GDAL is used in this class
// only.
#pragma once

#include <memory>
#include <vector>

#include "engine/Api.h"
#include "engine/text/Containers.h"

/// A grid of posts in longitude and latitude (WGS84, degrees). Column 0 is the westernmost, row 0 the southernmost,
/// whatever the order in the file; posts are at the pixels' centres.
class ENGINE_API RasterSource {
public:
    /// Null, with one log line naming the file, when GDAL cannot read it or it has no georeference. `kind` names the
    /// raster's use in log lines.
    static std::unique_ptr<RasterSource> open(const jString& path, const char* kind = "elevation");
    ~RasterSource();
    RasterSource(const RasterSource&) = delete;
    RasterSource& operator=(const RasterSource&) = delete;

    int getNumColumns() const { return m_columns; }
    int getNumRows() const { return m_rows; }
    double getWest() const { return m_west; }         ///< longitude of column 0, degrees
    double getSouth() const { return m_south; }       ///< latitude of row 0, degrees
    double getLonStep() const { return m_lon_step; }  ///< degrees between columns, positive
    double getLatStep() const { return m_lat_step; }  ///< degrees between rows, positive
    const jString& getPath() const { return m_path; }

    /// Reads a window of posts into `out`, south row first, with `stride` floats between rows: metres, NaN where the
    /// file has no data. False, with `out` unchanged and one log line, when the file cannot be read there. REQUIRES a
    /// window inside the grid.
    bool read(int column, int row, int columns, int rows, float* out, int stride);
    /// Reads the whole raster as colours, scaled to width x height: red, green, blue, south row first; the first band
    /// replaces missing ones. False with one log line when the file cannot be read.
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
    void* m_file = nullptr;  ///< data set of the file
    void* m_grid = nullptr;  ///< data set to read from: that of the file, or one resampled from it on demand
    int m_columns = 0, m_rows = 0;
    double m_west = 0.0, m_south = 0.0, m_lon_step = 1.0, m_lat_step = 1.0;
    bool m_west_first = true, m_south_first = false;  ///< order of columns and rows in the file
    bool m_has_no_data = false;
    double m_no_data = 0.0, m_scale = 1.0, m_offset = 0.0;
    std::vector<double> m_window;
    std::vector<unsigned char> m_band;
};
