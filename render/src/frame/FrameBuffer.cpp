// The picture's framebuffers: created when the size changes, resolved and shown at the end of each frame.
#include "frame/FrameBuffer.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr GLenum COLOR_FORMAT = GL_RGBA8, DEPTH_FORMAT = GL_DEPTH_COMPONENT32F;

}  // namespace

GLuint FrameBuffer::makeBuffer(GLenum format, int samples, GLenum attachment) {
    GLuint buffer = 0;
    m_gl.glGenRenderbuffers(1, &buffer);
    m_gl.glBindRenderbuffer(GL_RENDERBUFFER, buffer);
    if (samples > 1) {
        m_gl.glRenderbufferStorageMultisample(GL_RENDERBUFFER, samples, format, m_width, m_height);
    } else {
        m_gl.glRenderbufferStorage(GL_RENDERBUFFER, format, m_width, m_height);
    }
    m_gl.glFramebufferRenderbuffer(GL_FRAMEBUFFER, attachment, GL_RENDERBUFFER, buffer);
    return buffer;
}

GLuint FrameBuffer::makeTarget(int samples, GLuint& color, GLuint& depth) {
    GLuint target = 0;
    m_gl.glGenFramebuffers(1, &target);
    m_gl.glBindFramebuffer(GL_FRAMEBUFFER, target);
    color = makeBuffer(COLOR_FORMAT, samples, GL_COLOR_ATTACHMENT0);
    depth = makeBuffer(DEPTH_FORMAT, samples, GL_DEPTH_ATTACHMENT);
    return target;
}

bool FrameBuffer::resize(int width, int height) {
    if (width == m_width && height == m_height) return true;
    release();
    m_width = width;
    m_height = height;
    m_draw = makeTarget(m_samples, m_draw_color, m_draw_depth);
    bool good = m_gl.glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;
    if (m_samples > 1) {
        m_result = makeTarget(1, m_result_color, m_result_depth);
        good = good && m_gl.glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;
    } else {
        m_result = m_draw;
    }
    if (!good) release();
    return good;
}

void FrameBuffer::release() {
    if (m_width == 0) return;
    const GLuint targets[] = {m_draw, m_result},
                 buffers[] = {m_draw_color, m_draw_depth, m_result_color, m_result_depth};
    m_gl.glDeleteFramebuffers(m_result != m_draw ? 2 : 1, targets);
    m_gl.glDeleteRenderbuffers(m_result != m_draw ? 4 : 2, buffers);
    m_width = m_height = 0;
}

void FrameBuffer::resolve() {
    if (m_result != m_draw) {
        m_gl.glBindFramebuffer(GL_READ_FRAMEBUFFER, m_draw);
        m_gl.glBindFramebuffer(GL_DRAW_FRAMEBUFFER, m_result);
        m_gl.glBlitFramebuffer(0, 0, m_width, m_height, 0, 0, m_width, m_height, GL_COLOR_BUFFER_BIT, GL_NEAREST);
    }
    m_gl.glBindFramebuffer(GL_FRAMEBUFFER, m_result);
}

void FrameBuffer::show(int width, int height) {
    m_gl.glBindFramebuffer(GL_READ_FRAMEBUFFER, m_result);
    m_gl.glBindFramebuffer(GL_DRAW_FRAMEBUFFER, 0);
    m_gl.glBlitFramebuffer(0, 0, m_width, m_height, 0, 0, width, height, GL_COLOR_BUFFER_BIT, GL_NEAREST);
}

Snapshot FrameBuffer::read(bool with_distance, double near) {
    Snapshot shot;
    if (m_width == 0) return shot;
    shot.width = m_width;
    shot.height = m_height;
    const std::size_t row = static_cast<std::size_t>(m_width), rows = static_cast<std::size_t>(m_height);
    shot.rgb.resize(row * rows * 3);
    m_gl.glBindFramebuffer(GL_READ_FRAMEBUFFER, m_result);
    glReadBuffer(GL_COLOR_ATTACHMENT0);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, m_width, m_height, GL_RGB, GL_UNSIGNED_BYTE, shot.rgb.data());
    for (std::size_t y = 0; y < rows / 2; ++y) {
        std::swap_ranges(&shot.rgb[y * row * 3], &shot.rgb[y * row * 3] + row * 3, &shot.rgb[(rows - 1 - y) * row * 3]);
    }
    if (!with_distance) return shot;

    if (m_result != m_draw) {
        m_gl.glBindFramebuffer(GL_READ_FRAMEBUFFER, m_draw);
        m_gl.glBindFramebuffer(GL_DRAW_FRAMEBUFFER, m_result);
        m_gl.glBlitFramebuffer(0, 0, m_width, m_height, 0, 0, m_width, m_height, GL_DEPTH_BUFFER_BIT, GL_NEAREST);
        m_gl.glBindFramebuffer(GL_FRAMEBUFFER, m_result);
    }
    shot.distance.resize(row * rows);
    glReadPixels(0, 0, m_width, m_height, GL_DEPTH_COMPONENT, GL_FLOAT, shot.distance.data());
    for (std::size_t y = 0; y < rows / 2; ++y) {
        std::swap_ranges(&shot.distance[y * row], &shot.distance[y * row] + row, &shot.distance[(rows - 1 - y) * row]);
    }
    for (float& value : shot.distance) {
        value = value > 0.0f ? static_cast<float>(near / value) : std::numeric_limits<float>::infinity();
    }
    return shot;
}
