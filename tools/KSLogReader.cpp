// Prints logs of the installer: finds them, finds out whether and how they are enciphered, and
// picks messages. See the usage in ReaderOptions.cpp.
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include "tools/Explanations.h"
#include "tools/LogFolder.h"
#include "tools/LogParser.h"
#include "tools/LogPrinter.h"
#include "tools/LogStream.h"
#include "tools/Password.h"
#include "tools/ReaderOptions.h"

namespace {

constexpr std::chrono::milliseconds kPause(200);  // between two looks at a log that is followed

constexpr int kFailed = 1;
constexpr int kWrongUsage = 2;

void Complain(const std::string& what) {
    fputs(("KSLogReader: " + SafeForTerminal(what) + "\n").c_str(), stderr);
}

void Print(const std::string& text) {
    fwrite(text.data(), 1, text.size(), stdout);
}

class Reader {
  public:
    explicit Reader(const ReaderOptions& given)
        : options(given),
          printer(given.json, isatty(STDOUT_FILENO) != 0 && getenv("NO_COLOR") == nullptr,
                  given.explain) {}

    /// Prints a log. Whether all of it could be read.
    bool Read(const std::string& path);

  private:
    bool Open(const std::string& path, LogStream* log);
    bool Decipher(const std::string& path, LogStream* log);
    bool IsWanted(const LogMessage& message) const;

    const ReaderOptions& options;
    LogPrinter printer;
    std::vector<std::string> passwords;  // those that the user gave for earlier logs
};

bool Reader::Read(const std::string& path) {
    LogStream log;
    if (!Open(path, &log)) {
        return false;
    }
    const std::string name = path.substr(path.rfind('/') + 1);
    LogParser parser(log.IsPadded(), [&](const LogMessage& message) {
        if (IsWanted(message)) {
            Print(printer.Line(name, message));
        }
    });
    for (;;) {
        for (std::string_view piece = log.Next(); !piece.empty(); piece = log.Next()) {
            parser.Take(piece);
        }
        parser.Finish();
        if (!options.follow || log.HasFailed() || fflush(stdout) != 0) {
            break;
        }
        std::this_thread::sleep_for(kPause);
    }
    if (log.HasFailed()) {
        Complain(path + ": reading failed");
    }
    if (log.CutBytes() != 0) {
        Complain(path + ": the log is cut, its last " + std::to_string(log.CutBytes()) +
                 " bytes are left out");
    }
    return !log.HasFailed() && log.CutBytes() == 0 && log.DamagedBytes() == 0;
}

// Leaves the log where its messages begin to come.
bool Reader::Open(const std::string& path, LogStream* log) {
    std::string error = log->Open(path);
    while (error.empty() && log->IsEmpty() && options.follow) {
        std::this_thread::sleep_for(kPause);
        error = log->Open(path);
    }
    if (!error.empty()) {
        Complain(path + ": " + error);
        return false;
    }
    if (log->IsEmpty()) {
        Complain(path + ": the log is empty");
        return false;
    }
    if (!log->IsPlain() && !Decipher(path, log)) {
        return false;
    }
    if (log->DamagedBytes() != 0) {
        Complain(path + ": no message begins in the first " + std::to_string(log->DamagedBytes()) +
                 " bytes; the beginning is damaged");
    }
    return true;
}

bool Reader::Decipher(const std::string& path, LogStream* log) {
    for (const std::string& password : passwords) {
        if (log->IsEncipheredUnder(password)) {
            return true;
        }
    }
    if (options.passwordFile.empty() && log->IsEncipheredUnder(MachinePassword())) {
        return true;
    }
    if (passwords.empty()) {  // standard input has one
        std::string password;
        const std::string error = options.passwordFile.empty()
                                      ? (password = AskForPassword(), "")
                                      : ReadPasswordFile(options.passwordFile, &password);
        if (!error.empty()) {
            Complain(options.passwordFile + ": " + error);
            return false;
        }
        passwords.push_back(password);
        if (log->IsEncipheredUnder(password)) {
            return true;
        }
    }
    Complain(path + ": no log, or one that is enciphered under another password");
    return false;
}

bool Reader::IsWanted(const LogMessage& message) const {
    return SeverityOf(message.level) <= options.severity && message.time >= options.sinceTime &&
           (options.pattern == nullptr ||
            regexec(options.pattern.get(), message.text.c_str(), 0, nullptr, 0) == 0);
}

// One log a line, the newest last.
void PrintList(const std::vector<LogFile>& logs) {
    for (const LogFile& log : logs) {
        Print(StartOf(log) + "  " + std::to_string(log.bytes) + " bytes  " +
              SafeForTerminal(log.path) + "\n");
    }
}

// docs/log-messages.md.
void PrintMessages() {
    Print(
        "# Messages of the log\n\n"
        "What the installer and the product's other programs log, and what to do about it.\n"
        "`KSLogReader --explain` shows the same beside each message, and `KSLogReader --messages` "
        "prints this document.\n"
        "`%@`, `%ld` and `%d` stand for a path, the description of an error or a number.\n\n"
        "| message | level | from | it means | to do |\n|---|---|---|---|---|\n");
    for (const Explanation& each : Explanations()) {
        Print(std::string("| `") + each.text + "` | " + each.level + " | " + each.source + " | " +
              each.meaning + " | " + each.advice + " |\n");
    }
}

// The logs that are to be read; empty, with a message, if there are none.
std::vector<std::string> PickLogs(const ReaderOptions& options) {
    if (!options.logs.empty()) {
        return options.logs;
    }
    std::string error = "there are no logs";
    std::vector<std::string> paths;
    for (const LogFile& log : ListLogs(options.folder, &error)) {
        const bool isSince =
            std::array<int, 3>{log.started[0], log.started[1], log.started[2]} >= options.sinceDay;
        if (options.sinceDay[0] == 0) {
            paths.assign(1, log.path);  // the newest is the last
        } else if (isSince) {
            paths.push_back(log.path);
        }
    }
    if (paths.empty()) {
        Complain(options.folder + ": " + error);
    }
    return paths;
}

int ReadLogs(const ReaderOptions& options) {
    const std::vector<std::string> paths = PickLogs(options);
    bool isWhole = !paths.empty();
    Reader reader(options);
    for (const std::string& path : paths) {
        if (paths.size() > 1 && !options.json) {
            Print("== " + SafeForTerminal(path) + "\n");
        }
        isWhole = reader.Read(path) && isWhole;
    }
    return isWhole ? 0 : kFailed;
}

int List(const ReaderOptions& options) {
    std::string error;
    PrintList(ListLogs(options.folder, &error));
    if (!error.empty()) {
        Complain(options.folder + ": " + error);
    }
    return error.empty() ? 0 : kFailed;
}

int Run(const ReaderOptions& options) {
    using Task = ReaderOptions::Task;
    switch (options.task) {
        case Task::kHelp:
            Print(kReaderUsage);
            return 0;
        case Task::kVersion:
            Print("KSLogReader " KS_VERSION "\n");
            return 0;
        case Task::kMessages:
            PrintMessages();
            return 0;
        case Task::kList:
            return List(options);
        case Task::kWrongUsage:
            Complain(options.complaint);
            fputs(kReaderUsage, stderr);
            return kWrongUsage;
        case Task::kRead:
            break;
    }
    return ReadLogs(options);
}

}  // namespace

int main(int argc, char** argv) {
    const int status = Run(ParseReaderOptions(argc, argv));
    if (fflush(stdout) != 0 || ferror(stdout) != 0) {
        Complain("the output could not be written");
        return kFailed;
    }
    return status;
}
