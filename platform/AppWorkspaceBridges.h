#pragma once

#include <string>

// AppWorkspaceUtils for code that cannot send messages to it. An outer function (…CPP) only calls
// the inner one, which reads its text in the default C-string encoding and calls the class
// operation.

bool IsAppRunningCPP(const std::string& name);  ///< AppWorkspaceUtils IsAppRunning:

bool IsAppRunningBridge(const std::string& name);
