#pragma once

#include <Foundation/Foundation.h>

// The shell scripts that ChromeInstall runs with administrator rights. A line of a script's text is
// followed by a blank, a line feed and a blank, except the last one.

/// Removes what earlier versions left, and installs for all users.
extern NSString* const kChromeInstallScript;

/// Removes the integration, for all users and for this one.
extern NSString* const kChromeUninstallScript;

/// Opens the host manifest's folder to everybody.
extern NSString* const kChromeFolderMakingScript;
