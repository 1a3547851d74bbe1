#pragma once

#include <Foundation/Foundation.h>

/// What the run asks of every browser's installer. Installers are classes without instances: all
/// state is in the file system and in the browsers' own files. Failures are logged where they
/// happen.
@protocol BrowserInstaller

/// Whether the product's files for this browser are in place. How much of them is looked at
/// differs: Safari's installer looks at nothing, Chrome's reads the descriptor, the others ask for
/// existence.
+ (BOOL)IsExtensionInstalled;

/// Installs the current integration.
/// @return YES when it is in place, or when the browser is not installed and there is nothing to
///         do; Chrome's and Safari's say YES whatever happened
+ (BOOL)InstallExtension;

/// Removes every earlier form of the integration.
/// @return YES when the removal is finished; NO only for Safari without a registry of extensions
+ (BOOL)UninstallExtension;

@end

/// An installer of a browser that may be absent. Safari's is none: it is part of every Mac.
@protocol OptionalBrowserInstaller <BrowserInstaller>

/// Whether the browser's application is registered with Launch Services. Logs where it is, that it
/// was not found, or "An error occurred: %ld" with the status as an unsigned number.
+ (BOOL)IsBrowserInstalled;

/// Whether a running application's bundle identifier equals the browser's application name, or one
/// of Firefox's program names. Meant: asked by name, not by identifier, so an ordinary installation
/// is never reported as started. Nothing is logged.
+ (BOOL)IsBrowserStarted;

@end
