// Opens elevation and imagery files and reads windows of them with GDAL; called when a terrain is made and when its
// tiles are first used.
#include "engine/scene/RasterSource.h"

#include <cpl_error.h>
#include <gdal.h>
#include <gdal_frmts.h>
#include <gdal_utils.h>
#include <ogr_srs_api.h>

#include <cmath>
#include <limits>
#include <mutex>

#include "engine/scene/ElevationRaster.h"
#include "engine/text/Log.h"

namespace {

/// While it exists, keeps GDAL's own messages off the terminal and stores the first error for the caller's log line.
class QuietErrors {
public:
    QuietErrors() { CPLPushErrorHandlerEx(&QuietErrors::take, this); }
    ~QuietErrors() { CPLPopErrorHandler(); }
    QuietErrors(const QuietErrors&) = delete;
    QuietErrors& operator=(const QuietErrors&) = delete;

    const char* getText() const { return m_text.empty() ? "unreadable" : m_text.c_str(); }

private:
    static void CPL_STDCALL take(CPLErr level, CPLErrorNum, const char* text) {
        auto& self = *static_cast<QuietErrors*>(CPLGetErrorHandlerUserData());
        if (level < CE_Failure || !self.m_text.empty()) return;
        self.m_text = text;
        for (char& c : self.m_text) {
            if (c == '\n' || c == '\r') c = ' ';
        }
    }

    jString m_text;
};

constexpr const char* FIRST_DRIVERS[] = {"GTiff", nullptr};

/// Registers only the usual format: the more than one hundred others cost 8 MB and are registered when it cannot read a
/// file.
void registerFirstDrivers() {
    // Callers keep the posts that they read: a large library cache would hold them twice.
    constexpr GIntBig CACHE_BYTES = 2 << 20;
    static std::once_flag once;
    std::call_once(once, [] {
        GDALRegister_GTiff();
        GDALSetCacheMax64(CACHE_BYTES);
    });
}

void registerAllDrivers() {
    static std::once_flag once;
    std::call_once(once, [] { GDALAllRegister(); });
}

/// The horizontal part of a reference system with longitude before latitude; the caller releases it.
OGRSpatialReferenceH cloneHorizontal(OGRSpatialReferenceH system) {
    OGRSpatialReferenceH flat = OSRClone(system);
    if (OSRIsCompound(flat)) OSRStripVertical(flat);
    OSRSetAxisMappingStrategy(flat, OAMS_TRADITIONAL_GIS_ORDER);
    return flat;
}

bool isWgs84(OGRSpatialReferenceH system) {
    OGRSpatialReferenceH wgs = OSRNewSpatialReference(nullptr);
    OSRSetWellKnownGeogCS(wgs, "WGS84");
    OSRSetAxisMappingStrategy(wgs, OAMS_TRADITIONAL_GIS_ORDER);
    OGRSpatialReferenceH flat = cloneHorizontal(system);
    const bool same = OSRIsSame(flat, wgs) != 0;
    OSRDestroySpatialReference(flat);
    OSRDestroySpatialReference(wgs);
    return same;
}

}  // namespace

std::unique_ptr<RasterSource> RasterSource::open(const jString& path, const char* kind) {
    registerFirstDrivers();
    std::unique_ptr<RasterSource> source(new RasterSource);
    source->m_path = path;
    source->m_kind = kind;
    if (!source->openFile() || !source->turnToWgs84() || !source->readGrid()) return nullptr;
    return source;
}

RasterSource::~RasterSource() {
    const QuietErrors errors;
    if (m_grid != nullptr && m_grid != m_file) GDALClose(m_grid);
    if (m_file != nullptr) GDALClose(m_file);
}

bool RasterSource::openFile() {
    const QuietErrors errors;
    constexpr unsigned HOW = GDAL_OF_RASTER | GDAL_OF_READONLY;
    m_file = GDALOpenEx(m_path.c_str(), HOW, FIRST_DRIVERS, nullptr, nullptr);
    if (m_file == nullptr) {
        registerAllDrivers();
        m_file = GDALOpenEx(m_path.c_str(), HOW | GDAL_OF_VERBOSE_ERROR, nullptr, nullptr, nullptr);
    }
    if (m_file == nullptr || GDALGetRasterCount(m_file) < 1) {
        jLog::error("%s: no %s raster: %s", m_path.c_str(), m_kind, errors.getText());
        return false;
    }
    double transform[6];
    const bool placed = GDALGetGeoTransform(m_file, transform) == CE_None && GDALGetSpatialRef(m_file) != nullptr;
    if (!placed && GDALGetGCPCount(m_file) == 0) {
        jLog::error("%s: the %s raster has no georeference", m_path.c_str(), m_kind);
        return false;
    }
    const GDALRasterBandH band = GDALGetRasterBand(m_file, 1);
    int has_scale = 0, has_offset = 0;
    const double scale = GDALGetRasterScale(band, &has_scale), offset = GDALGetRasterOffset(band, &has_offset);
    if (has_scale) m_scale = scale;
    if (has_offset) m_offset = offset;
    return true;
}

bool RasterSource::isNorthUpWgs84() const {
    double t[6];
    const OGRSpatialReferenceH system = GDALGetSpatialRef(m_file);
    return system != nullptr && GDALGetGeoTransform(m_file, t) == CE_None && t[2] == 0.0 && t[4] == 0.0 &&
           isWgs84(system);
}

/// Resamples on demand: a window of the result reads only the necessary part of the file. In double precision, so that
/// rasters of whole metres are not rounded again.
bool RasterSource::turnToWgs84() {
    if (isNorthUpWgs84()) {
        m_grid = m_file;
        return true;
    }
    registerAllDrivers();
    const QuietErrors errors;
    const char* arguments[] = {"-of",       "VRT",     "-t_srs",     "+proj=longlat +datum=WGS84 +no_defs",
                               "-ot",       "Float64", "-r",         "bilinear",
                               "-et",       "0",       "-dstnodata", "nan",
                               "-novshift", nullptr};
    GDALWarpAppOptions* options = GDALWarpAppOptionsNew(const_cast<char**>(arguments), nullptr);
    GDALDatasetH inputs[] = {m_file};
    m_grid = options != nullptr ? GDALWarp("", nullptr, 1, inputs, options, nullptr) : nullptr;
    GDALWarpAppOptionsFree(options);
    if (m_grid == nullptr) jLog::error("%s: cannot be turned to WGS84: %s", m_path.c_str(), errors.getText());
    return m_grid != nullptr;
}

bool RasterSource::readGrid() {
    const QuietErrors errors;
    double t[6];
    m_columns = GDALGetRasterXSize(m_grid);
    m_rows = GDALGetRasterYSize(m_grid);
    const bool placed = GDALGetGeoTransform(m_grid, t) == CE_None && std::isfinite(t[0] + t[1] + t[3] + t[5]);
    if (!placed || t[1] == 0.0 || t[5] == 0.0 || m_columns < 2 || m_rows < 2) {
        jLog::error("%s: the %s raster needs at least 2 x 2 posts and a usable georeference", m_path.c_str(), m_kind);
        return false;
    }
    m_lon_step = std::fabs(t[1]);
    m_lat_step = std::fabs(t[5]);
    m_west_first = t[1] > 0.0;
    m_south_first = t[5] > 0.0;
    m_west = t[0] + t[1] * (m_west_first ? 0.5 : m_columns - 0.5);
    m_south = t[3] + t[5] * (m_south_first ? 0.5 : m_rows - 0.5);
    int has_no_data = 0;
    m_no_data = GDALGetRasterNoDataValue(GDALGetRasterBand(m_grid, 1), &has_no_data);
    m_has_no_data = has_no_data != 0;
    return true;
}

bool RasterSource::read(int column, int row, int columns, int rows, float* out, int stride) {
    const QuietErrors errors;
    m_window.resize(static_cast<std::size_t>(columns) * rows);
    const int x = m_west_first ? column : m_columns - column - columns;
    const int y = m_south_first ? row : m_rows - row - rows;
    const CPLErr result = GDALRasterIO(GDALGetRasterBand(m_grid, 1), GF_Read, x, y, columns, rows, m_window.data(),
                                       columns, rows, GDT_Float64, 0, 0);
    if (result != CE_None) {
        jLog::error("%s: elevation cannot be read: %s", m_path.c_str(), errors.getText());
        return false;
    }
    for (int r = 0; r < rows; ++r) {
        const double* line = &m_window[static_cast<std::size_t>(m_south_first ? r : rows - 1 - r) * columns];
        for (int c = 0; c < columns; ++c) out[r * stride + c] = toHeight(line[m_west_first ? c : columns - 1 - c]);
    }
    return true;
}

bool RasterSource::readColors(int width, int height, unsigned char* out) {
    const QuietErrors errors;
    GDALRasterIOExtraArg smooth;
    INIT_RASTERIO_EXTRA_ARG(smooth);
    smooth.eResampleAlg = GRIORA_Average;
    const auto size = static_cast<std::size_t>(width) * height;
    m_band.resize(size);
    const int bands = GDALGetRasterCount(m_grid);
    for (int color = 0; color < 3; ++color) {
        const GDALRasterBandH band = GDALGetRasterBand(m_grid, color < bands ? color + 1 : 1);
        if (GDALRasterIOEx(band, GF_Read, 0, 0, m_columns, m_rows, m_band.data(), width, height, GDT_Byte, 0, 0,
                           &smooth) != CE_None) {
            jLog::error("%s: %s cannot be read: %s", m_path.c_str(), m_kind, errors.getText());
            return false;
        }
        for (int row = 0; row < height; ++row) {
            const unsigned char* line =
                &m_band[static_cast<std::size_t>(m_south_first ? row : height - 1 - row) * width];
            unsigned char* to = out + (static_cast<std::size_t>(row) * width) * 3 + color;
            for (int c = 0; c < width; ++c) to[c * 3] = line[m_west_first ? c : width - 1 - c];
        }
    }
    return true;
}

float RasterSource::toHeight(double value) const {
    const double height = value * m_scale + m_offset;
    const bool is_height = std::fabs(height) <= ElevationRaster::HEIGHT_LIMIT && !(m_has_no_data && value == m_no_data);
    return is_height ? static_cast<float>(height) : std::numeric_limits<float>::quiet_NaN();
}
