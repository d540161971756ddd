// Stencil letters and digits drawn on images.
#pragma once

#include <string>

#include "geometry/Canvas.h"

/// Draws text in block capitals with bevelled corners, `height` metres tall, its foot's middle at (x, y), upright along
/// `heading` (degrees clockwise from up). Knows A to Z, digits, '-' and space; others are left blank. `slant` leans
/// the letters to the right by that share of their height.
void letter(Canvas& canvas, const std::string& text, double x, double y, double height, double heading,
            const Color& color, double stroke = 0.16, double slant = 0.0);
