#include "tools/StatusPrinter.h"

#include <algorithm>
#include <cstdlib>
#include <set>
#include <string_view>

#include "tools/LogPrinter.h"

namespace {

using Verdict = BrowserStatus::Verdict;

constexpr char kRed[] = "\x1b[31m";
constexpr char kGreen[] = "\x1b[32m";
constexpr char kYellow[] = "\x1b[33m";
constexpr char kBold[] = "\x1b[1m";
constexpr char kFaint[] = "\x1b[2m";
constexpr char kPlain[] = "\x1b[0m";

std::string Line(const std::string& text, size_t indent = 0) {
    return std::string(indent, ' ') + SafeForTerminal(text) + '\n';
}

std::string Painted(const std::string& text, const char* shade, bool colour) {
    return colour ? shade + text + kPlain : text;
}

// As people write it: "~" for their home.
std::string Shown(const std::string& path) {
    const char* const home = getenv("HOME");
    const std::string folder = home != nullptr && *home != '\0' ? std::string(home) + '/' : "/";
    return folder != "/" && path.compare(0, folder.size(), folder) == 0
               ? "~/" + path.substr(folder.size())
               : path;
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

const char* ColourOf(Change::Kind kind) {
    switch (kind) {
        case Change::Kind::kCreated:
            return kGreen;
        case Change::Kind::kRemoved:
            return kRed;
        case Change::Kind::kChanged:
            return kYellow;
        default:
            return kFaint;
    }
}

bool IsInside(const std::string& path, const std::set<std::string>& folders) {
    for (size_t slash = path.rfind('/'); slash != 0 && slash != std::string::npos;
         slash = path.rfind('/', slash - 1)) {
        if (folders.count(path.substr(0, slash)) != 0) {
            return true;
        }
    }
    return false;
}

// One line says that a folder goes with all that it holds.
std::string ForPeople(const std::vector<Change>& changes, size_t indent, bool colour) {
    std::set<std::string> removed;
    for (const Change& each : changes) {
        if (each.kind == Change::Kind::kRemoved) {
            removed.insert(each.path);
        }
    }
    std::string text;
    for (const Change& each : changes) {
        if (each.kind == Change::Kind::kRemoved && IsInside(each.path, removed)) {
            continue;
        }
        std::string what;
        for (const std::string& aspect : each.what) {
            what += (what.empty() ? "  (" : ", ") + aspect;
        }
        what += what.empty() ? "" : ")";
        text += std::string(indent, ' ') + Painted(WordOf(each.kind), ColourOf(each.kind), colour) +
                Line(Shown(each.path) + what, 2);
    }
    return text;
}

std::string ForPeople(const FileStatus& file) {
    std::string text =
        Line(file.role + (file.isThere ? ": " : ", missing: ") + Shown(file.path), 2);
    for (const std::string& fault : file.faults) {
        text += Line(fault, 6);
    }
    return text;
}

std::string ForPeople(const BrowserStatus& browser, bool colour) {
    std::string text = Painted(browser.name + ":", kBold, colour) + ' ' +
                       Painted(VerdictOf(browser), ColourOf(browser), colour) + '\n';
    if (browser.isInstalled) {
        text += Line(ForPeople(browser.application) + (browser.isRunning ? ", running" : ""), 2);
        for (const FileStatus& file : browser.files) {
            text += ForPeople(file);
        }
    }
    if (!browser.passwords.empty()) {
        text += Line("its own password manager: " + browser.passwords, 2);
    }
    if (!browser.leftovers.empty()) {
        text += Line("a run would remove or edit:", 2) + ForPeople(browser.leftovers, 6, colour);
    }
    for (const ApplicationStatus& each : browser.channels) {
        text += Line("not reached by a run: " + each.name + ", " + ForPeople(each), 2);
    }
    for (const std::string& each : browser.profiles) {
        text += Line("not reached by a run: the profile " + each, 2);
    }
    return text + '\n';
}

// The file that an error's description names, or else the text's first line.
std::string SubjectOf(const std::string& text) {
    constexpr std::string_view kKey = "NSFilePath=";
    const size_t key = text.find(kKey);
    if (key == std::string::npos) {
        return text.substr(0, text.find('\n'));
    }
    const std::string path = text.substr(key + kKey.size());
    return Shown(path.substr(0, std::min(path.find(", NS"), path.rfind('}'))));
}

// What a failure means, what it was about, and what to do; what means the same stands together.
std::string ForPeople(const std::vector<LogFinding>& failures, bool colour) {
    std::string text = failures.empty() ? "" : Line("What failed in the last run:", 2);
    std::set<std::string> told;
    for (const LogFinding& first : failures) {
        if (!first.meaning.empty() && !told.insert(first.meaning).second) {
            continue;
        }
        text += "      " + Painted(first.level, kRed, colour) + "  ";
        text += Line(first.meaning.empty() ? first.text : first.meaning);
        for (const LogFinding& each : failures) {
            if (!first.meaning.empty() && each.meaning == first.meaning) {
                text += Line(each.time + "  " + SubjectOf(each.text), 10);
            }
        }
        text += first.advice.empty() ? "" : Line("To do: " + first.advice, 10);
    }
    return text;
}

std::string ForPeople(const LogStatus& logs, bool colour) {
    std::string text =
        Line(std::string("Logs: the next run ") + (logs.isEnabled ? "writes one" : "writes none"));
    for (const LogStatus::Kept& each : logs.kept) {
        text += Line(each.started + "  " + std::to_string(each.bytes) + " bytes  " + each.path, 2);
    }
    if (!logs.unreadable.empty()) {
        text += Line("cannot be read: " + logs.unreadable, 2);
    }
    return text + ForPeople(logs.failures, colour);
}

std::string ForPeople(const RunPlan& plan, const char* verdict, bool colour) {
    std::string text = Line(std::string("Administrator rights ") + verdict + ": a run asks " +
                            std::to_string(plan.prompts) + " times at most, and these paths are");
    text += plan.changes.empty() ? Line("none", 2) : ForPeople(plan.changes, 2, colour);
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
        text += options.planAllowed ? ForPeople(report.allowed, "allowed", colour) : "";
        return text + (options.planRefused ? ForPeople(report.refused, "refused", colour) : "");
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
    return text + ForPeople(report.logs, colour);
}
