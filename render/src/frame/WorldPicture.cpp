// Opens the context, creates the parts and draws the frame: apply changes, compute light, update parts, draw the scene
// into the picture's own framebuffer, show it.
#include "frame/WorldPicture.h"

#include <malloc.h>
#include <osg/ClipControl>
#include <osg/CullFace>
#include <osg/Depth>
#include <osg/DisplaySettings>
#include <osgGA/GUIEventHandler>
#include <osgViewer/GraphicsWindow>
#include <osgViewer/Renderer>
#include <osgViewer/api/X11/GraphicsWindowX11>

#include <algorithm>
#include <bit>
#include <cmath>
#include <filesystem>

#include "base/Convert.h"
#include "base/NotifyLog.h"
#include "base/TextureStore.h"
#include "engine/camera/CameraControl.h"
#include "engine/core/Engine.h"
#include "engine/input/InputRouter.h"
#include "engine/math/jMath.h"
#include "engine/scene/World.h"
#include "engine/text/Log.h"
#include "frame/EglWindow.h"
#include "frame/ImageFile.h"
#include "gui/GuiDrawable.h"
#include "gui/WindowInput.h"

namespace {

constexpr double NEAR = 0.2;  // metres; the far plane is at infinity
constexpr int MAX_SIZE = 16384;
constexpr int WINDOW_CORNER = 40;  // pixels from the screen's upper left corner

/// F11 switches full screen on and off.
struct FullscreenKey final : osgGA::GUIEventHandler {
    explicit FullscreenKey(std::function<void()> f) : toggle(std::move(f)) {}
    bool handle(const osgGA::GUIEventAdapter& event, osgGA::GUIActionAdapter&) override {
        const bool is_mine = event.getEventType() == osgGA::GUIEventAdapter::KEYDOWN &&
                             event.getKey() == osgGA::GUIEventAdapter::KEY_F11;
        if (is_mine) toggle();
        return is_mine;
    }
    std::function<void()> toggle;
};

/// A step of the frame that runs with the context current, as a callback of the scene graph.
struct PassHook final : osg::Camera::DrawCallback {
    explicit PassHook(std::function<void()> f) : run(std::move(f)) {}
    void operator()(osg::RenderInfo&) const override { run(); }
    std::function<void()> run;
};

/// A window of the settings' size, reduced to the size of the screen; the settings are updated to the actual size.
osg::ref_ptr<osg::GraphicsContext> makeWindow(PictureSettings& settings, std::string& error) {
    osg::ref_ptr<osg::GraphicsContext::Traits> traits = new osg::GraphicsContext::Traits;
    traits->readDISPLAY();
    traits->setUndefinedScreenDetailsToDefaultScreen();
    unsigned width = 0, height = 0;
    if (auto* const system = osg::GraphicsContext::getWindowingSystemInterface()) {
        system->getScreenResolution(*traits, width, height);
    }
    if (width > 0 && height > 0) {
        settings.width = std::min(settings.width, static_cast<int>(width));
        settings.height = std::min(settings.height, static_cast<int>(height));
    }
    traits->x = std::clamp(static_cast<int>(width) - settings.width, 0, WINDOW_CORNER);
    traits->y = std::clamp(static_cast<int>(height) - settings.height, 0, WINDOW_CORNER);
    traits->width = settings.width;
    traits->height = settings.height;
    traits->windowName = settings.title;
    traits->windowDecoration = true;
    traits->supportsResize = true;
    traits->doubleBuffer = true;
    traits->vsync = settings.vsync;
    osg::ref_ptr<osg::GraphicsContext> context = osg::GraphicsContext::createGraphicsContext(traits);
    if (!context || !context->valid()) error = "no window can be opened; is DISPLAY right? --headless needs none";
    return context && context->valid() ? context : nullptr;
}

/// Without this handler the X library ends the process when its server is lost.
void surviveLoss(osg::GraphicsContext& context, bool& lost) {
    auto& window = dynamic_cast<osgViewer::GraphicsWindowX11&>(context);
    XSetIOErrorHandler([](Display*) { return 0; });
    const auto keepRunning = [](Display*, void* flag) { *static_cast<bool*>(flag) = true; };
    for (Display* display : {window.getDisplayToUse(), window.getEventDisplay()}) {
        XSetIOErrorExitHandler(display, keepRunning, &lost);
    }
}

/// Display value of radiance times exposure; the same curve as in the shaders.
float displayOf(float value) {
    const float x = std::max(value - 0.004f, 0.0f);
    return x * (6.2f * x + 0.5f) / (x * (6.2f * x + 1.7f) + 0.06f);
}

int samplesOf(Quality quality) {
    return quality == Quality::HIGH ? 4 : 1;
}

}  // namespace

WorldPicture::WorldPicture(Engine& engine, const PictureSettings& settings)
    : m_engine(engine), m_settings(settings), m_root(new osg::Group) {
    m_view.quality = settings.quality;
}

WorldPicture::~WorldPicture() {
    if (!m_context) return;
    if (!takeContext()) {
        abandonContext();
        return;
    }
    m_buffer.reset();
    m_viewer.setSceneData(nullptr);
    m_context->close();
}

void WorldPicture::abandonContext() {
    // The objects of a lost context cannot be released.
    m_buffer.release();
    m_context->ref();
    m_viewer.getCamera()->setGraphicsContext(nullptr);
}

bool WorldPicture::takeContext() {
    return !m_is_lost && m_context->valid() && m_context->makeCurrent();
}

bool WorldPicture::open(std::string& error) {
    const auto fits = [](int size) { return size >= 1 && size <= MAX_SIZE; };
    if (!fits(m_settings.width) || !fits(m_settings.height)) {
        error = "a picture is 1 to 16384 pixels wide and high";
        return false;
    }
    routeNotices();
    // A texture frees its image once all contexts have it; a picture has one context.
    osg::DisplaySettings::instance()->setMaxNumberOfGraphicsContexts(1);
    m_context = m_settings.window ? makeWindow(m_settings, error)
                                  : makeOffscreenContext(m_settings.width, m_settings.height, error);
    if (!m_context) return false;
    setUpCamera();
    m_viewer.realize();
    if (m_settings.window) surviveLoss(*m_context, m_is_lost);
    if (m_settings.fullscreen) {
        m_settings.fullscreen = false;
        setFullscreen(true);
    }
    m_context->makeCurrent();
    osg::GLExtensions* const gl = m_context->getState()->get<osg::GLExtensions>();
    if (!gl || gl->glslLanguageVersion < 3.3f || !gl->glBlitFramebuffer || !gl->glClipControl) {
        error = "the graphics driver is too old: OpenGL 3.3 with GL_ARB_clip_control is needed";
        return false;
    }
    m_buffer = std::make_unique<FrameBuffer>(*gl, samplesOf(m_settings.quality));
    if (!m_buffer->resize(m_settings.width, m_settings.height)) {
        error = "the graphics driver has no memory for a picture of that size";
        return false;
    }
    osg::setGLExtensionFuncPtr(m_release_compiler, "glReleaseShaderCompiler");
    setTextureAnisotropy(m_settings.quality == Quality::HIGH ? 8.0f : 1.0f);
    buildScene();
    m_engine.getInput()->resize(m_settings.width, m_settings.height);
    return true;
}

void WorldPicture::setUpCamera() {
    m_viewer.setThreadingModel(osgViewer::Viewer::SingleThreaded);
    m_viewer.setKeyEventSetsDone(0);
    m_viewer.setReleaseContextAtEndOfFrameHint(false);
    m_viewer.addEventHandler(new WindowInput(*m_engine.getInput()));
    m_viewer.addEventHandler(new FullscreenKey([this] { setFullscreen(!m_settings.fullscreen); }));
    osg::Camera& camera = *m_viewer.getCamera();
    camera.setGraphicsContext(m_context);
    camera.setViewport(0, 0, m_settings.width, m_settings.height);
    camera.setComputeNearFarMode(osg::CullSettings::DO_NOT_COMPUTE_NEAR_FAR);
    camera.setProjectionResizePolicy(osg::Camera::FIXED);
    camera.setDrawBuffer(GL_COLOR_ATTACHMENT0);
    camera.setReadBuffer(GL_COLOR_ATTACHMENT0);
    camera.setClearDepth(0.0);
    camera.setSmallFeatureCullingPixelSize(1.0f);
    camera.setPreDrawCallback(new PassHook([this] { beginPass(); }));
    camera.setFinalDrawCallback(new PassHook([this] { endPass(); }));
}

void WorldPicture::buildScene() {
    osg::StateSet& state = *m_root->getOrCreateStateSet();
    state.setAttribute(new osg::ClipControl(osg::ClipControl::LOWER_LEFT, osg::ClipControl::ZERO_TO_ONE));
    state.setAttributeAndModes(new osg::Depth(osg::Depth::GEQUAL, 0.0, 1.0));
    state.setAttributeAndModes(new osg::CullFace(osg::CullFace::BACK));
    m_uniforms = std::make_unique<FrameUniforms>(state);
    m_sky = std::make_unique<SkyLayer>(*m_root, m_shaders);
    m_terrain = std::make_unique<TerrainLayer>(*m_root, m_shaders);
    m_sea = std::make_unique<SeaLayer>(*m_root, m_shaders);
    m_effects = std::make_unique<EffectsLayer>(*m_root, m_shaders);
    m_mirror = std::make_unique<WorldMirror>(*m_engine.getWorld(), *m_root, m_shaders, *m_terrain, *m_sea, *m_effects);
    state.setTextureAttribute(UNIT_SKY, m_sky->getRadiance());
    m_status = std::make_unique<StatusText>(*m_root, m_shaders);
    osg::ref_ptr<osg::Group> passes = new osg::Group;
    m_shadow = std::make_unique<ShadowPass>(*passes, state, m_mirror->getMeshes(), m_shaders, m_settings.quality);
    passes->addChild(m_root);
    passes->addChild(GuiDrawable::makeOverlay(*m_engine.getUIRoot(), m_shaders));
    m_viewer.setSceneData(passes);
    // Programs are compiled when first drawn. Compiled ahead they would lack the defines of parent nodes, and would be
    // compiled twice.
    static_cast<osgViewer::Renderer*>(m_viewer.getCamera()->getRenderer())->setCompileOnNextDraw(false);
}

/// The scene graph would close the window in its traversal, before the last picture could be saved. Events that arrive
/// after this check are newer than the frame and wait for the next traversal.
bool WorldPicture::isClosing() {
    auto* const window = dynamic_cast<osgViewer::GraphicsWindow*>(m_context.get());
    if (!window || !m_settings.window) return false;
    window->checkEvents();
    osgGA::EventQueue::Events events;
    window->getEventQueue()->copyEvents(events);
    return std::any_of(events.begin(), events.end(), [](const osg::ref_ptr<osgGA::Event>& event) {
        const osgGA::GUIEventAdapter* const input = event->asGUIEventAdapter();
        return input && input->getEventType() == osgGA::GUIEventAdapter::CLOSE_WINDOW;
    });
}

/// Keys held at the loss of focus are released: their release events go to another window.
void WorldPicture::watchFocus() {
    auto& window = dynamic_cast<osgViewer::GraphicsWindowX11&>(*m_context);
    Window focus = None;
    int revert = 0;
    XGetInputFocus(window.getEventDisplay(), &focus, &revert);
    const bool has_focus = focus == window.getWindow();
    if (m_has_focus && !has_focus) m_engine.getInput()->focusLost();
    m_has_focus = has_focus;
}

bool WorldPicture::poll() {
    m_viewer.advance(m_engine.getTime());
    if (isClosing()) return false;
    m_viewer.eventTraversal();
    if (m_settings.window) watchFocus();
    if (m_is_lost) jLog::error("the window was lost: its display server has gone");
    if (m_is_lost || !m_context->valid()) return false;
    const osg::GraphicsContext::Traits& traits = *m_context->getTraits();
    if (m_settings.window) {
        m_settings.width = std::clamp(traits.width, 1, MAX_SIZE);
        m_settings.height = std::clamp(traits.height, 1, MAX_SIZE);
        if (m_settings.width != m_view.width || m_settings.height != m_view.height) {
            m_engine.getInput()->resize(m_settings.width, m_settings.height);
        }
    }
    return true;
}

void WorldPicture::updateView() {
    m_view.width = m_settings.width;
    m_view.height = m_settings.height;
    if (const Node* const node = m_engine.getCameraControl()->getNode()) m_view.camera = node->getWorldTransform();
    if (m_settings.yaw != 0.0) {
        m_view.camera = m_view.camera * dmat4(dquat(dvec3(0.0, 1.0, 0.0), -m_settings.yaw), dvec3());
    }
    const EllipsoidModel& globe = m_engine.getEllipsoid();
    m_view.local = globe.getWGSTransform(m_view.camera.t);
    m_view.geodetic = globe.toWGS(m_view.camera.t);
    m_view.dt = m_engine.getTime() - m_view.time;
    m_view.time = m_engine.getTime();
    m_view.view = toOsg(inverse(m_view.camera));

    // Depth = near / distance; the shear shifts the picture in half widths and half heights.
    const double scale = 1.0 / std::tan(m_settings.fov * 0.5 * jMath::DEG2RAD);
    const double aspect = static_cast<double>(m_view.width) / m_view.height;
    m_view.focal = 0.5 * m_view.height * scale;
    m_view.middle = normalize(m_view.camera.x * (m_settings.shear[0] * aspect / scale) +
                              m_view.camera.y * (m_settings.shear[1] / scale) - m_view.camera.z);
    m_view.projection = osg::Matrixd(scale / aspect, 0.0, 0.0, 0.0, 0.0, scale, 0.0, 0.0, m_settings.shear[0],
                                     m_settings.shear[1], 0.0, -1.0, 0.0, 0.0, NEAR, 0.0);
}

void WorldPicture::draw() {
    if (!takeContext()) return;
    World& world = *m_engine.getWorld();
    m_mirror->update();
    if (!m_buffer->resize(m_settings.width, m_settings.height)) {
        jLog::error("the graphics driver has no memory for a picture of %dx%d", m_settings.width, m_settings.height);
        return;
    }
    updateView();
    m_view.wetness = world.getEnvironment().wetness;
    m_view.snow = world.getEnvironment().snow;
    m_view.light = m_sky->update(m_view, world.getEnvironment());
    m_terrain->update(m_view);
    const Cover cover = m_mirror->getMeshes().findCover(m_view.camera.t);
    m_sea->update(m_view, cover);
    m_effects->update(m_view, world);
    m_status->resize(m_view.width, m_view.height);
    m_shadow->update(m_view, cover);
    m_uniforms->update(m_view);

    osg::Camera& camera = *m_viewer.getCamera();
    camera.setViewport(0, 0, m_view.width, m_view.height);
    // Gaps between distant objects show haze.
    const vec3 haze = m_view.light.horizon * m_view.light.exposure;
    camera.setClearColor({displayOf(haze.x), displayOf(haze.y), displayOf(haze.z), 1.0f});
    camera.setViewMatrix(m_view.view);
    camera.setProjectionMatrix(m_view.projection);
    camera.setLODScale(static_cast<float>(1.0 / m_view.focal));
    m_root->setNodeMask(world.isEnabled() ? ~0u : 0u);
    // Parts that draw into their own framebuffers must leave this one bound.
    m_context->setDefaultFboId(m_buffer->getDrawId());
    m_viewer.updateTraversal();
    m_viewer.renderingTraversals();
    // Images and shaders are made in the first frames; the memory freed after that is returned to the system.
    ++m_frames_drawn;
    if (m_frames_drawn <= 256 && std::has_single_bit(m_frames_drawn)) {
        if (m_release_compiler) m_release_compiler();
        malloc_trim(0);
    }
}

void WorldPicture::beginPass() {
    m_context->getState()->get<osg::GLExtensions>()->glBindFramebuffer(GL_FRAMEBUFFER, m_buffer->getDrawId());
}

void WorldPicture::endPass() {
    m_buffer->resolve();
    if (m_settings.window) m_buffer->show(m_view.width, m_view.height);
}

void WorldPicture::setVisibility(double metres) {
    // Koschmieder's law: contrast is 2 % at the visibility distance.
    m_view.extinction = 3.912 / (metres >= 1.0 ? metres : 1.0);
}

void WorldPicture::setStatusLine(const std::string& text) {
    m_status->set(text);
}

void WorldPicture::setTitle(const std::string& title) {
    m_settings.title = title;
    auto* const window = dynamic_cast<osgViewer::GraphicsWindowX11*>(m_context.get());
    if (!window || !takeContext()) return;
    // The scene graph's own call supports Latin letters only.
    Display* const display = window->getEventDisplay();
    XChangeProperty(display, window->getWindow(), XInternAtom(display, "_NET_WM_NAME", False),
                    XInternAtom(display, "UTF8_STRING", False), 8, PropModeReplace,
                    reinterpret_cast<const unsigned char*>(title.c_str()), static_cast<int>(title.size()));
    XFlush(display);
}

void WorldPicture::setParts(unsigned parts) {
    m_mirror->getMeshes().setVisible(parts & PART_MESHES);
    m_terrain->setVisible(parts & PART_TERRAIN);
    m_sea->setVisible(parts & PART_SEA);
    m_sky->setVisible(parts & PART_SKY);
    m_effects->setVisible(parts & PART_EFFECTS);
    m_shadow->setVisible(parts & PART_SHADOW);
}

void WorldPicture::setFullscreen(bool fullscreen) {
    auto* const window = dynamic_cast<osgViewer::GraphicsWindow*>(m_context.get());
    if (!window || !m_settings.window || fullscreen == m_settings.fullscreen || !takeContext()) return;
    m_settings.fullscreen = fullscreen;
    window->setWindowDecoration(!fullscreen);
    if (!fullscreen) {
        window->setWindowRectangle(WINDOW_CORNER, WINDOW_CORNER, m_window_width, m_window_height);
        return;
    }
    const osg::GraphicsContext::Traits& traits = *m_context->getTraits();
    m_window_width = traits.width;
    m_window_height = traits.height;
    unsigned width = 0, height = 0;
    osg::GraphicsContext::getWindowingSystemInterface()->getScreenResolution(traits, width, height);
    window->setWindowRectangle(0, 0, static_cast<int>(width), static_cast<int>(height));
}

Snapshot WorldPicture::capture(bool with_distance) {
    return takeContext() ? m_buffer->read(with_distance, NEAR) : Snapshot();
}

bool WorldPicture::save(const std::string& file, std::string& error) {
    Snapshot shot = capture(false);
    if (!shot.rgb.empty()) return writePng(std::move(shot), file, error);
    error = "\"" + file + "\" was not written: ";
    error += takeContext() ? "the graphics driver has no memory for the picture" : "the window is gone";
    return false;
}

extern "C" const int PictureInterfaceVersion = PICTURE_INTERFACE_VERSION;

extern "C" Picture* createPicture(Engine& engine, const PictureSettings& settings, std::string& error) {
    auto picture = std::make_unique<WorldPicture>(engine, settings);
    return picture->open(error) ? picture.release() : nullptr;
}
