#pragma once

#include <sys/types.h>

#include <string>

/// The bytes of a file. Throws std::runtime_error when it cannot be read.
std::string ReadFile(const std::string& path);

/// Makes or replaces a file. Throws std::runtime_error when it cannot be written.
void WriteFile(const std::string& path, const std::string& bytes);

/// Permission bits of what is at a path, links followed. Throws std::runtime_error when nothing is.
mode_t ModeOf(const std::string& path);
