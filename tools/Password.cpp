#include "tools/Password.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <iostream>

namespace {

std::string FirstLine(std::istream& lines) {
    std::string line;
    std::getline(lines, line);
    if (!line.empty() && line.back() == '\r') {
        line.pop_back();
    }
    return line;
}

}  // namespace

std::string ReadPasswordFile(const std::string& path, std::string* password) {
    errno = 0;
    std::ifstream file(path, std::ios::binary);
    if (!file.is_open()) {
        return strerror(errno);
    }
    *password = FirstLine(file);
    return file.bad() ? strerror(errno) : "";
}

std::string AskForPassword() {
    if (isatty(STDIN_FILENO) == 0) {
        return FirstLine(std::cin);
    }
    const char* typed = getpass("Logging password: ");
    return typed == nullptr ? std::string() : typed;
}
