// The picture, based on the scene graph's viewer: its parts, its context and its frame.
#pragma once

#include <osgViewer/Viewer>

#include <memory>

#include "base/FrameUniforms.h"
#include "base/FrameView.h"
#include "base/ShaderLibrary.h"
#include "effects/EffectsLayer.h"
#include "effects/StatusText.h"
#include "frame/FrameBuffer.h"
#include "frame/WorldMirror.h"
#include "render/Picture.h"
#include "sea/SeaLayer.h"
#include "shadow/ShadowPass.h"
#include "sky/SkyLayer.h"
#include "terrain/TerrainLayer.h"

class WorldPicture final : public Picture {
public:
    explicit WorldPicture(Engine& engine, const PictureSettings& settings);
    ~WorldPicture() override;

    /// False without a usable context, with the reason in `error`.
    bool open(std::string& error);

    bool poll() override;
    void draw() override;
    void setVisibility(double metres) override;
    void setStatusLine(const std::string& text) override;
    void setTitle(const std::string& title) override;
    void setParts(unsigned parts) override;
    void setFullscreen(bool fullscreen) override;
    Snapshot capture(bool with_distance) override;
    bool save(const std::string& file, std::string& error) override;

private:
    void buildScene();
    void setUpCamera();
    void updateView();
    /// Makes the context current; false once the window was lost.
    bool takeContext();
    void abandonContext();
    /// Whether the user has closed the window; it still exists.
    bool isClosing();
    void watchFocus();
    void beginPass();
    void endPass();

    Engine& m_engine;
    PictureSettings m_settings;
    FrameView m_view;
    int m_window_width = 0, m_window_height = 0;  ///< window size before full screen
    unsigned m_frames_drawn = 0;
    void (*m_release_compiler)() =
        nullptr;               ///< frees memory of the driver's shader compiler; null where the driver cannot
    bool m_is_lost = false;    ///< the display connection was lost while the window was open
    bool m_has_focus = false;  ///< of the keyboard
    ShaderLibrary m_shaders;
    osg::ref_ptr<osg::GraphicsContext> m_context;
    osgViewer::Viewer m_viewer;
    osg::ref_ptr<osg::Group> m_root;  ///< root of the main pass
    std::unique_ptr<FrameBuffer> m_buffer;
    std::unique_ptr<FrameUniforms> m_uniforms;
    std::unique_ptr<SkyLayer> m_sky;
    std::unique_ptr<TerrainLayer> m_terrain;
    std::unique_ptr<SeaLayer> m_sea;
    std::unique_ptr<EffectsLayer> m_effects;
    std::unique_ptr<StatusText> m_status;
    std::unique_ptr<WorldMirror> m_mirror;
    std::unique_ptr<ShadowPass> m_shadow;
};
