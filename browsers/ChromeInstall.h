#pragma once

#include "installer/BrowserInstaller.h"

/// Google Chrome. The integration is an external-extension descriptor, with which Chrome fetches
/// the extension from its store, and the native-messaging host manifest. They are installed for all
/// users, by a script with administrator rights; where these are refused, for the current user
/// alone. The password manager of a Chrome of years ago is off while the product is installed; that
/// of today's stays as it is (browsers/ChromePreferences.h).
@interface ChromeInstall : NSObject <OptionalBrowserInstaller>

/// Logs the success "The app's URL is: %@", the warning "App not found", or the failure "An error
/// occurred: %ld".
+ (BOOL)IsBrowserInstalled;

+ (BOOL)IsBrowserStarted;

/// Whether a descriptor that names an update URL stands in the user's external folder (or, where it
/// has none, in the system's), and the host manifest exists. NO when Chrome is not installed.
+ (BOOL)IsExtensionInstalled;

/// Installs for all users or, when that fails, for the current user after removing what is there;
/// then edits Chrome's preferences to switch its password manager off. Touches nothing when Chrome
/// is not installed.
/// @return always YES
+ (BOOL)InstallExtension;

/// `UninstallExtension:` with YES.
+ (BOOL)UninstallExtension;

/// Edits Chrome's preferences to switch its password manager on again, whether or not Chrome is
/// installed.
/// @param removeFiles  whether to remove the integration first: for all users or, when that fails,
///                     for the current user
/// @return always YES
+ (BOOL)UninstallExtension:(BOOL)removeFiles;

@end

/// For the current user alone. Nothing here stops at a failure.
@interface ChromeInstall (CurrentUser)

/// Copies the host manifest and the extension package and writes the descriptor. Where the host
/// manifest's folder is closed, a script with administrator rights opens it.
///
/// Logs, as warnings, "No copy: file not present: %@" for a target that is there (the wording is
/// meant), and "Error install for current user: %@" with the last error after a host manifest that
/// did not copy at once, and after every copy of the package, a successful one too (meant).
+ (void)installChromeCurrUser;

/// Removes the old plug-in, the host manifest, the package and the descriptor. Logs, as warnings,
/// "Error removing file: %@" and, for what is not there, "No delete, file not present: %@"; the
/// package's line names the host manifest (meant).
+ (void)uninstallChromeCurrUser;

@end

/// For all users of the machine, by scripts with administrator rights.
@interface ChromeInstall (AllUsers)

/// Writes the descriptor into the product's bundle and runs the script that installs it.
/// @return whether the script ran with success; NO without a prompt where the bundle cannot be
///         written
+ (BOOL)installChromeAllUsers;

/// Runs the script that removes the integration from the system's and the user's folders.
/// @return whether the script ran with success
+ (BOOL)uninstallChromeAllUsers;

@end

/// The toolbar-button extension of earlier versions, for the current user. Nothing here stops at
/// a failure.
@interface ChromeInstall (LegacyButton)

/// Copies the button's package and writes its descriptor. Logs, as warnings, "No copy, file not
/// present: %@" for a package that is there, and "Error removing file: %@" for one that cannot be
/// copied (both wordings are meant).
+ (void)installChromeButtonCurrUser;

/// Removes the button's package and descriptor. Logs, as warnings, "Error removing file: %@" and
/// "No delete, file not present: %@".
+ (void)uninstallChromeButtonCurrUser;

@end
