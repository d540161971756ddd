// Geometry with the sea's own vertices.
#pragma once

#include <osg/Geometry>

/// Triangles between vertices that move in every frame: local positions, and positions at rest (texture coordinates 0).
/// The arrays are shared with all other users of these vertices.
inline osg::ref_ptr<osg::Geometry> makeSeaGeometry(osg::Vec3Array* places, osg::Vec3Array* rests,
                                                   osg::DrawElementsUInt* indices) {
    osg::ref_ptr<osg::Geometry> geometry = new osg::Geometry;
    geometry->setUseDisplayList(false);
    geometry->setUseVertexBufferObjects(true);
    geometry->setCullingActive(false);
    geometry->setDataVariance(osg::Object::DYNAMIC);
    geometry->setVertexArray(places);
    geometry->setTexCoordArray(0, rests);
    indices->setDataVariance(osg::Object::DYNAMIC);
    geometry->addPrimitiveSet(indices);
    return geometry;
}
