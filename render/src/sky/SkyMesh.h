// Small helpers for what the sky is drawn with.
#pragma once

#include <osg/Geometry>
#include <osg/StateSet>

/// A uniform that changes from frame to frame, added to the state.
template <class Value>
osg::Uniform* addUniform(osg::StateSet& state, const char* name, const Value& value) {
    auto* const uniform = new osg::Uniform(name, value);
    uniform->setDataVariance(osg::Object::DYNAMIC);
    state.addUniform(uniform);
    return uniform;
}

/// A geometry over those places that is never culled.
osg::ref_ptr<osg::Geometry> makeGeometry(osg::Vec3Array* places);
/// The triangles of a grid of vertices that is stored row by row.
osg::ref_ptr<osg::DrawElementsUShort> makeTriangles(int columns, int rows);
