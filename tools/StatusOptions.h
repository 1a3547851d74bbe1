#pragma once

#include <string>

/// What the command line asks of the status report.
struct StatusOptions {
    enum class Task { kReport, kHelp, kVersion, kWrongUsage };

    Task task = Task::kReport;
    std::string complaint;  ///< of kWrongUsage
    bool json = false;
    bool planAllowed = false;
    bool planRefused = false;

    bool IsPlan() const { return planAllowed || planRefused; }
};

/// Reads the command line; prints nothing.
StatusOptions ParseStatusOptions(int argc, char** argv);

/// The usage, for people.
extern const char kStatusUsage[];
