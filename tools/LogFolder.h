#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

/// A log that stands in a folder of logs.
struct LogFile {
    std::string path;
    std::array<int, 6> started;  ///< year, month, day, hour, minute, second, as the name tells
    int64_t bytes;
};

/// The files of a folder that are named like logs ("2024_3_5_9_7_2.log"), the oldest first.
/// @param error  gets the reason, for people, when the folder cannot be listed; else untouched
std::vector<LogFile> ListLogs(const std::string& folder, std::string* error);

/// "2024-03-05 09:07:02".
std::string StartOf(const LogFile& log);
