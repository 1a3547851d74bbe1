#pragma once

#include <Foundation/Foundation.h>

// Safari's preferences as a property list. Nothing here reads, writes or logs.

/// The file.
NSString* SafariPreferencesPath();

static NSString* const kSafariAutoFill = @"AutoFillPasswords";

/// What SafariInstall setFillPasswords: sets.
void SetSafariAutoFill(NSMutableDictionary* preferences, BOOL on);

/// Takes the old button out of the toolbar, where everything is mutable.
void RemoveSafariToolbarItem(NSDictionary* preferences);
