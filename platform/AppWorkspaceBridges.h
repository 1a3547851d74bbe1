#pragma once

#include <string>

// AppWorkspaceUtils for code that cannot send messages to it. An outer function (…CPP) only calls
// the inner one, which reads its texts in the default C-string encoding and calls the class
// operation. A text that means nothing in that encoding counts as none, an option's value as empty.
// What an operation does and logs stands with its class.

bool IsAppRunningCPP(const std::string& name);      ///< AppWorkspaceUtils IsAppRunning:
long StartKeystrelCPP();                            ///< AppWorkspaceUtils StartKeystrel, 1 or 0
void StartApplicationCPP(const std::string& name);  ///< AppWorkspaceUtils StartApplication:

/// AppWorkspaceUtils StartKSWizardOldWithArguments:
/// @param mail  the user's account e-mail, the value of "-mail"
/// @param pass  the user's account password, the value of "-pass"; other users of the machine can
///              read it in the list of processes
bool StartKSWizardOldWithArgumentsCPP(const std::string& mail, const std::string& pass);

/// AppWorkspaceUtils StartKSUpdaterWithArguments:
/// @param path       the value of "-path"
/// @param desc       the value of "-desc"
/// @param mandatory  the value of "-mandatory", "1" or "0"
/// @param console    the value of "-console", "1" or "0"
bool StartKSUpdaterWithArgumentsCPP(const std::string& path, const std::string& desc,
                                    bool mandatory, bool console);

bool IsAppRunningBridge(const std::string& name);
long StartKeystrelBridge();
void StartApplicationBridge(const std::string& name);
bool StartKSWizardOldWithArgumentsBridge(const std::string& mail, const std::string& pass);
bool StartKSUpdaterWithArgumentsBridge(const std::string& path, const std::string& desc,
                                       bool mandatory, bool console);
