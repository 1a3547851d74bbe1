#pragma once

#include <string>
#include <vector>

/// What a shell command writes to standard output. Throws std::runtime_error when it fails.
std::string OutputOf(const std::string& command);

/// What a Python program prints: an independent judge of what the product wrote.
/// @param arguments  reach the program as they are, as sys.argv[1] and so on
std::string Python(const std::string& program, const std::vector<std::string>& arguments = {});
