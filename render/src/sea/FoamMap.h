// Foam coverage around a ship.
#pragma once

#include <array>
#include <vector>

#include "engine/math/Transform.h"

class Node;
class ObjectParticles;

/// The foam particles below a decal, drawn in plan view into a square picture for the sea. Its first row is the decal's
/// -Y edge, its first column the -X edge.
class FoamMap {
public:
    static constexpr int SIDE = 256;  ///< texels

    /// Draws all particles below the node again. `to_picture` maps the world to (0..1, 0..1) on the decal;
    /// `texels_per_metre` is the scale of the picture.
    void draw(const Node& decal, const dmat4& to_picture, float texels_per_metre);

    bool isEmpty() const { return m_empty; }
    /// Whether there is foam anywhere in the box, in the picture's 0..1. Conservative by some texels.
    bool isFoamIn(float left, float bottom, float right, float top) const;
    /// Coverage of the water, 0..255, row by row; 0 along the edges.
    const std::vector<unsigned char>& getTexels() const { return m_texels; }

private:
    static constexpr int CELL = 8, CELLS = SIDE / CELL;  ///< texels per side of a cell, cells per side

    void drawSystem(const ObjectParticles& particles, const dmat4& to_picture, float texels_per_metre);
    void drawDisc(float x, float y, float radius, float strength);
    void finishCell(int column, int row);

    std::vector<float> m_thickness = std::vector<float>(std::size_t(SIDE) * SIDE);
    std::vector<unsigned char> m_texels = std::vector<unsigned char>(std::size_t(SIDE) * SIDE);
    std::array<bool, std::size_t(CELLS) * CELLS> m_foamy{};
    bool m_empty = true;
};
