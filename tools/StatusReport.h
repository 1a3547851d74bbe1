#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tools/RunPlan.h"

/// One file of a browser's integration, as the browser would find it.
struct FileStatus {
    std::string role;  ///< "host manifest" or "descriptor"
    std::string path;
    bool isThere = false;
    std::vector<std::string> faults;  ///< why the browser would refuse it, for people
};

/// An application that the system knows.
struct ApplicationStatus {
    std::string name;
    std::string path;
    std::string version;  ///< empty when its Info.plist tells none
};

struct BrowserStatus {
    enum class Verdict {
        kNotInstalled,
        kWell,
        kNotIntegrated,  ///< the product's files are not all there
        kDead,           ///< they are, and the browser would refuse them
    };

    std::string name;
    bool isInstalled = false;
    ApplicationStatus application;
    bool isRunning = false;
    bool isIntegrated = false;
    Verdict verdict = Verdict::kNotInstalled;
    std::vector<FileStatus> files;
    std::vector<Change> leftovers;  ///< what a run would remove or edit, whatever it is allowed
    bool wouldChange = false;       ///< by every run
    std::string passwords;          ///< of the browser: "on", "off", "not set", "unreadable", ""
    std::vector<ApplicationStatus> channels;  ///< that a run does not reach
    std::vector<std::string> profiles;        ///< the same, folders
};

/// A failure in the last run's log.
struct LogFinding {
    std::string time;
    std::string level;
    std::string text;
    std::string meaning;  ///< empty for a message that is not the product's
    std::string advice;
};

struct LogStatus {
    struct Kept {
        std::string path;
        std::string started;  ///< "2024-03-05 09:07:02"
        int64_t bytes;
    };

    std::vector<Kept> kept;  ///< the oldest first
    std::string unreadable;  ///< why the folder or the newest log cannot be read; or empty
    std::vector<LogFinding> failures;
    bool isEnabled = false;  ///< whether the next run writes one
};

struct StatusReport {
    std::vector<BrowserStatus> browsers;
    std::vector<std::string> closed;       ///< what this process may not read
    std::vector<std::string> needsRights;  ///< what only a run with administrator rights changes
    LogStatus logs;
    RunPlan allowed;
    RunPlan refused;

    /// 0 all is well, 1 a run would change something or an integration is dead, 3 something could
    /// not be looked at.
    int Status() const;
};

/// Looks at everything, and changes nothing.
StatusReport LookAtMachine();
