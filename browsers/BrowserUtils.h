#pragma once

#include <Foundation/Foundation.h>

/// Keeps an installation or a removal from going on while a browser is open. No instances, no
/// state. Main thread only. Logs nothing of its own: what is logged comes from QWIAlertUtils, where
/// it cannot show an alert, and from ElevatedRights.
@interface BrowserUtils : NSObject

/// Whether a running application's localized name is "Safari", "Google Chrome", "Microsoft Edge",
/// "Firefox" or "FirefoxDeveloperEdition", in any letter case. The main run loop takes one turn
/// first.
+ (BOOL)AreBrowsersStarted;

/// `VerifyBrowsers::` without a script.
+ (BOOL)VerifyBrowsers:(BOOL)isInstall;

/// While a browser is open, asks the user in a modal alert to exit, to have the browsers closed, or
/// to try again. Meant: without a script nothing is closed, and the browsers are left to the user.
/// Meant: the script is dropped, when the user tries again.
/// @param isInstall  whether the alert speaks of an installation or of a removal
/// @param script     shell script that removes the product's traces, or nil
/// @return whether to go on: NO only when the user chose to exit; YES also for an alert that was
///         closed without a button or could not be shown
// clang-format off
+ (BOOL)VerifyBrowsers:(BOOL)isInstall :(NSString*)script;
// clang-format on

/// Without a script: closes the browsers and returns YES. With one: runs it with administrator
/// rights; when it succeeds returns YES without closing a browser, else shows the alert "Invalid
/// credentials", closes the browsers, runs `kill "Keystrel"` and returns NO. Meant: kill takes no
/// names.
+ (BOOL)removeTraces:(NSString*)script;

@end
