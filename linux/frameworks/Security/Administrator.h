#pragma once

#include <string>

// Administrator rights on Debian: the Mac root's broker where there is one, else polkit.

enum class Verdict {
    Allowed,
    Cancelled,  ///< the user closed the prompt
    Refused,    ///< the password was wrong, or nobody can be asked
};

struct CommandResult {
    Verdict verdict;
    int status;  ///< exit status; 128 and the signal's number when a signal ended it
    std::string output;
    std::string errors;
};

/// Runs a shell command as root, with the user's home as HOME, "/" as its folder and the system's
/// PATH. Only an allowed one is run.
CommandResult RunAsAdministrator(const std::string& command);

/// Runs a shell command as the user.
CommandResult RunAsUser(const std::string& command);

/// Asks for an authorization right by its name, without running anything.
Verdict AskForRight(const std::string& right);
