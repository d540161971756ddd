// The level part of a surface, such as a ship's deck, used as an occluder for eyes above it.
#pragma once

#include <array>
#include <memory>
#include <vector>

#include "engine/math/Transform.h"

struct MeshSurface;

class LevelTop {
public:
    /// Null when no level part of the surface is large enough to hide much. Slits narrower than a metre count as
    /// closed.
    static std::unique_ptr<LevelTop> find(const MeshSurface& surface);

    /// Metres from the eye to its bounds; infinite when the eye is below it, where it hides nothing. Positions are in
    /// the mesh's frame, metres.
    double getDistance(const dvec3& eye) const;
    /// Whether the whole box with these corners is hidden from an eye above the top.
    bool hides(const dvec3& eye, const std::array<dvec3, 8>& corners) const;

private:
    LevelTop() = default;
    /// Marks the cells covered by a triangle.
    void close(const std::array<dvec3, 3>& triangle, std::vector<char>& closed) const;
    void sum(const std::vector<char>& closed);
    std::size_t cellAt(int column, int row) const { return static_cast<std::size_t>(row * m_columns + column); }
    std::size_t cornerAt(int column, int row) const { return static_cast<std::size_t>(row * (m_columns + 1) + column); }

    double m_height = 0.0, m_left = 0.0, m_bottom = 0.0;  ///< top's height and the grid's corner, metres
    double m_cell = 1.0;                                  ///< side of a grid cell, metres
    int m_columns = 0, m_rows = 0;
    std::vector<int> m_open;  ///< summed-area table: number of open cells left of and below each cell corner
};

/// A level top in the world; `top` is null for none.
struct Cover {
    const LevelTop* top = nullptr;
    dmat4 place;  ///< pose: from the mesh's frame to the world
};
