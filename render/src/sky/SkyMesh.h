// Helpers for the sky's geometry.
#pragma once

#include <osg/Geometry>
#include <osg/StateSet>

/// A geometry with these vertices that is never culled.
osg::ref_ptr<osg::Geometry> makeGeometry(osg::Vec3Array* places);
/// Triangles of a grid of vertices that is stored row by row.
osg::ref_ptr<osg::DrawElementsUShort> makeTriangles(int columns, int rows);
