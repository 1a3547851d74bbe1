#pragma once

#include "installer/BrowserInstaller.h"

/// Google Chrome. The integration is an external-extension descriptor, with which Chrome fetches
/// the extension from its store, and the native-messaging host manifest. They are installed for all
/// users, by a script with administrator rights; where these are refused, for the current user
/// alone. The password manager of a Chrome of years ago is off while the product is installed; that
/// of today's stays as it is (browsers/ChromePreferences.h).
@interface ChromeInstall : NSObject <OptionalBrowserInstaller>

/// Logs the success "The app's URL is: %@", the warning "App not found", or the failure "An error
/// occurred: %ld". Meant: levels of its own, not those of Edge and Firefox.
+ (BOOL)IsBrowserInstalled;

/// See the contract: NO for an ordinary installation.
+ (BOOL)IsBrowserStarted;

/// Whether a descriptor with the text "external_update_url" stands in the user's external folder
/// (or, where it has none, in the system's), and the host manifest exists. NO when Chrome is not
/// installed. Logs what IsBrowserInstalled logs.
+ (BOOL)IsExtensionInstalled;

/// Installs for all users or, when that fails, for the current user after removing what is there;
/// then edits Chrome's preferences to switch its password manager off. Touches nothing when Chrome
/// is not installed.
///
/// Logs what its steps log and, for preferences that cannot be read, the warning "ERROR deactivate
/// password manager in chrome: %@. Error: %@" with the path and the error's description. A refused
/// administrator prompt has no line.
/// @return always YES
+ (BOOL)InstallExtension;

/// `UninstallExtension:` with YES.
+ (BOOL)UninstallExtension;

/// Edits Chrome's preferences to switch its password manager on again, whether or not Chrome is
/// installed; preferences that cannot be read have no line here. Logs what its steps log.
/// @param removeFiles  whether to remove the integration first: for all users or, when that fails,
///                     for the current user
/// @return always YES
+ (BOOL)UninstallExtension:(BOOL)removeFiles;

@end

/// For the current user alone. Nothing here stops at a failure.
@interface ChromeInstall (CurrentUser)

/// Copies the host manifest and the extension package and writes the descriptor, whose own failures
/// are silent. When the host manifest cannot be copied, a script with administrator rights makes
/// its folder, open to everybody, where there is none, and the copy is tried once more. A folder
/// that is there and closed stays so, and the second copy fails like the first.
///
/// Logs, as warnings:
///  - "No copy: file not present: %@" with the path. Meant: said of a file that is present.
///  - "Error install for current user: %@" with the last error's description, after a host manifest
///    that did not copy at once. Meant: the first error also when the second copy succeeded.
///  - the same after every copy of the package. Meant: also without any error, then with "(null)".
+ (void)installChromeCurrUser;

/// Removes the old plug-in, the host manifest, the package and the descriptor. Logs, for all but
/// the descriptor, the warnings "Error removing file: %@" with the error's description and, for
/// what is not there, "No delete, file not present: %@" with the path. Meant: a missing package is
/// reported with the host manifest's path.
+ (void)uninstallChromeCurrUser;

@end

/// For all users of the machine, by scripts with administrator rights.
@interface ChromeInstall (AllUsers)

/// Writes the descriptor into the product's bundle and runs the script that installs it. Logs what
/// RunAdministratorScript logs.
/// @return whether the script ran with success; NO, without a prompt and without a line, when the
///         descriptor's mode cannot be set, as where the bundle cannot be written and has none yet
+ (BOOL)installChromeAllUsers;

/// Runs the script that removes the integration from the system's and the user's folders. Logs what
/// RunAdministratorScript logs.
/// @return whether the script ran with success
+ (BOOL)uninstallChromeAllUsers;

@end

/// The toolbar-button extension of earlier versions, for the current user. Nothing here stops at
/// a failure.
@interface ChromeInstall (LegacyButton)

/// Copies the button's package and writes its descriptor, whose own failures are silent. Logs, as
/// warnings, "No copy, file not present: %@" with the path (Meant: said of a package that is
/// present), and "Error removing file: %@" with the error's description (Meant: said of a copy that
/// failed).
+ (void)installChromeButtonCurrUser;

/// Removes the button's package and descriptor. Logs, for the package alone, the warnings "Error
/// removing file: %@" with the error's description and "No delete, file not present: %@" with the
/// path.
+ (void)uninstallChromeButtonCurrUser;

@end
