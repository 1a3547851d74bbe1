#include "tools/LogPrinter.h"
#include "tools/StatusPrinter.h"

namespace {

constexpr int kSchema = 1;

// Members and elements, parted by commas.
class List {
  public:
    List& Add(const std::string& item) {
        text += (text.empty() ? "" : ", ") + item;
        return *this;
    }
    List& Member(const char* name, const std::string& json) {
        return Add(JsonString(name) + ": " + json);
    }
    List& Text(const char* name, const std::string& value) {
        return Member(name, JsonString(value));
    }
    List& Truth(const char* name, bool value) { return Member(name, value ? "true" : "false"); }
    List& Number(const char* name, int64_t value) { return Member(name, std::to_string(value)); }

    std::string Object() const { return '{' + text + '}'; }
    std::string Array() const { return '[' + text + ']'; }

  private:
    std::string text;
};

template <typename Item>
std::string ArrayOf(const std::vector<Item>& items, std::string (*json)(const Item&)) {
    List list;
    for (const Item& each : items) {
        list.Add(json(each));
    }
    return list.Array();
}

std::string ArrayOf(const std::vector<std::string>& texts) {
    List list;
    for (const std::string& each : texts) {
        list.Add(JsonString(each));
    }
    return list.Array();
}

std::string Json(const Change& change) {
    return List()
        .Text("path", change.path)
        .Text("kind", WordOf(change.kind))
        .Member("what", ArrayOf(change.what))
        .Text("by", change.by)
        .Object();
}

std::string Json(const FileStatus& file) {
    return List()
        .Text("role", file.role)
        .Text("path", file.path)
        .Truth("there", file.isThere)
        .Member("faults", ArrayOf(file.faults))
        .Object();
}

std::string Json(const ApplicationStatus& application) {
    return List()
        .Text("name", application.name)
        .Text("path", application.path)
        .Text("version", application.version)
        .Object();
}

std::string Json(const LogFinding& finding) {
    return List()
        .Text("time", finding.time)
        .Text("level", finding.level)
        .Text("text", finding.text)
        .Text("meaning", finding.meaning)
        .Text("advice", finding.advice)
        .Object();
}

std::string Json(const LogStatus::Kept& log) {
    return List()
        .Text("path", log.path)
        .Text("started", log.started)
        .Number("bytes", log.bytes)
        .Object();
}

std::string WordOf(BrowserStatus::Verdict verdict) {
    using Verdict = BrowserStatus::Verdict;
    switch (verdict) {
        case Verdict::kNotInstalled:
            return "not installed";
        case Verdict::kWell:
            return "well";
        case Verdict::kNotIntegrated:
            return "not integrated";
        default:
            return "dead";
    }
}

std::string Json(const BrowserStatus& browser) {
    return List()
        .Text("name", browser.name)
        .Text("verdict", WordOf(browser.verdict))
        .Truth("installed", browser.isInstalled)
        .Text("path", browser.application.path)
        .Text("version", browser.application.version)
        .Truth("running", browser.isRunning)
        .Truth("integrated", browser.isIntegrated)
        .Truth("wouldChange", browser.wouldChange)
        .Text("passwords", browser.passwords)
        .Member("files", ArrayOf(browser.files, Json))
        .Member("leftovers", ArrayOf(browser.leftovers, Json))
        .Member("channels", ArrayOf(browser.channels, Json))
        .Member("profiles", ArrayOf(browser.profiles))
        .Object();
}

std::string Json(const LogStatus& logs) {
    return List()
        .Truth("enabled", logs.isEnabled)
        .Member("kept", ArrayOf(logs.kept, Json))
        .Text("unreadable", logs.unreadable)
        .Member("failures", ArrayOf(logs.failures, Json))
        .Object();
}

std::string Json(const RunPlan& plan) {
    return List()
        .Number("prompts", plan.prompts)
        .Truth("keychain", plan.keychain)
        .Truth("page", plan.page)
        .Member("changes", ArrayOf(plan.changes, Json))
        .Object();
}

}  // namespace

std::string StatusForPrograms(const StatusReport& report, const StatusOptions& options) {
    List list;
    list.Number("schema", kSchema)
        .Text("version", KS_VERSION)
        .Number("status", report.Status())
        .Member("browsers", ArrayOf(report.browsers, Json))
        .Member("needsRights", ArrayOf(report.needsRights))
        .Member("closed", ArrayOf(report.closed))
        .Member("logs", Json(report.logs));
    List plans;
    if (options.planAllowed) {
        plans.Member("allowed", Json(report.allowed));
    }
    if (options.planRefused) {
        plans.Member("refused", Json(report.refused));
    }
    if (options.IsPlan()) {
        list.Member("plan", plans.Object());
    }
    return list.Object() + '\n';
}
