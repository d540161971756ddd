// Pictures as files.
#pragma once

#include <string>

#include "render/Picture.h"

/// Writes a PNG file; the folder is made when missing. False, with `error` saying why, when that fails.
bool writePng(Snapshot picture, const std::string& file, std::string& error);
