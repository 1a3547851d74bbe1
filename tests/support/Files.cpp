#include "tests/support/Files.h"

#include <sys/stat.h>

#include <array>
#include <fstream>
#include <stdexcept>

std::string ReadFile(const std::string& path) {
    std::ifstream stream(path, std::ios::binary);
    std::string bytes;
    std::array<char, 65536> chunk;
    while (stream.read(chunk.data(), chunk.size()) || stream.gcount() > 0) {
        bytes.append(chunk.data(), static_cast<size_t>(stream.gcount()));
    }
    if (!stream.eof()) {
        throw std::runtime_error("cannot read " + path);
    }
    return bytes;
}

void WriteFile(const std::string& path, const std::string& bytes) {
    std::ofstream stream(path, std::ios::binary | std::ios::trunc);
    stream << bytes;
    stream.close();
    if (!stream) {
        throw std::runtime_error("cannot write " + path);
    }
}

mode_t ModeOf(const std::string& path) {
    struct stat status = {};
    if (stat(path.c_str(), &status) != 0) {
        throw std::runtime_error("nothing at " + path);
    }
    return status.st_mode & 07777;
}
