// Stencil letters and digits for images.
#pragma once

#include <string>

#include "geometry/Canvas.h"

/// Draws text in block capitals with bevelled corners, `height` metres tall, with the middle of its foot at (x, y),
/// upright along `heading` (degrees clockwise from up). Supports A to Z, digits, '-' and space; other characters are
/// left blank. `slant`: lean of the letters to the right, as a fraction of their height.
void letter(Canvas& canvas, const std::string& text, double x, double y, double height, double heading,
            const Color& color, double stroke = 0.16, double slant = 0.0);
