// Image files.
#pragma once

#include <string>

#include "render/Picture.h"

/// Writes a PNG file; creates its folder when missing. On failure false, with the reason in `error`.
bool writePng(Snapshot picture, const std::string& file, std::string& error);
