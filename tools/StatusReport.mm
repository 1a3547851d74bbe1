#include "tools/StatusReport.h"

#include <Foundation/Foundation.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "browsers/ChromePaths.h"
#include "browsers/SafariExtensions.h"
#include "browsers/SafariPreferences.h"
#include "product/Places.h"
#include "tools/BrowserStatus.h"
#include "tools/LastLog.h"

namespace {

constexpr int kNotWell = 1;
constexpr int kClosed = 3;

bool IsRealChange(const Change& change) {
    return change.kind != Change::Kind::kTouched;
}

bool ChangesFor(const RunPlan& plan, const std::string& name) {
    return std::any_of(plan.changes.begin(), plan.changes.end(), [&name](const Change& each) {
        return IsRealChange(each) && each.by == name;
    });
}

bool Has(const std::vector<Change>& changes, const std::string& path) {
    return std::any_of(changes.begin(), changes.end(),
                       [&path](const Change& each) { return each.path == path; });
}

// What every run leaves different, whether or not it is given rights, is told with all that one of
// them would take away. What only one of them would change is the trace of the other.
void AddLeftovers(const StatusReport& report, BrowserStatus* browser) {
    browser->wouldChange =
        ChangesFor(report.allowed, browser->name) && ChangesFor(report.refused, browser->name);
    if (!browser->wouldChange) {
        return;
    }
    for (const RunPlan* plan : {&report.allowed, &report.refused}) {
        for (const Change& each : plan->changes) {
            if (each.by == browser->name && each.kind != Change::Kind::kCreated &&
                IsRealChange(each) && !Has(browser->leftovers, each.path)) {
                browser->leftovers.push_back(each);
            }
        }
    }
}

bool IsClosed(const std::string& path) {
    const int descriptor = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor >= 0) {
        close(descriptor);
        return false;
    }
    return errno == EACCES || errno == EPERM;
}

std::vector<std::string> ClosedPaths(const RunPlan& allowed) {
    std::vector<std::string> closed = allowed.hidden;
    for (NSString* each : {
             SafariPreferencesPath(), SafariRegistryPath(), ChromePreferences(),
                 ChromeInstalledHostManifest(), @KS_SETTINGS_FILE, @KS_DATA_FOLDER "logs"
         }) {
        const char* path = [each fileSystemRepresentation];
        if (path != NULL && IsClosed(path)) {
            closed.push_back(path);
        }
    }
    return closed;
}

bool IsWell(const BrowserStatus& browser) {
    using Verdict = BrowserStatus::Verdict;
    return browser.verdict == Verdict::kWell || browser.verdict == Verdict::kNotInstalled;
}

}  // namespace

StatusReport LookAtMachine() {
    @autoreleasepool {
        StatusReport report;
        report.allowed = PlanRun(true);
        report.refused = PlanRun(false);
        report.browsers = LookAtBrowsers();
        for (BrowserStatus& browser : report.browsers) {
            AddLeftovers(report, &browser);
        }
        for (const Change& each : report.allowed.changes) {
            if (IsRealChange(each) && !Has(report.refused.changes, each.path)) {
                report.needsRights.push_back(each.path);
            }
        }
        report.closed = ClosedPaths(report.allowed);
        report.logs = LookAtLogs();
        return report;
    }
}

int StatusReport::Status() const {
    if (!closed.empty()) {
        return kClosed;
    }
    const bool changes =
        std::any_of(allowed.changes.begin(), allowed.changes.end(), IsRealChange) &&
        std::any_of(refused.changes.begin(), refused.changes.end(), IsRealChange);
    return !changes && std::all_of(browsers.begin(), browsers.end(), IsWell) ? 0 : kNotWell;
}
