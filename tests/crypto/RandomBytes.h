#pragma once

#include <random>
#include <string>

/// Bytes drawn from `engine`.
inline std::string RandomBytes(std::mt19937_64& engine, size_t length) {
    std::string bytes(length, '\0');
    for (char& byte : bytes) {
        byte = static_cast<char>(engine());
    }
    return bytes;
}
