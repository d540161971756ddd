// The sea's triangles: chosen and filled once a frame, on the processor, since every visible vertex needs both cascades
// and the ground at its place.
#include "sea/SeaMesh.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "engine/scene/WaveField.h"
#include "sea/SeaGround.h"

namespace {

constexpr int SIZE = WaveCascade::SIZE;
constexpr int SIDE = SeaMesh::CELLS + 1;
constexpr double SHALLOW = 3.0;   // metres of water from which on waves reach their height
constexpr double SHORE = 30.0;    // and from which on the ground is not seen
constexpr double BURIED = 5.0;    // ground that far above the water hides it for good

using Values = float __attribute__((vector_size(16)));

Values load(const WaveCascade& cascade, std::int64_t column, std::int64_t row) {
    const auto at = static_cast<std::size_t>((row & (SIZE - 1)) * SIZE + (column & (SIZE - 1)));
    Values values;
    std::memcpy(&values, cascade.samples[at].data(), sizeof values);
    return values;
}

Values interpolate(const WaveCascade& cascade, double column, double row) {
    const double whole_column = std::floor(column), whole_row = std::floor(row);
    const auto i = static_cast<std::int64_t>(whole_column), j = static_cast<std::int64_t>(whole_row);
    const auto u = static_cast<float>(column - whole_column), v = static_cast<float>(row - whole_row);
    const Values south = load(cascade, i, j) * (1.0f - u) + load(cascade, i + 1, j) * u;
    const Values north = load(cascade, i, j + 1) * (1.0f - u) + load(cascade, i + 1, j + 1) * u;
    return south * (1.0f - v) + north * v;
}

float fade(double value, double from, double to) {
    return static_cast<float>(std::clamp((to - value) / (to - from), 0.0, 1.0));
}

/// Distance over which a line of `size` from `at` reaches to the origin.
double gapTo(double at, double size) {
    return std::max({at, -at - size, 0.0});
}

}  // namespace

SeaMesh::SeaMesh() : m_vertices(std::size_t(MAX_PATCHES) * VERTICES) {
    for (std::vector<int>& kind : m_kinds) kind.reserve(MAX_PATCHES);
    // A level's vertices must not move yet where the finer level's have ended their move: that is within a patch's side
    // of the finer level's range.
    constexpr double START = 0.82;  // of the range
    m_ranges[0] = 34.0;
    m_ranges[1] = 225.0;  // fine to 100 m, where waves are still seen one by one
    for (int level = 2; level <= MAX_LEVEL; ++level) {
        m_ranges[level] = (m_ranges[level - 1] + std::ldexp(CELLS, level)) / START;
    }
    for (int level = 0; level <= MAX_LEVEL; ++level) m_morphs[level] = START * m_ranges[level];
}

void SeaMesh::update(const SeaMeshView& view, const WaveField& field, const SeaGround* ground) {
    m_view = &view;
    m_field = &field;
    m_ground = ground;
    m_num_patches = 0;
    for (std::vector<int>& kind : m_kinds) kind.clear();
    m_spacing = field.getCascade(1).length / SIZE;
    const double fine = m_ranges[1] * m_spacing, height = std::abs(view.height);
    m_floor = height < fine ? height : fine + 0.5 * (height - fine);

    const double radius = std::min(view.east_radius, view.north_radius);
    const double horizon = std::min(std::sqrt(2.0 * radius * height) * 1.05 + 2000.0, 0.5 * radius);
    const double east = horizon / view.east_scale, north = horizon / view.north_scale;
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
    return std::max({std::abs(east), std::abs(north), m_floor});
}

void SeaMesh::select(const Patch& patch) {
    if (!isVisible(patch)) return;
    const double gap = std::max({gapTo(patch.east, patch.size), gapTo(patch.north, patch.size), m_floor});
    if (patch.level == 0 || gap >= m_ranges[patch.level - 1] * m_spacing) {
        emit(patch);
        return;
    }
    const double half = 0.5 * patch.size;
    for (int i = 0; i < 4; ++i) {
        const int x = i % 2, y = i / 2;
        select({patch.level - 1, 2 * patch.column + x * CELLS, 2 * patch.row + y * CELLS, patch.east + x * half,
                patch.north + y * half, half});
    }
}

bool SeaMesh::isVisible(const Patch& patch) const {
    const SeaMeshView& v = *m_view;
    const double half_east = 0.5 * patch.size * v.east_scale, half_north = 0.5 * patch.size * v.north_scale;
    const double east = patch.east * v.east_scale + half_east, north = patch.north * v.north_scale + half_north;
    const double wide_east = half_east + v.reach_sideways, wide_north = half_north + v.reach_sideways;
    const double far_east = std::abs(east) + half_east, far_north = std::abs(north) + half_north;
    const double drop = far_east * far_east / v.east_radius + far_north * far_north / v.north_radius;
    const double top = -v.height + v.reach_upward, bottom = -v.height - v.reach_upward - drop;
    const double up = 0.5 * (top + bottom), tall = 0.5 * (top - bottom);
    return std::all_of(v.sides.begin(), v.sides.end(), [&](const SeaMeshView::Plane& p) {
        return p.east * east + p.north * north + p.up * up + p.offset + std::abs(p.east) * wide_east +
                   std::abs(p.north) * wide_north + std::abs(p.up) * tall >=
               0.0;
    });
}
