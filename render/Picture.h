// The picture of a world, in a window or off screen.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "engine/Api.h"

class Engine;

/// Cost of a frame; docs/performance.md lists what each level leaves out.
enum class Quality { LOW, MEDIUM, HIGH };

/// Parts of the picture that can be left out, for measuring.
enum PictureParts : unsigned {
    PART_MESHES = 1,
    PART_SHADOW = 2,
    PART_TERRAIN = 4,
    PART_SEA = 8,
    PART_SKY = 16,
    PART_EFFECTS = 32,  ///< particles, lamps, texts, decals, rain and snow
    PART_ALL = 63
};

struct PictureSettings {
    int width = 1280;  ///< pixels
    int height = 720;
    bool window = false;  ///< otherwise off screen, without a display
    bool fullscreen = false;
    bool vsync = false;
    Quality quality = Quality::MEDIUM;
    double fov = 45.0;  ///< vertical field of view, degrees
    /// Shift of the projection in half widths and half heights: (2, 0) shows the area directly right of the picture.
    std::array<double, 2> shear{0.0, 0.0};
    double yaw = 0.0;  ///< yaw of the channel's view, degrees, positive to the right
    std::string title = "deckview";
};

/// An image as drawn. Rows run from the top.
struct Snapshot {
    int width = 0;
    int height = 0;
    std::vector<unsigned char> rgb;  ///< three bytes per pixel
    std::vector<float> distance;     ///< metres along the view's axis, infinite for sky; empty unless requested
};

/// Draws the engine's world from its camera control's node. Reads the world and never writes to it, except that the
/// world keeps a list of changes from the first frame on. Frame thread only; the engine outlives it.
class Picture {
public:
    virtual ~Picture() = default;

    /// Processes the window's events. False once the window was closed or lost; always true off screen. After it was
    /// closed the last picture can still be drawn and saved.
    virtual bool poll() = 0;
    /// Draws the current world and shows it; no effect once the window was lost.
    virtual void draw() = 0;

    /// Distance, in metres, at which the contrast of a dark object against the horizon is 2 %.
    virtual void setVisibility(double metres) = 0;
    /// A line of text in the upper left corner; empty for none.
    virtual void setStatusLine(const std::string& text) = 0;
    virtual void setTitle(const std::string& title) = 0;  ///< window title, UTF-8; no effect off screen
    virtual void setParts(unsigned parts) = 0;            ///< of `PictureParts`
    virtual void setFullscreen(bool fullscreen) = 0;

    /// The last picture drawn; empty once the window was lost.
    virtual Snapshot capture(bool with_distance = false) = 0;
    /// Writes the last picture drawn as a PNG file; creates its folder when missing. On failure false, with the reason
    /// in `error`.
    virtual bool save(const std::string& file, std::string& error) = 0;
};

/// Version of the layout of these types and of the order of the virtual functions; the library exports the version that
/// it was built with.
constexpr int PICTURE_INTERFACE_VERSION = 1;
extern "C" ENGINE_API const int PictureInterfaceVersion;

/// Makes the picture of an engine's world. Null without a usable display or driver, with the reason and a remedy in
/// `error`. The caller deletes it.
extern "C" ENGINE_API Picture* createPicture(Engine& engine, const PictureSettings& settings, std::string& error);
using PictureFactory = decltype(&createPicture);
