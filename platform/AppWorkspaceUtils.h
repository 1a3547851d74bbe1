#pragma once

#include <Foundation/Foundation.h>

/// The browsers that OpenURL:withBrowser: knows.
static NSString* const kBrowserSafari = @"Safari";
static NSString* const kBrowserFirefox = @"FF";
static NSString* const kBrowserChrome = @"Chrome";

/// The applications of this session: which ones run, and starting the product's own. No state.
/// Launches are never waited for, and nothing is thrown. Meant: "Launchig" is spelled so.
@interface AppWorkspaceUtils : NSObject

/// Whether an application with this bundle identifier runs and has finished launching. The
/// identifier must match exactly, letter case included; names of processes, programs or bundles are
/// never looked at. Main thread only: its run loop takes one turn, in which the list of
/// applications becomes current. Nothing is logged.
/// @param bundleIdentifier  nil matches nothing
+ (BOOL)IsAppRunning:(NSString*)bundleIdentifier;

/// Launches the product's main application. Logs the information "Launchig Keystrel!" or the
/// failure "Can't launch %@" with the application's name.
/// @return whether it was launched
+ (BOOL)StartKeystrel;

/// Launches an application of the product's tools folder and, launched or not, logs the information
/// "Launchig application: %@" with its path.
/// @param name  its name in that folder, such as "KSUpdater.app"; nil does nothing, without a line
+ (void)StartApplication:(NSString*)name;

/// Starts the set-up wizard of the product's previous generation and marks that generation as the
/// one in use: in the marker file, a property list in the product's bundle, "IsOldKS" becomes "1"
/// and "IsNewKS" "0", the other keys stay. A marker file that cannot be read or holds no dictionary
/// is left alone.
///
/// Logs the information "Launchig application: %@" with the program's path, or a failure:
///  - "Can't launch legacy Wizard: %@. File Not Found" with the path
///  - "Can't launch legacy Wizard: %@" with the path of a program that does not start
///  - "Coudn't save local data with error: %@!" with the error's description, or "(null)", when the
///    marker is left alone or cannot be written; the wizard runs and counts as started all the same
/// @param arguments  the program's arguments, strings
/// @return whether it was started
+ (BOOL)StartKSWizardOldWithArguments:(NSArray*)arguments;

/// Starts the product's updater. Logs the information "Launchig application: %@" or the failure
/// "Can't launch KSUpdater: %@. File Not Found" or "Can't launch KSUpdater: %@", with the program's
/// path.
/// @param arguments  the program's arguments, strings
/// @return whether it was started
+ (BOOL)StartKSUpdaterWithArguments:(NSArray*)arguments;

/// Opens a web address in a browser. Nothing is logged; what is no address, and an unknown browser,
/// opens nothing.
/// @param address  gets "http://" in front unless it begins with "http"
/// @param browser  one of the names above
- (void)OpenURL:(NSString*)address withBrowser:(NSString*)browser;

@end
