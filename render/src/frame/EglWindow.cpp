// An OpenGL context over EGL without a display server: a surfaceless display, otherwise the display of a device.
#include "frame/EglWindow.h"

#include <EGL/egl.h>
#include <EGL/eglext.h>
#include <osg/State>
#include <osgViewer/GraphicsWindow>

namespace {

EGLDisplay openPlatform(EGLenum platform, void* native) {
    const auto get = reinterpret_cast<PFNEGLGETPLATFORMDISPLAYEXTPROC>(eglGetProcAddress("eglGetPlatformDisplayEXT"));
    const EGLDisplay display = get ? get(platform, native, nullptr) : EGL_NO_DISPLAY;
    return display != EGL_NO_DISPLAY && eglInitialize(display, nullptr, nullptr) ? display : EGL_NO_DISPLAY;
}

EGLDisplay openFirstDevice() {
    const auto query = reinterpret_cast<PFNEGLQUERYDEVICESEXTPROC>(eglGetProcAddress("eglQueryDevicesEXT"));
    EGLDeviceEXT devices[8];
    EGLint count = 0;
    if (!query || !query(8, devices, &count)) return EGL_NO_DISPLAY;
    for (int i = 0; i < count; ++i) {
        const EGLDisplay display = openPlatform(EGL_PLATFORM_DEVICE_EXT, devices[i]);
        if (display != EGL_NO_DISPLAY) return display;
    }
    return EGL_NO_DISPLAY;
}

class EglWindow final : public osgViewer::GraphicsWindow {
public:
    explicit EglWindow(osg::GraphicsContext::Traits* traits) {
        _traits = traits;
        setState(new osg::State);
        getState()->setGraphicsContext(this);
        getState()->setContextID(osg::GraphicsContext::createNewContextID());
        getEventQueue()->syncWindowRectangleWithGraphicsContext();
    }
    ~EglWindow() override { EglWindow::closeImplementation(); }

    /// Error text; empty on success.
    const char* open();

    bool valid() const override { return m_context != EGL_NO_CONTEXT; }
    bool realizeImplementation() override { return valid(); }
    bool isRealizedImplementation() const override { return valid(); }
    void closeImplementation() override;
    bool makeCurrentImplementation() override { return eglMakeCurrent(m_display, m_surface, m_surface, m_context); }
    bool releaseContextImplementation() override {
        return eglMakeCurrent(m_display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    }
    void swapBuffersImplementation() override {}

private:
    EGLDisplay m_display = EGL_NO_DISPLAY;
    EGLSurface m_surface = EGL_NO_SURFACE;
    EGLContext m_context = EGL_NO_CONTEXT;
};

const char* EglWindow::open() {
    m_display = openPlatform(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY);
    if (m_display == EGL_NO_DISPLAY) m_display = openFirstDevice();
    if (m_display == EGL_NO_DISPLAY) return "EGL offers neither a surfaceless display nor a device";
    if (!eglBindAPI(EGL_OPENGL_API)) return "EGL has no OpenGL";
    const EGLint wanted[] = {EGL_SURFACE_TYPE, EGL_PBUFFER_BIT, EGL_RENDERABLE_TYPE, EGL_OPENGL_BIT, EGL_NONE};
    EGLConfig config;
    EGLint count = 0;
    if (!eglChooseConfig(m_display, wanted, &config, 1, &count) || count == 0) return "EGL has no OpenGL configuration";
    const EGLint size[] = {EGL_WIDTH, 1, EGL_HEIGHT, 1, EGL_NONE};  // the picture has its own framebuffers
    m_surface = eglCreatePbufferSurface(m_display, config, size);
    m_context = eglCreateContext(m_display, config, EGL_NO_CONTEXT, nullptr);
    return m_surface == EGL_NO_SURFACE || m_context == EGL_NO_CONTEXT ? "EGL gives no OpenGL context" : "";
}

void EglWindow::closeImplementation() {
    if (m_display == EGL_NO_DISPLAY) return;
    eglMakeCurrent(m_display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    if (m_context != EGL_NO_CONTEXT) eglDestroyContext(m_display, m_context);
    if (m_surface != EGL_NO_SURFACE) eglDestroySurface(m_display, m_surface);
    m_context = EGL_NO_CONTEXT;
    m_surface = EGL_NO_SURFACE;
    m_display = EGL_NO_DISPLAY;
}

}  // namespace

osg::ref_ptr<osg::GraphicsContext> makeOffscreenContext(int width, int height, std::string& error) {
    osg::ref_ptr<osg::GraphicsContext::Traits> traits = new osg::GraphicsContext::Traits;
    traits->width = width;
    traits->height = height;
    osg::ref_ptr<EglWindow> window = new EglWindow(traits);
    error = window->open();
    return error.empty() ? window : nullptr;
}
