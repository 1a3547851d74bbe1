#include "tests/support/Command.h"

#include <cstdio>
#include <stdexcept>

namespace {

// The text as one word of a shell command.
std::string Quoted(const std::string& text) {
    std::string word = "'";
    for (const char character : text) {
        word += character == '\'' ? std::string("'\\''") : std::string(1, character);
    }
    return word + "'";
}

}  // namespace

std::string OutputOf(const std::string& command) {
    FILE* pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) {
        throw std::runtime_error("cannot start " + command);
    }
    std::string output;
    char chunk[65536];
    while (const size_t count = fread(chunk, 1, sizeof chunk, pipe)) {
        output.append(chunk, count);
    }
    if (pclose(pipe) != 0) {
        throw std::runtime_error("failed: " + command);
    }
    return output;
}

std::string Python(const std::string& program, const std::vector<std::string>& arguments) {
    std::string command = "/usr/bin/python3 -";
    for (const std::string& argument : arguments) {
        command += " " + Quoted(argument);
    }
    return OutputOf(command + " <<'END OF PROGRAM'\n" + program + "\nEND OF PROGRAM\n");
}
