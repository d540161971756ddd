// A model as a tree of named parts, and its file.
#pragma once

#include <string>
#include <vector>

#include "geometry/Mesh.h"

/// A part of a model, written as one node. Mesh and origin are in the frame of the whole model, with every part
/// unrotated. The node has its position at the origin (its hinge) and is rotated about it by `hpr`.
struct Part {
    std::string name;
    dvec3 origin{};
    Mesh mesh{};
    dvec3 hpr{};  ///< (heading, pitch, roll) about (Z, X, Y), degrees
    std::vector<Part> children{};
};

/// Triangles of the part and its descendants.
std::size_t countTriangles(const Part& part);

/// Writes the parts as the top nodes of a binary glTF 2.0 file, in its Y-up frame: (x, y, z) becomes (x, z, -y). Equal
/// parts give equal bytes. Edges with an angle above `crease` degrees are sharp. Throws std::runtime_error when the
/// file cannot be written.
void writeModel(const std::string& path, const std::vector<Part>& parts, double crease = 40.0);
