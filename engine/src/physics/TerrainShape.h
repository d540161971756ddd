// A window of terrain as a Bullet shape: the triangles between an elevation raster's posts.
#pragma once

#include <btBulletCollisionCommon.h>

#include <vector>

#include "engine/scene/ObjectTerrain.h"

/// A window of cells, stored as geocentric offsets from a nearby origin, without rotation. Triangles are made for the
/// box of each query; only the posts are stored.
class TerrainShape final : public btConcaveShape {
public:
    TerrainShape(const ObjectTerrain& terrain, const btVector3& origin);

    const btVector3& getOrigin() const { return m_origin; }
    /// Drops the window; later offsets are from the new origin.
    void setOrigin(const btVector3& origin);
    /// Moves the window when it does not contain the ground below a geocentric box. False when no ground of the raster
    /// is near the box.
    bool cover(const btVector3& box_min, const btVector3& box_max);

    void processAllTriangles(btTriangleCallback* callback, const btVector3& box_min,
                             const btVector3& box_max) const override;
    void getAabb(const btTransform& pose, btVector3& box_min, btVector3& box_max) const override;
    void calculateLocalInertia(btScalar, btVector3& inertia) const override { inertia.setZero(); }
    void setLocalScaling(const btVector3&) override {}
    const btVector3& getLocalScaling() const override { return m_scaling; }
    const char* getName() const override { return "terrain"; }

private:
    /// Cells, inclusive; empty when last < first.
    struct Window {
        int first_column = 0, first_row = 0, last_column = -1, last_row = -1;

        bool isEmpty() const { return last_column < first_column || last_row < first_row; }
        bool holds(const Window& w) const {
            return w.first_column >= first_column && w.first_row >= first_row && w.last_column <= last_column &&
                   w.last_row <= last_row;
        }
        void clip(const Window& w);
        void widen(int cells);
    };

    Window toCells(const btVector3& box_min, const btVector3& box_max) const;
    void fill(const Window& window);

    const ElevationRaster& m_raster;
    btVector3 m_origin;
    btVector3 m_scaling{1, 1, 1};
    Window m_all;  ///< the raster's cells
    Window m_window;
    btVector3 m_box_min{0, 0, 0}, m_box_max{0, 0, 0};  ///< of the window's posts, from the origin
    std::vector<btVector3> m_posts;                    ///< row by row from the south-west; NaN for holes
};
