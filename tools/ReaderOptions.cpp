#include "tools/ReaderOptions.h"

#include <getopt.h>

#include <algorithm>
#include <cctype>
#include <cstdio>

#include "product/Places.h"
#include "tools/LogParser.h"

const char kReaderUsage[] =
    "usage: KSLogReader [OPTION...] [LOG...]\n"
    "\n"
    "Prints logs of the installer, plain or enciphered; without LOG the newest one.\n"
    "\n"
    "  --list                the logs that are kept, with date and size\n"
    "  --folder DIR          where they are (" KS_DATA_FOLDER
    "logs)\n"
    "  --password-file FILE  its first line is the logging password\n"
    "  --level LEVEL         only this level and more severe: critical, failure, warning, info\n"
    "  --since HH:MM[:SS]    only messages from this time on\n"
    "  --since YYYY-MM-DD    all logs of this day and later\n"
    "  --grep PATTERN        only messages whose text matches, an extended regular expression\n"
    "  --explain             with each message what it means and what to do\n"
    "  --json                one object a line: log, time, level, text; source, meaning, advice\n"
    "  --follow              go on while the log is being written, until interrupted\n"
    "  --messages            every known message with its meaning, as a document\n"
    "  --help, --version\n"
    "\n"
    "The password of an enciphered log is taken from --password-file; else from this machine's\n"
    "settings, if it fits; else it is asked for on a terminal, or is the first line of standard\n"
    "input.\n"
    "\n"
    "Status: 0; 1 when something could not be read, with a message; 2 for wrong usage.\n";

namespace {

enum Option : int {
    kList = 1,
    kFolder,
    kPasswordFile,
    kLevel,
    kSince,
    kGrep,
    kExplain,
    kJson,
    kFollow,
    kMessages,
    kHelp,
    kVersion,
};

const std::array<option, 13> kOptions = {{
    {"list", no_argument, nullptr, kList},
    {"folder", required_argument, nullptr, kFolder},
    {"password-file", required_argument, nullptr, kPasswordFile},
    {"level", required_argument, nullptr, kLevel},
    {"since", required_argument, nullptr, kSince},
    {"grep", required_argument, nullptr, kGrep},
    {"explain", no_argument, nullptr, kExplain},
    {"json", no_argument, nullptr, kJson},
    {"follow", no_argument, nullptr, kFollow},
    {"messages", no_argument, nullptr, kMessages},
    {"help", no_argument, nullptr, kHelp},
    {"version", no_argument, nullptr, kVersion},
    {nullptr, 0, nullptr, 0},
}};

// Whether the text is as the format, which ends in %n, reads it from end to end.
template <typename... Numbers>
bool Scan(const std::string& text, const char* format, Numbers*... numbers) {
    int length = 0;
    sscanf(text.c_str(), format, numbers..., &length);
    return length > 0 && static_cast<size_t>(length) == text.size();
}

bool ReadLevel(std::string word, ReaderOptions* options) {
    std::transform(word.begin(), word.end(), word.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::toupper(letter)); });
    options->severity = SeverityOf(word);
    return options->severity != 0;
}

bool ReadSince(const std::string& text, ReaderOptions* options) {
    std::array<int, 3>& day = options->sinceDay;
    if (Scan(text, "%4d-%2d-%2d%n", &day[0], &day[1], &day[2])) {
        return true;
    }
    day = {};
    int hour = 0;
    int minute = 0;
    int second = 0;
    if (!Scan(text, "%2d:%2d:%2d%n", &hour, &minute, &second) &&
        !Scan(text, "%2d:%2d%n", &hour, &minute)) {
        return false;
    }
    std::array<char, 40> time = {};
    snprintf(time.data(), time.size(), "%02d:%02d:%02d", hour, minute, second);
    options->sinceTime = time.data();
    return true;
}

bool ReadPattern(const char* text, ReaderOptions* options) {
    auto pattern = std::make_unique<regex_t>();
    if (regcomp(pattern.get(), text, REG_EXTENDED | REG_NOSUB) != 0) {
        return false;
    }
    options->pattern.reset(pattern.release());
    return true;
}

// Whether the option's argument is one.
bool Take(int option, const char* argument, ReaderOptions* options) {
    using Task = ReaderOptions::Task;
    switch (option) {
        case kList:
            options->task = Task::kList;
            return true;
        case kMessages:
            options->task = Task::kMessages;
            return true;
        case kHelp:
            options->task = Task::kHelp;
            return true;
        case kVersion:
            options->task = Task::kVersion;
            return true;
        case kFolder:
            options->folder = argument;
            return true;
        case kPasswordFile:
            options->passwordFile = argument;
            return true;
        case kLevel:
            return ReadLevel(argument, options);
        case kSince:
            return ReadSince(argument, options);
        case kGrep:
            return ReadPattern(argument, options);
        case kExplain:
            return options->explain = true;
        case kJson:
            return options->json = true;
        case kFollow:
            return options->follow = true;
        default:
            return false;
    }
}

}  // namespace

ReaderOptions ParseReaderOptions(int argc, char** argv) {
    ReaderOptions options;
    options.folder = KS_DATA_FOLDER "logs";
    const auto refuse = [&options](const std::string& complaint) {
        options.task = ReaderOptions::Task::kWrongUsage;
        options.complaint = complaint;
    };
    opterr = 0;
    int index = 0;
    for (int option = 0; (option = getopt_long(argc, argv, "", kOptions.data(), &index)) != -1;) {
        if (option == '?') {
            refuse(std::string("no such option, or no argument: ") + argv[optind - 1]);
            return options;
        }
        if (!Take(option, optarg, &options)) {
            refuse(std::string("--") + kOptions[static_cast<size_t>(index)].name +
                   " does not take " + optarg);
            return options;
        }
    }
    options.logs.assign(argv + optind, argv + argc);
    const bool isDay = options.sinceDay[0] != 0;
    if (std::count(options.logs.begin(), options.logs.end(), "") != 0) {
        refuse("a log has a name");
    } else if (options.follow && (options.logs.size() > 1 || isDay)) {
        refuse("only one log can be followed");
    } else if (isDay && !options.logs.empty()) {
        refuse("a day picks logs by itself");
    } else if (options.task != ReaderOptions::Task::kRead && !options.logs.empty()) {
        refuse("a log is named where none is read");
    }
    return options;
}
