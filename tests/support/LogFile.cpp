#include "tests/support/LogFile.h"

#include <stdlib.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <regex>
#include <stdexcept>

#include "tests/support/Command.h"

namespace {

std::string Hex(const std::string& bytes) {
    std::string digits;
    for (const char byte : bytes) {
        char pair[3];
        snprintf(pair, sizeof pair, "%02hhx", static_cast<unsigned char>(byte));
        digits += pair;
    }
    return digits;
}

}  // namespace

LogFile::LogFile() {
    char name[] = "/private/tmp/logXXXXXX";
    const int descriptor = mkstemp(name);
    if (descriptor < 0) {
        throw std::runtime_error("no temporary file");
    }
    close(descriptor);
    path = name;
}

LogFile::~LogFile() {
    unlink(path.c_str());
}

std::string LogFile::Bytes() const {
    std::ifstream stream(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(stream), {});
}

std::string LogFile::Deciphered(const std::string& key) const {
    return OutputOf("openssl enc -d -aes-256-ecb -nopad -K " + Hex(key) + " -in " + path);
}

std::string WithoutTime(const std::string& text) {
    static const std::regex time("\n[0-2][0-9]:[0-5][0-9]:[0-6][0-9] - ");
    return std::regex_replace(text, time, "\nHH:MM:SS - ");
}

void Print(CLogger& logger, CLogger::LogLevel level, const char* format, ...) {
    va_list args;
    va_start(args, format);
    logger.LogPrint(level, format, args);
    va_end(args);
}

const uint8_t* KeyBytes(const std::string& key) {
    return reinterpret_cast<const uint8_t*>(key.data());
}
