// What the picture is drawn into before it is shown or read.
#pragma once

#include <osg/GLExtensions>

#include "render/Picture.h"

/// A colour buffer and a depth buffer of 32-bit floats in which near is 1 and infinitely far is 0: at 10 km it still
/// tells 3 mm apart. REQUIRES a current context for every operation and for the destruction.
class FrameBuffer {
public:
    /// `samples` a pixel; the driver may give fewer.
    FrameBuffer(osg::GLExtensions& gl, int samples) : m_gl(gl), m_samples(samples) {}
    ~FrameBuffer() { release(); }
    FrameBuffer(const FrameBuffer&) = delete;
    FrameBuffer& operator=(const FrameBuffer&) = delete;

    /// Makes the buffers anew when the size is another. False when the driver cannot; there are none then.
    bool resize(int width, int height);
    GLuint getDrawId() const { return m_draw; }  ///< framebuffer that the scene is drawn into
    /// Folds the samples together and binds what holds the result, for drawing over it.
    void resolve();
    /// Copies the result to the window's own buffer.
    void show(int width, int height);
    /// Reads the result; REQUIRES that it was resolved. Distances are near / depth. Empty without buffers.
    Snapshot read(bool with_distance, double near);

private:
    void release();
    GLuint makeBuffer(GLenum format, int samples, GLenum attachment);
    GLuint makeTarget(int samples, GLuint& color, GLuint& depth);

    osg::GLExtensions& m_gl;
    int m_samples;
    int m_width = 0, m_height = 0;
    GLuint m_draw = 0, m_draw_color = 0, m_draw_depth = 0;
    GLuint m_result = 0, m_result_color = 0, m_result_depth = 0;  ///< the same as drawn into without samples
};
