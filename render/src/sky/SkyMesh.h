// Small helpers for what the sky is drawn with.
#pragma once

#include <osg/Geometry>
#include <osg/StateSet>

/// A geometry over those places that is never culled.
osg::ref_ptr<osg::Geometry> makeGeometry(osg::Vec3Array* places);
/// The triangles of a grid of vertices that is stored row by row.
osg::ref_ptr<osg::DrawElementsUShort> makeTriangles(int columns, int rows);
