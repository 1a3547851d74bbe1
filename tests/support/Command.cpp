#include "tests/support/Command.h"

#include <cstdio>
#include <stdexcept>

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

std::string Python(const std::string& program, const std::string& arguments) {
    return OutputOf("/usr/bin/python3 - " + arguments + " <<'END OF PROGRAM'\n" + program +
                    "\nEND OF PROGRAM\n");
}
