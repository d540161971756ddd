// Writing whole files below a runtime root.
#pragma once

#include <string>
#include <vector>

/// Writes the bytes, in place of what was there. Missing folders are made. Throws std::runtime_error when the file
/// cannot be written.
void writeFile(const std::string& path, const std::string& bytes);
void writeFile(const std::string& path, const std::vector<unsigned char>& bytes);
