#include "tools/StatusPrinter.h"

#include "tools/LogPrinter.h"

namespace {

using Verdict = BrowserStatus::Verdict;

constexpr char kRed[] = "\x1b[31m";
constexpr char kGreen[] = "\x1b[32m";
constexpr char kYellow[] = "\x1b[33m";
constexpr char kPlain[] = "\x1b[0m";

std::string Line(const std::string& text, size_t indent = 0) {
    return std::string(indent, ' ') + SafeForTerminal(text) + '\n';
}

std::string VerdictOf(const BrowserStatus& browser) {
    std::string verdict;
    switch (browser.verdict) {
        case Verdict::kNotInstalled:
            verdict = "not installed";
            break;
        case Verdict::kWell:
            verdict = browser.files.empty() ? "nothing to integrate" : "integrated";
            break;
        case Verdict::kNotIntegrated:
            verdict = "not integrated";
            break;
        case Verdict::kDead:
            verdict = "dead: the browser would refuse the integration";
            break;
    }
    return verdict + (browser.wouldChange ? "; a run would change something" : "");
}

const char* ColourOf(const BrowserStatus& browser) {
    if (browser.verdict == Verdict::kDead || browser.verdict == Verdict::kNotIntegrated) {
        return kRed;
    }
    return browser.wouldChange ? kYellow : kGreen;
}

std::string ForPeople(const ApplicationStatus& application) {
    return application.path +
           (application.version.empty() ? "" : ", version " + application.version);
}

std::string ForPeople(const Change& change) {
    std::string what;
    for (const std::string& each : change.what) {
        what += (what.empty() ? "  (" : ", ") + each;
    }
    return WordOf(change.kind) + "  " + change.path + what + (what.empty() ? "" : ")");
}

std::string ForPeople(const FileStatus& file) {
    std::string text = Line(file.role + (file.isThere ? ": " : ", missing: ") + file.path, 2);
    for (const std::string& fault : file.faults) {
        text += Line(fault, 6);
    }
    return text;
}

std::string ForPeople(const BrowserStatus& browser, bool colour) {
    std::string text = colour ? ColourOf(browser) : "";
    text += browser.name + ": " + VerdictOf(browser);
    text += colour ? std::string(kPlain) + '\n' : "\n";
    if (browser.isInstalled) {
        text += Line(ForPeople(browser.application) + (browser.isRunning ? ", running" : ""), 2);
        for (const FileStatus& file : browser.files) {
            text += ForPeople(file);
        }
    }
    if (!browser.passwords.empty()) {
        text += Line("its own password keeping: " + browser.passwords, 2);
    }
    if (!browser.leftovers.empty()) {
        text += Line("a run would remove or edit:", 2);
    }
    for (const Change& each : browser.leftovers) {
        text += Line(ForPeople(each), 6);
    }
    for (const ApplicationStatus& each : browser.channels) {
        text += Line("not reached by a run: " + each.name + ", " + ForPeople(each), 2);
    }
    for (const std::string& each : browser.profiles) {
        text += Line("not reached by a run: the profile " + each, 2);
    }
    return text + '\n';
}

std::string ForPeople(const LogStatus& logs) {
    std::string text =
        Line(std::string("Logs: the next run ") + (logs.isEnabled ? "writes one" : "writes none"));
    for (const LogStatus::Kept& each : logs.kept) {
        text += Line(each.started + "  " + std::to_string(each.bytes) + " bytes  " + each.path, 2);
    }
    if (!logs.unreadable.empty()) {
        text += Line("cannot be read: " + logs.unreadable, 2);
    }
    if (!logs.failures.empty()) {
        text += Line("The last run failed at:", 2);
    }
    for (const LogFinding& each : logs.failures) {
        text += Line(each.time + "  " + each.text, 6);
        if (!each.meaning.empty()) {
            text += Line("It means: " + each.meaning, 8) + Line("To do: " + each.advice, 8);
        }
    }
    return text;
}

std::string ForPeople(const RunPlan& plan, const char* verdict) {
    std::string text = Line(std::string("Administrator rights ") + verdict + ": a run asks " +
                            std::to_string(plan.prompts) + " times at most, and these paths are");
    for (const Change& each : plan.changes) {
        text += Line(ForPeople(each), 2);
    }
    text += plan.changes.empty() ? Line("none", 2) : "";
    text += plan.keychain ? Line(
                                "rewritten, if it is there: the keychain's item "
                                "\"Safari Extensions List\"",
                                2)
                          : "";
    return text + (plan.page ? Line("opened: the privacy page, in Firefox", 2) : "") + '\n';
}

}  // namespace

std::string WordOf(Change::Kind kind) {
    switch (kind) {
        case Change::Kind::kCreated:
            return "created";
        case Change::Kind::kRemoved:
            return "removed";
        case Change::Kind::kChanged:
            return "changed";
        default:
            return "touched";
    }
}

std::string StatusForPeople(const StatusReport& report, const StatusOptions& options, bool colour) {
    std::string text;
    if (options.IsPlan()) {
        text += options.planAllowed ? ForPeople(report.allowed, "allowed") : "";
        return text + (options.planRefused ? ForPeople(report.refused, "refused") : "");
    }
    for (const BrowserStatus& each : report.browsers) {
        text += ForPeople(each, colour);
    }
    if (!report.needsRights.empty()) {
        text += Line("Administrator rights are needed to change " +
                     std::to_string(report.needsRights.size()) + " paths (--plan=allowed).") +
                '\n';
    }
    for (const std::string& each : report.closed) {
        text += Line("This process may not read " + each +
                     ". A Mac asks for Full Disk Access for some of the user's own files.");
    }
    return text + ForPeople(report.logs);
}
