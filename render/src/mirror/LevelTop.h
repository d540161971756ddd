// The level part of a surface, such as a ship's deck, as that which hides from an eye above what lies under it.
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

    /// Metres from the eye to its bounds; infinite from where it hides nothing, below it. Places are in the mesh's
    /// frame, metres.
    double getDistance(const dvec3& eye) const;
    /// Whether all between those corners is hidden from an eye above it.
    bool hides(const dvec3& eye, const std::array<dvec3, 8>& corners) const;

private:
    LevelTop() = default;
    /// Marks the cells under a triangle.
    void close(const std::array<dvec3, 3>& triangle, std::vector<char>& closed) const;
    void sum(const std::vector<char>& closed);
    std::size_t cellAt(int column, int row) const { return static_cast<std::size_t>(row * m_columns + column); }
    std::size_t cornerAt(int column, int row) const { return static_cast<std::size_t>(row * (m_columns + 1) + column); }

    double m_height = 0.0, m_left = 0.0, m_bottom = 0.0;  ///< of the grid's corner
    double m_cell = 1.0;                                  ///< side of a cell of the grid
    int m_columns = 0, m_rows = 0;
    std::vector<int> m_open;  ///< how many cells left of and below each of their corners let something be seen
};

/// A level top in the world; none where `top` is null.
struct Cover {
    const LevelTop* top = nullptr;
    dmat4 place;  ///< from the mesh's frame to the world
};
