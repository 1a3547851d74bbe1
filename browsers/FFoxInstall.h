#pragma once

#include "installer/BrowserInstaller.h"

/// Mozilla Firefox, for the current user; never needs administrator rights. The integration is one
/// file, the native-messaging host manifest; the browser extension itself is installed by the user,
/// from the privacy page that Firefox is asked to show.
@interface FFoxInstall : NSObject <OptionalBrowserInstaller>

/// Logs, as information, "Application URL is: %@" or "Firefox application not found!"; as a
/// warning, "An error occurred: %ld".
+ (BOOL)IsBrowserInstalled;

/// Whether an application runs whose bundle identifier is "firefox-bin", "firefox", "aurora" or
/// "nightly". Meant: asked by name, not by identifier, so an ordinary installation is never
/// reported as started.
+ (BOOL)IsBrowserStarted;

/// NO without looking at a file when Firefox is not installed; else whether the host manifest
/// exists. The browser extension is not looked for. Logs what IsBrowserInstalled logs.
+ (BOOL)IsExtensionInstalled;

/// Removes what earlier versions left, makes the user's folder for Firefox's extensions, copies the
/// host manifest and has Firefox open the privacy page. New folders get mode 0777. Waits for
/// nothing: neither Firefox nor the page. Meant: the folder for extensions stays empty.
///
/// Logs what UninstallExtension logs, and the failure "Error installing FFox: %@" with the error's
/// description when the folder for extensions cannot be made, and when the manifest cannot be
/// copied; every step follows all the same. A host folder that cannot be made has no line of its
/// own.
/// @return whether the manifest was copied; YES when Firefox is not installed
+ (BOOL)InstallExtension;

/// Removes the extension folders of three earlier identifiers and then all of Firefox's extensions'
/// folder, in the computer's and in the user's Application Support folder; the host manifest; and,
/// in every profile, the registry's entries of those identifiers and the caches.
///
/// No failure stops it. It logs, with the path or the error's description:
///  - information "File at: %@, not present", or "%@" when the removal failed, for the button;
///  - information "Can't delete. File not present %@", or the failure
///    " Error uninstalling FFox extension: %@" (it begins with a blank), for the other extensions.
///    Meant: the line shows the first path again, for the second extension.
///  - information "Error deleting FFox extension directory: %@" for the folder around them. Meant:
///    it is gone by now, when the last pass removes it again, so each of the two folders has a line
///    in every log.
/// Meant: an earlier error of the same pass is reported again, after a removal that succeeds.
/// The host manifest and the profiles have no lines.
/// @return always YES
+ (BOOL)UninstallExtension;

/// The path of everything that the user's profiles folder holds, in the order in which the file
/// system lists it. Meant: a stray file counts as a profile. Empty when there is no such folder.
/// Nothing is logged.
+ (NSArray*)ffoxProfiles;

@end
