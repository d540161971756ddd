// The framebuffer that the picture is drawn into before it is shown or read.
#pragma once

#include <osg/GLExtensions>

#include "render/Picture.h"

/// A colour buffer and a depth buffer of 32-bit floats with reversed depth: near is 1, infinity is 0. At 10 km it still
/// resolves 3 mm. REQUIRES a current context for every operation and for the destruction.
class FrameBuffer {
public:
    /// `samples` per pixel; the driver may give fewer.
    FrameBuffer(osg::GLExtensions& gl, int samples) : m_gl(gl), m_samples(samples) {}
    ~FrameBuffer() { release(); }
    FrameBuffer(const FrameBuffer&) = delete;
    FrameBuffer& operator=(const FrameBuffer&) = delete;

    /// Creates the buffers again when the size has changed. False when the driver cannot create them; there are none
    /// then.
    bool resize(int width, int height);
    GLuint getDrawId() const { return m_draw; }  ///< framebuffer that the scene is drawn into
    /// Resolves the samples and binds the framebuffer with the result, so that later drawing goes over it.
    void resolve();
    /// Copies the result to the window's own buffer.
    void show(int width, int height);
    /// Reads the result; REQUIRES that it was resolved. Distances are near / depth. Empty snapshot without buffers.
    Snapshot read(bool with_distance, double near);

private:
    void release();
    GLuint makeBuffer(GLenum format, int samples, GLenum attachment);
    GLuint makeTarget(int samples, GLuint& color, GLuint& depth);

    osg::GLExtensions& m_gl;
    int m_samples;
    int m_width = 0, m_height = 0;
    GLuint m_draw = 0, m_draw_color = 0, m_draw_depth = 0;
    /// result of `resolve`; identical to the draw buffers without multisampling
    GLuint m_result = 0, m_result_color = 0, m_result_depth = 0;
};
