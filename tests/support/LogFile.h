#pragma once

#include <cstdarg>
#include <string>

#include "logging/CLogger.h"

/// A log file for one test: a fresh path under /private/tmp, read back as it is or deciphered by
/// openssl.
class LogFile {
  public:
    LogFile();
    ~LogFile();
    LogFile(const LogFile&) = delete;
    LogFile& operator=(const LogFile&) = delete;

    const std::string& Path() const { return path; }
    std::string Bytes() const;
    /// The file deciphered with AES-256-ECB under `key`, by the openssl program.
    std::string Deciphered(const std::string& key) const;

  private:
    std::string path;
};

/// "HH:MM:SS" replaced by the letters themselves in every header of `text`.
std::string WithoutTime(const std::string& text);

/// LogPrint with arguments.
void Print(CLogger& logger, CLogger::LogLevel level, const char* format, ...)
    __attribute__((format(printf, 3, 4)));

/// `key` as InitLogger takes it.
const uint8_t* KeyBytes(const std::string& key);
