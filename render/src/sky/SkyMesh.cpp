// Geometry of the sky, made once at the start.
#include "sky/SkyMesh.h"

osg::ref_ptr<osg::Geometry> makeGeometry(osg::Vec3Array* places) {
    osg::ref_ptr<osg::Geometry> geometry = new osg::Geometry;
    geometry->setUseDisplayList(false);
    geometry->setUseVertexBufferObjects(true);
    geometry->setCullingActive(false);
    geometry->setVertexArray(places);
    return geometry;
}

osg::ref_ptr<osg::DrawElementsUShort> makeTriangles(int columns, int rows) {
    osg::ref_ptr<osg::DrawElementsUShort> triangles = new osg::DrawElementsUShort(GL_TRIANGLES);
    for (int row = 1; row < rows; ++row) {
        for (int column = 1; column < columns; ++column) {
            const int corner = row * columns + column, below = corner - columns;
            for (const int c : {corner - 1, corner, below - 1, below - 1, corner, below}) {
                triangles->push_back(static_cast<GLushort>(c));
            }
        }
    }
    return triangles;
}
