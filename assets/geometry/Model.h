// A model as a tree of named parts, and its file.
#pragma once

#include <string>
#include <vector>

#include "geometry/Mesh.h"

/// A part of a model and the node that it becomes. Mesh and origin are in the whole model's frame, with every part
/// unturned; the written node has its origin there (its hinge) and is turned about it by `hpr`.
struct Part {
    std::string name;
    dvec3 origin{};
    Mesh mesh{};
    dvec3 hpr{};  ///< (heading, pitch, roll) about (Z, X, Y), degrees
    std::vector<Part> children{};
};

/// Triangles of the part and everything below it.
std::size_t countTriangles(const Part& part);

/// Writes the parts as the top nodes of a binary glTF 2.0 file, turned to its Y-up frame: (x, y, z) becomes (x, z, -y).
/// The same parts give the same bytes. Edges sharper than `crease` degrees stay sharp. Throws std::runtime_error when
/// the file cannot be written.
void writeModel(const std::string& path, const std::vector<Part>& parts, double crease = 40.0);
