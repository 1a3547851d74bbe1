// Tells how the product's browser extensions stand on this machine, without changing anything. See
// the usage in StatusOptions.cpp.
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "tools/LogPrinter.h"
#include "tools/StatusOptions.h"
#include "tools/StatusPrinter.h"
#include "tools/StatusReport.h"

namespace {

constexpr int kWrongUsage = 2;
constexpr int kFailed = 3;

void Print(const std::string& text) {
    fwrite(text.data(), 1, text.size(), stdout);
}

void Complain(const std::string& what) {
    fputs(("KSStatus: " + SafeForTerminal(what) + "\n").c_str(), stderr);
}

int Report(const StatusOptions& options) {
    const StatusReport report = LookAtMachine();
    const bool colour = isatty(STDOUT_FILENO) != 0 && getenv("NO_COLOR") == nullptr;
    Print(options.json ? StatusForPrograms(report, options)
                       : StatusForPeople(report, options, colour));
    return report.Status();
}

int Run(const StatusOptions& options) {
    using Task = StatusOptions::Task;
    switch (options.task) {
        case Task::kHelp:
            Print(kStatusUsage);
            return 0;
        case Task::kVersion:
            Print("KSStatus " KS_VERSION "\n");
            return 0;
        case Task::kWrongUsage:
            Complain(options.complaint);
            fputs(kStatusUsage, stderr);
            return kWrongUsage;
        case Task::kReport:
            break;
    }
    return Report(options);
}

}  // namespace

int main(int argc, char** argv) {
    const int status = Run(ParseStatusOptions(argc, argv));
    if (fflush(stdout) != 0 || ferror(stdout) != 0) {
        Complain("the output could not be written");
        return kFailed;
    }
    return status;
}
