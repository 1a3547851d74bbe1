#pragma once

#include <Foundation/Foundation.h>

/// Keeps an installation or a removal from going on while a browser is open. No instances, no
/// state.
@interface BrowserUtils : NSObject

/// Whether a running application's name is "Safari", "Google Chrome", "Microsoft Edge", "Firefox"
/// or "FirefoxDeveloperEdition", in any case.
+ (BOOL)AreBrowsersStarted;

/// `VerifyBrowsers::` without a script.
+ (BOOL)VerifyBrowsers:(BOOL)isInstall;

/// While a browser is open, asks the user in a modal alert to exit, to have the browsers closed, or
/// to try again. Only a given script closes them, by `removeTraces:`; trying again drops the
/// script: both are meant.
/// @param isInstall  whether the alert speaks of an installation or of a removal
/// @param script     shell script that removes the product's traces, or nil
/// @return whether to go on: NO only when the user chose to exit
// clang-format off
+ (BOOL)VerifyBrowsers:(BOOL)isInstall :(NSString*)script;
// clang-format on

/// Without a script: closes the browsers and returns YES. With one: runs it with administrator
/// rights; when it succeeds returns YES without closing a browser, else shows the alert "Invalid
/// credentials", closes the browsers and returns NO.
+ (BOOL)removeTraces:(NSString*)script;

@end
