// The picture of a world, in a window or off screen.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "engine/Api.h"

class Engine;

/// How much is spent on a frame; docs/performance.md tells what each leaves out.
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
    bool window = false;  ///< else off screen, without a display
    bool fullscreen = false;
    bool vsync = false;
    Quality quality = Quality::MEDIUM;
    double fov = 45.0;  ///< vertical field of view, degrees
    /// Shift of the projection in half widths and half heights: (2, 0) shows what lies right of the picture's edge.
    std::array<double, 2> shear{0.0, 0.0};
    double yaw = 0.0;  ///< of the channel's view, degrees, positive to the right
    std::string title = "deckview";
};

/// A picture as it was drawn. Rows run from the top.
struct Snapshot {
    int width = 0;
    int height = 0;
    std::vector<unsigned char> rgb;  ///< three bytes a pixel
    std::vector<float> distance;     ///< metres along the view's axis, infinite where only sky is; when asked for
};

/// Draws the engine's world from its camera control's node. Reads the world and never writes to it, except that the
/// world keeps a list of changes from the first frame on. Frame thread only; the engine outlives it.
class Picture {
public:
    virtual ~Picture() = default;

    /// Takes in what the window has to tell. False once it was closed or lost; always true off screen. After it was
    /// closed the last picture can still be drawn and saved.
    virtual bool poll() = 0;
    /// Draws the world as it is now and shows it; nothing once the window was lost.
    virtual void draw() = 0;

    /// The distance, in metres, at which a dark object's contrast against the horizon has fallen to 2 %.
    virtual void setVisibility(double metres) = 0;
    /// A line of text in the upper left corner; empty for none.
    virtual void setStatusLine(const std::string& text) = 0;
    virtual void setTitle(const std::string& title) = 0;  ///< of the window, UTF-8; nothing off screen
    virtual void setParts(unsigned parts) = 0;            ///< of `PictureParts`
    virtual void setFullscreen(bool fullscreen) = 0;

    /// The picture drawn last; empty once the window was lost.
    virtual Snapshot capture(bool with_distance = false) = 0;
    /// Writes the picture drawn last as a PNG file, its folder made when missing. False, with `error` saying why, when
    /// that fails.
    virtual bool save(const std::string& file, std::string& error) = 0;
};

/// Number of these types' layout and of the order of the virtual operations; the library exports the one that it was
/// built with.
constexpr int PICTURE_INTERFACE_VERSION = 1;
extern "C" ENGINE_API const int PictureInterfaceVersion;

/// Makes the picture of an engine's world. Null, with `error` saying why and what to do, without a usable display or
/// driver. The caller deletes it.
extern "C" ENGINE_API Picture* createPicture(Engine& engine, const PictureSettings& settings, std::string& error);
using PictureFactory = decltype(&createPicture);
