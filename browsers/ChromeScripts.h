#pragma once

#include <Foundation/Foundation.h>

// The shell scripts that ChromeInstall runs with administrator rights. A line of a script's text is
// followed by a blank, a line feed and a blank, except the last one.

/// Removes what earlier versions left, and installs for all users. What stands in the user's own
/// folder for external extensions it misses (see ChromeScripts.mm).
extern NSString* const kChromeInstallScript;

/// Removes the integration, for all users and for this one.
extern NSString* const kChromeUninstallScript;

/// Makes the host manifest's folder, open to everybody, where there is none. One that is there keeps
/// its mode: the script opens no closed folder.
extern NSString* const kChromeFolderMakingScript;
