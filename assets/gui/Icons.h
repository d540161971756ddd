// The panels' images.
#pragma once

#include <string>

/// Writes the camera bar's three icons below a runtime root. Throws std::runtime_error when one cannot be written.
void writeIcons(const std::string& root);
