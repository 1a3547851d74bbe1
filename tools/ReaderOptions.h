#pragma once

#include <regex.h>

#include <array>
#include <memory>
#include <string>
#include <vector>

/// What the command line asks of the log reader.
struct ReaderOptions {
    enum class Task { kRead, kList, kMessages, kHelp, kVersion, kWrongUsage };

    struct RegexFree {
        void operator()(regex_t* compiled) const {
            regfree(compiled);
            delete compiled;
        }
    };

    Task task = Task::kRead;
    std::string complaint;          ///< of kWrongUsage
    std::vector<std::string> logs;  ///< none: the newest, or those since a day
    std::string folder;             ///< where logs are looked for
    std::string passwordFile;
    int severity = 4;                             ///< the least severe level that is shown
    std::string sinceTime;                        ///< "HH:MM:SS", or empty
    std::array<int, 3> sinceDay = {};             ///< year, month, day; zeros for any
    std::unique_ptr<regex_t, RegexFree> pattern;  ///< of texts that are shown, or null
    bool json = false;
    bool follow = false;
    bool explain = false;
};

/// Reads the command line; prints nothing.
ReaderOptions ParseReaderOptions(int argc, char** argv);

/// The usage, for people.
extern const char kReaderUsage[];
