#include "text/Files.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>

void writeFile(const std::string& path, const std::string& bytes) {
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream file(path, std::ios::binary);
    file << bytes;
    file.close();
    if (!file) throw std::runtime_error("cannot write " + path);
}

void writeFile(const std::string& path, const std::vector<unsigned char>& bytes) {
    writeFile(path, std::string(bytes.begin(), bytes.end()));
}
