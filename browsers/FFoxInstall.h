#pragma once

#include "installer/BrowserInstaller.h"

/// Mozilla Firefox, for the current user; never needs administrator rights. The integration is one
/// file, the native-messaging host manifest; the browser extension itself is installed by the user,
/// from the privacy page that Firefox is asked to show.
@interface FFoxInstall : NSObject <OptionalBrowserInstaller>

/// Logs, as information, "Application URL is: %@" or "Firefox application not found!"; as a
/// warning, "An error occurred: %ld".
+ (BOOL)IsBrowserInstalled;

/// Whether an application runs whose bundle identifier is one of Firefox's program names, which an
/// ordinary installation's never is.
+ (BOOL)IsBrowserStarted;

/// NO without looking at a file when Firefox is not installed; else whether the host manifest
/// exists. The browser extension is not looked for.
+ (BOOL)IsExtensionInstalled;

/// Removes what earlier versions left, makes the user's folder for Firefox's extensions, which
/// stays empty, copies the host manifest and has Firefox open the privacy page. New folders get
/// mode 0777. Waits for nothing: neither Firefox nor the page.
///
/// Logs the failure "Error installing FFox: %@" with the error's description when the folder for
/// extensions cannot be made, and when the manifest cannot be copied; every step follows all the
/// same.
/// @return whether the manifest was copied; YES when Firefox is not installed
+ (BOOL)InstallExtension;

/// Removes the extension folders of three earlier identifiers and then all of Firefox's extensions'
/// folder, in the computer's and in the user's Application Support folder; the host manifest; and,
/// in every profile, the registry's entries of those identifiers and the caches.
///
/// No failure stops it. It logs, with the path or the error's description:
///  - information "File at: %@, not present", or "%@" when the removal failed, for the button;
///  - information "Can't delete. File not present %@", or the failure
///    " Error uninstalling FFox extension: %@", for the other extensions;
///  - information "Error deleting FFox extension directory: %@" for the folder around them. That it
///    is already gone is such an error, so at least one line stands in every log.
/// @return always YES
+ (BOOL)UninstallExtension;

/// The path of everything that the user's profiles folder holds, in the order in which the file
/// system lists it; a stray file counts as a profile. Empty when there is no such folder.
+ (NSArray*)ffoxProfiles;

@end
