#pragma once

#include <CoreServices/CoreServices.h>
#include <Foundation/Foundation.h>

/// Asks Launch Services for a browser's application. Nothing is logged.
/// @param bundleIdentifier  the application's bundle identifier
/// @param url               gets the application's URL, autoreleased, when the status is 0; else
///                          nil
/// @return 0, kLSApplicationNotFoundErr (-10814), or another status of Launch Services.
///         Meant: logged unsigned by the installers, so that -10813 shows as 4294956483.
UInt32 FindBrowser(NSString* bundleIdentifier, NSURL** url);

/// kLSApplicationNotFoundErr as FindBrowser returns it.
constexpr UInt32 kBrowserNotFound = static_cast<UInt32>(kLSApplicationNotFoundErr);

/// IsBrowserInstalled of the installers that log an application that is missing as information.
/// Logs, as information, "Application URL is: %@" or `notFound`; as a warning, "An error occurred:
/// %ld" with any other status.
/// @return whether the application is registered with Launch Services
BOOL IsBrowserRegistered(NSString* bundleIdentifier, NSString* notFound);
