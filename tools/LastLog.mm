#include "tools/LastLog.h"

#include <unistd.h>

#include <unordered_set>

#include "product/Keys.h"
#include "product/Places.h"
#include "settings/LocalSettings_Mac.h"
#include "tools/Explanations.h"
#include "tools/LogFolder.h"
#include "tools/LogParser.h"
#include "tools/LogStream.h"
#include "tools/Password.h"

namespace {

constexpr int kFailure = 2;

bool IsLoggingEnabled() {
    @autoreleasepool {
        return [[LocalSettings_Mac GetSettingValueForName:@KS_LOGGING_ENABLED_KEY] isEqual:@"1"];
    }
}

// The same text once, whenever it came first.
void Note(const LogMessage& message, std::unordered_set<std::string>* known, LogStatus* logs) {
    const int severity = SeverityOf(message.level);
    if (severity == 0 || severity > kFailure || !known->insert(message.text).second) {
        return;
    }
    const Explanation* found = Explain(message);
    logs->failures.push_back({message.time, message.level, message.text,
                              found != nullptr ? found->meaning : "",
                              found != nullptr ? found->advice : ""});
}

std::string Read(const std::string& path, LogStatus* logs) {
    LogStream log;
    std::string error = log.Open(path);
    if (!error.empty() || log.IsEmpty()) {
        return error;
    }
    if (!log.IsPlain() && !log.IsEncipheredUnder(MachinePassword())) {
        return "no log, or one that is enciphered under another password than the settings'";
    }
    std::unordered_set<std::string> known;
    LogParser parser(log.IsPadded(),
                     [&known, logs](const LogMessage& message) { Note(message, &known, logs); });
    for (std::string_view piece = log.Next(); !piece.empty(); piece = log.Next()) {
        parser.Take(piece);
    }
    parser.Finish();
    return log.HasFailed() ? "reading failed" : "";
}

}  // namespace

LogStatus LookAtLogs() {
    LogStatus logs;
    logs.isEnabled = IsLoggingEnabled();
    const std::string folder = KS_DATA_FOLDER "logs";
    if (access(folder.c_str(), F_OK) != 0) {
        return logs;
    }
    std::string error;
    for (const LogFile& each : ListLogs(folder, &error)) {
        logs.kept.push_back({each.path, StartOf(each), each.bytes});
    }
    if (error.empty() && !logs.kept.empty()) {
        error = Read(logs.kept.back().path, &logs);
        logs.unreadable = error.empty() ? "" : logs.kept.back().path + ": " + error;
    } else if (!error.empty()) {
        logs.unreadable = folder + ": " + error;
    }
    return logs;
}
