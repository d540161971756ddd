// Writes whole files into a runtime root.
#pragma once

#include <string>
#include <vector>

/// Writes the bytes and replaces an existing file. Creates missing folders. Throws std::runtime_error when the file
/// cannot be written.
void writeFile(const std::string& path, const std::string& bytes);
void writeFile(const std::string& path, const std::vector<unsigned char>& bytes);
