#pragma once

#include "installer/BrowserInstaller.h"

/// Microsoft Edge, for the current user; never needs administrator rights. The integration is two
/// files in the user's "Library/Application Support/Microsoft Edge": the native-messaging host
/// manifest, and the external-extension descriptor, with which Edge fetches the extension from its
/// store.
@interface EdgeInstall : NSObject <OptionalBrowserInstaller>

/// Logs, as information, "Application URL is: %@" or "Edge application not found!"; as a warning,
/// "An error occurred: %ld".
+ (BOOL)IsBrowserInstalled;

/// See the contract: NO for an ordinary installation.
+ (BOOL)IsBrowserStarted;

/// NO without looking at a file when Edge is not installed; else whether both files exist. Logs
/// what IsBrowserInstalled logs.
+ (BOOL)IsExtensionInstalled;

/// Removes the earlier installation, installs host manifest and descriptor, and logs the success
/// "Edge extension installed!". New folders and the descriptor get mode 0777. The descriptor is
/// written into the product's bundle first and copied from there.
///
/// The first failing step ends it with NO and leaves in place what was done; these failures are
/// logged, each with the error's description:
///  - "Error creating Edge Native directory: %@"
///  - "Error copying Edge JSON: %@"
///  - "Error creating Edge External directory: %@"
///  - "Error copying Edge created JSON: %@"
/// A descriptor that cannot be written into the bundle is not reported by itself. Meant: not
/// logged, when its mode cannot be set, though that ends the installation.
/// @return whether every step succeeded; YES when Edge is not installed
+ (BOOL)InstallExtension;

/// Removes both files, whatever becomes of it, and logs the success "Edge extension uninstalled!".
/// The folders, and the descriptor in the product's bundle, stay.
/// @return always YES
+ (BOOL)UninstallExtension;

@end
