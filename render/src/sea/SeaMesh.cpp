// The sea's triangles: selected and computed once per frame on the CPU, since every visible vertex needs both cascades
// and the ground at its position.
#include "sea/SeaMesh.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "engine/scene/WaveField.h"
#include "mirror/LevelTop.h"
#include "sea/SeaGround.h"
#include "sea/SeaSlopes.h"

namespace {

constexpr int SIZE = WaveCascade::SIZE;
constexpr int SIDE = SeaMesh::CELLS + 1;
constexpr double SHALLOW = 3.0;  // metres of water depth from which on waves have their full height
constexpr double SHORE = 30.0;   // metres of water depth from which on the ground is not visible
constexpr double BURIED = 5.0;   // metres of ground above the water level that hide the water completely

using Values = SeaValues;

using Samples = std::vector<std::array<float, 4>>;

Values load(const Samples& samples, std::int64_t column, std::int64_t row) {
    const auto at = static_cast<std::size_t>((row & (SIZE - 1)) * SIZE + (column & (SIZE - 1)));
    Values values;
    std::memcpy(&values, samples[at].data(), sizeof values);
    return values;
}

Values interpolate(const Samples& samples, double column, double row) {
    const double whole_column = std::floor(column), whole_row = std::floor(row);
    const auto i = static_cast<std::int64_t>(whole_column), j = static_cast<std::int64_t>(whole_row);
    const auto u = static_cast<float>(column - whole_column), v = static_cast<float>(row - whole_row);
    const Values south = load(samples, i, j) * (1.0f - u) + load(samples, i + 1, j) * u;
    const Values north = load(samples, i, j + 1) * (1.0f - u) + load(samples, i + 1, j + 1) * u;
    return south * (1.0f - v) + north * v;
}

float fade(double value, double from, double to) {
    return static_cast<float>(std::clamp((to - value) / (to - from), 0.0, 1.0));
}

/// Distance of the origin from a line of length `size` that begins at `at`.
double gapTo(double at, double size) {
    return std::max({at, -at - size, 0.0});
}

std::array<unsigned, SeaMesh::TRIANGLES * 3> indexPatch() {
    std::array<unsigned, SeaMesh::TRIANGLES * 3> indices;
    unsigned* next = indices.data();
    for (unsigned row = 0; row < SeaMesh::CELLS; ++row) {
        for (unsigned column = 0; column < SeaMesh::CELLS; ++column) {
            const unsigned sw = row * SIDE + column, se = sw + 1, nw = sw + SIDE, ne = nw + 1;
            for (const unsigned corner : {sw, se, ne, sw, ne, nw}) *next++ = corner;
        }
    }
    return indices;
}

}  // namespace

const std::array<unsigned, SeaMesh::TRIANGLES * 3>& SeaMesh::getPatchIndices() {
    static const std::array<unsigned, TRIANGLES* 3> INDICES = indexPatch();
    return INDICES;
}

void SeaVertex::slide(const SeaVertex& to, float part) {
    const auto mix = [part](float from, float end) { return part < 1.0f ? from + part * (end - from) : end; };
    east = mix(east, to.east);
    north = mix(north, to.north);
    up = mix(up, to.up);
    rest_east = mix(rest_east, to.rest_east);
    rest_north = mix(rest_north, to.rest_north);
    crest = mix(crest, to.crest);
    slope_east = mix(slope_east, to.slope_east);
    slope_north = mix(slope_north, to.slope_north);
    foam = mix(foam, to.foam);
    heave = mix(heave, to.heave);
    ground_column = mix(ground_column, to.ground_column);
    ground_row = mix(ground_row, to.ground_row);
}

SeaMesh::SeaMesh() {
    m_vertices.reserve(std::size_t(MAX_PATCHES) * VERTICES);
    // The vertices of a level must not move yet where those of the finer level have ended their motion, which is within
    // one patch side of the finer level's range. Up to 90 m waves are still visible individually.
    constexpr double START = 0.82;  // of the range
    constexpr double MIN_RANGES[] = {24.0, 60.0, 190.0};
    for (int level = 0; level <= MAX_LEVEL; ++level) {
        const double finer = level > 0 ? m_ranges[level - 1] : 0.0;
        m_ranges[level] = (finer + std::ldexp(CELLS, level)) / START;
        if (level < 3) m_ranges[level] = std::max(m_ranges[level], MIN_RANGES[level]);
    }
    for (int level = 0; level <= MAX_LEVEL; ++level) m_morphs[level] = START * m_ranges[level];
}

void SeaMesh::update(const SeaMeshView& view, const WaveField& field, const SeaSlopes& slopes,
                     const SeaGround* ground) {
    m_view = &view;
    m_field = &field;
    m_slopes = &slopes;
    m_ground = ground;
    m_num_patches = 0;
    for (PatchList& band : m_bands) {
        band.open.clear();
        band.shore.clear();
    }
    m_spacing = field.getCascade(1).length / SIZE;
    // Seen from above, cells may grow with the eye's height; from high up they must grow, otherwise there are too many.
    const double fine = m_ranges[2] * m_spacing, height = std::abs(view.height);
    m_lift = 0.6 * std::min(height, fine) + 0.15 * std::max(height - fine, 0.0);

    const double radius = std::min(view.east_radius, view.north_radius);
    m_reach = std::min(std::sqrt(2.0 * radius * height) * 1.05 + 2000.0, 0.5 * radius);
    const double east = m_reach / view.east_scale, north = m_reach / view.north_scale;
    int level = 0;
    while (level < MAX_LEVEL && m_ranges[level] * m_spacing < std::max(east, north)) ++level;
    const double size = std::ldexp(CELLS * m_spacing, level);
    const auto first = [&](double from) { return static_cast<std::int64_t>(std::floor(from / size)); };
    for (std::int64_t row = first(view.north - north); row <= first(view.north + north); ++row) {
        for (std::int64_t column = first(view.east - east); column <= first(view.east + east); ++column) {
            const auto x = static_cast<double>(column) * size - view.east;
            const auto y = static_cast<double>(row) * size - view.north;
            select({level, column * CELLS, row * CELLS, x, y, size});
        }
    }
}

double SeaMesh::getDistance(double east, double north) const {
    return std::max(std::abs(east), std::abs(north)) + m_lift;
}

void SeaMesh::select(const Patch& patch) {
    if (!isVisible(patch)) return;
    const double gap = std::max(gapTo(patch.east, patch.size), gapTo(patch.north, patch.size)) + m_lift;
    if (patch.level == 0 || gap >= m_ranges[patch.level - 1] * m_spacing) {
        emit(patch, gap);
        return;
    }
    const double half = 0.5 * patch.size;
    for (int i = 0; i < 4; ++i) {
        const int x = i % 2, y = i / 2;
        select({patch.level - 1, 2 * patch.column + x * CELLS, 2 * patch.row + y * CELLS, patch.east + x * half,
                patch.north + y * half, half});
    }
}

SeaMesh::Box SeaMesh::boxOf(const Patch& patch) const {
    const SeaMeshView& v = *m_view;
    const double half_east = 0.5 * patch.size * v.east_scale, half_north = 0.5 * patch.size * v.north_scale;
    const double east = patch.east * v.east_scale + half_east, north = patch.north * v.north_scale + half_north;
    const double far_east = std::abs(east) + half_east, far_north = std::abs(north) + half_north;
    const double drop = far_east * far_east / v.east_radius + far_north * far_north / v.north_radius;
    const double top = -v.height + v.reach_upward, bottom = -v.height - v.reach_upward - drop;
    return {{east, north, 0.5 * (top + bottom)},
            {half_east + v.reach_sideways, half_north + v.reach_sideways, 0.5 * (top - bottom)}};
}

bool SeaMesh::isVisible(const Patch& patch) const {
    const SeaMeshView& v = *m_view;
    const double gap_east = gapTo(patch.east, patch.size) * v.east_scale;
    const double gap_north = gapTo(patch.north, patch.size) * v.north_scale;
    if (gap_east * gap_east + gap_north * gap_north > m_reach * m_reach) return false;
    const auto [middle, half] = boxOf(patch);
    const bool is_in_view = std::all_of(v.sides.begin(), v.sides.end(), [&](const SeaMeshView::Plane& p) {
        return p.east * middle.x + p.north * middle.y + p.up * middle.z + p.offset + std::abs(p.east) * half.x +
                   std::abs(p.north) * half.y + std::abs(p.up) * half.z >=
               0.0;
    });
    return is_in_view && !isCovered({middle, half});
}

bool SeaMesh::isCovered(const Box& box) const {
    if (!m_view->cover) return false;
    std::array<dvec3, 8> corners;
    for (unsigned i = 0; i < corners.size(); ++i) {
        const dvec3 to_corner((i & 1) ? box.half.x : -box.half.x, (i & 2) ? box.half.y : -box.half.y,
                              (i & 4) ? box.half.z : -box.half.z);
        corners[i] = m_view->to_cover * (box.middle + to_corner);
    }
    return m_view->cover->hides(m_view->to_cover.t, corners);
}

bool SeaMesh::isShore(const Patch& patch, bool& buried) const {
    buried = false;
    if (!m_ground) return false;
    const SeaMeshView& v = *m_view;
    const double west = v.ground_column + patch.east * v.columns_per_metre;
    const double south = v.ground_row + patch.north * v.rows_per_metre;
    const HeightRange range =
        m_ground->getRange(west, south, west + patch.size * v.columns_per_metre, south + patch.size * v.rows_per_metre);
    buried = range.min > BURIED;
    return range.max > -SHORE;
}

void SeaMesh::emit(const Patch& patch, double gap) {
    bool buried = false;
    const bool shore = isShore(patch, buried);
    if (buried || m_num_patches == MAX_PATCHES) return;
    const auto* const range = std::upper_bound(BAND_RANGES.begin(), BAND_RANGES.end(), gap);
    PatchList& list = m_bands[static_cast<std::size_t>(range - BAND_RANGES.begin())];
    (shore ? list.shore : list.open).push_back(m_num_patches);
    const std::size_t first = static_cast<std::size_t>(m_num_patches++) * VERTICES;
    if (m_vertices.size() < first + VERTICES) m_vertices.resize(first + VERTICES);
    SeaVertex* const out = &m_vertices[first];
    fill(patch, out, shore);
    const double farthest = getDistance(std::max(std::abs(patch.east), std::abs(patch.east + patch.size)),
                                        std::max(std::abs(patch.north), std::abs(patch.north + patch.size)));
    if (farthest > m_morphs[patch.level] * m_spacing) morph(patch, out);
}

void SeaMesh::fill(const Patch& patch, SeaVertex* out, bool shore) const {
    for (int y = 0; y < SIDE; ++y) {
        for (int x = 0; x < SIDE; ++x) {
            *out++ = makeVertex((patch.column + x) << patch.level, (patch.row + y) << patch.level, shore);
        }
    }
}

/// The vertex at a lattice position: bit-identical for all patches that share it, so that there are no gaps.
SeaVertex SeaMesh::makeVertex(std::int64_t column, std::int64_t row, bool shore) const {
    const SeaMeshView& v = *m_view;
    const double field_east = static_cast<double>(column) * m_spacing, east = field_east - v.east;
    const double field_north = static_cast<double>(row) * m_spacing, north = field_north - v.north;
    SeaVertex out{};
    out.rest_east = static_cast<float>(east);
    out.rest_north = static_cast<float>(north);
    out.ground_column = static_cast<float>(v.ground_column + east * v.columns_per_metre);
    out.ground_row = static_cast<float>(v.ground_row + north * v.rows_per_metre);
    Values moved = displace(out, column, row, field_east, field_north);
    if (shore) {
        const float depth = -m_ground->getAltitude(out.ground_column, out.ground_row);
        moved *= static_cast<float>(std::clamp(depth / SHALLOW, 0.0, 1.0));
    }
    const double local_east = east * v.east_scale, local_north = north * v.north_scale;
    const double bend = local_east * local_east / v.east_radius + local_north * local_north / v.north_radius;
    const double drop = bend / (1.0 + std::sqrt(std::max(1.0 - bend / v.north_radius, 0.0)));
    out.crest = moved[2] * v.rise;
    out.east = static_cast<float>(local_east) + moved[0] * static_cast<float>(v.east_scale);
    out.north = static_cast<float>(local_north) + moved[1] * static_cast<float>(v.north_scale);
    out.up = static_cast<float>(-v.height - drop) + out.crest;
    return out;
}

/// Displacement of the water from its position at rest; the large cascade's slopes are stored in the vertex. A cascade
/// fades out where the cells are too coarse for it.
Values SeaMesh::displace(SeaVertex& out, std::int64_t column, std::int64_t row, double east, double north) const {
    const WaveCascade &large = m_field->getCascade(0), &small = m_field->getCascade(1);
    const double distance = getDistance(out.rest_east, out.rest_north);
    const float with_large = fade(distance, m_ranges[6] * m_spacing, m_ranges[8] * m_spacing);
    const float with_small = fade(distance, m_ranges[2] * m_spacing, m_ranges[3] * m_spacing);
    Values moved{};
    if (with_large > 0.0f) {
        const double samples = SIZE / large.length;
        moved = with_large * interpolate(large.samples, east * samples, north * samples);
        const Values slopes = interpolate(m_slopes->getLarge(), east * samples, north * samples);
        out.slope_east = slopes[0];
        out.slope_north = slopes[1];
        out.foam = slopes[2];
        out.heave = slopes[3];
    }
    if (with_small > 0.0f) moved += with_small * load(small.samples, column, row);
    return moved;
}

/// Moves the vertices that the next level lacks onto the vertices that it has. The result is the triangles of the next
/// level, with identical corners.
void SeaMesh::morph(const Patch& patch, SeaVertex* out) const {
    const double from = m_morphs[patch.level] * m_spacing, to = m_ranges[patch.level] * m_spacing;
    for (int y = 0; y < SIDE; ++y) {
        for (int x = 0; x < SIDE; ++x) {
            const int aside = x & 1, along = y & 1;
            SeaVertex& vertex = out[y * SIDE + x];
            const float part = 1.0f - fade(getDistance(vertex.rest_east, vertex.rest_north), from, to);
            if ((aside | along) && part > 0.0f) vertex.slide(out[(y - along) * SIDE + x - aside], part);
        }
    }
}
