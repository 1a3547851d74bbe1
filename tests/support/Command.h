#pragma once

#include <string>

/// What a shell command writes to standard output. Throws std::runtime_error when it fails.
std::string OutputOf(const std::string& command);

/// What a Python program prints; `arguments` are the shell words behind it. An independent judge of
/// what the product wrote.
std::string Python(const std::string& program, const std::string& arguments = std::string());
