#pragma once

#include "installer/BrowserInstaller.h"

/// The kinds of `cleanSafariExtensionCache:`.
static NSString* const kSafariButtonKind = @"button";
static NSString* const kSafariExtensionKind = @"extension";

/// Safari. People install today's extension from the product itself, so nothing is installed here:
/// the operations remove the old extension, the old toolbar button and the old web plug-ins, and
/// set Safari's password AutoFill. Everything is the current user's own.
///
/// What the files of Safari hold is not taken on trust: an entry of another type than Safari writes
/// matches nothing and stays as it is, and so does a file that holds no dictionary.
@interface SafariInstall : NSObject <BrowserInstaller>

/// Meant: looks at nothing, as today's extension is the user's own affair. Nothing is logged.
/// @return always YES
+ (BOOL)IsExtensionInstalled;

/// Removes the remnants and switches AutoFill on. Meant: once more, also where the registry is
/// missing. Logs what UninstallExtension and setFillPasswords: log.
/// @return always YES
+ (BOOL)InstallExtension;

/// Removes plug-ins, cached extension, button, registry entry and keychain entry, and switches
/// AutoFill on. The registry entry is the last one whose archive's name begins with "Keystrel", and
/// every entry equal to it; the registry is written again, as a binary property list, even when
/// there is none.
///
/// Logs what its steps log, and at its own end the success "Safari uninstalled successfully."; the
/// failure "Error %@ writting to file: %@", with description and path, does not stop it.
/// Meant: "writting" is spelled so.
/// @return NO, with the failure "Missing Extensions.plist." and without touching the keychain, when
///         the registry cannot be read; else YES
+ (BOOL)UninstallExtension;

/// Removes the old web plug-ins. Logs, as warnings, "Error deleting file: %@" with the error's
/// description or, for each that is not there, "Couldn't delete. File not present: %@" with the
/// path.
+ (void)removeSafariFiles;

/// Removes from the extension cache everything whose name begins like the kind's archive.
/// @param kind  kSafariButtonKind or kSafariExtensionKind; for any other nothing is removed
///
/// Logs the warning "Clear CacheError: %@" when the folder cannot be listed or is empty (then with
/// "(null)"), and after every removal the information "Error clearing files cache: %@".
/// Meant: the line stands after a success too, with "(null)".
+ (void)cleanSafariExtensionCache:(NSString*)kind;

@end

/// Safari's preferences file.
@interface SafariInstall (Preferences)

/// Sets "AutoFillPasswords" to "1" or "0", and with "0" also "TabCreationPolicy" to the number 2.
/// Meant: the value is a string. The file is written again as a binary property list. Logs
/// the warning "Missing com.apple.Safari.plist" when it cannot be read, and a failed write's
/// description as information.
+ (void)setFillPasswords:(BOOL)on;

/// The preferences, everything in them mutable.
/// @return autoreleased; nil with the failure "Missing com.apple.Safari.plist" when the file cannot
///         be read, nil with the failure "Error reading plist: %@" when it is no property list, and
///         nil without a line when its root is no dictionary
+ (NSMutableDictionary*)comAppleSafariPlist;

/// Replaces the preferences file by a binary property list, atomically.
/// @param dictionary  nil writes nothing and is no failure
/// @return NO with the failure "Error reading plist: %@" (Meant: "reading", of a write) when
///         something in it fits no property list, NO with the failure "Error writing to file: %@"
///         when the file cannot be written; else YES
+ (BOOL)writeDictToComAppleSafariPlist:(NSDictionary*)dictionary;

@end

/// The toolbar button of earlier versions, an extension of its own.
@interface SafariInstall (Button)

/// Removes the button's archive, its cache, its registry entry (the last one whose archive's name
/// begins with "Keystrel Button", and every entry equal to it) and its place in Safari's toolbar.
/// Registry and preferences are written again even when nothing was in them.
///
/// Logs what its steps log, the failure "missing Extensions.plist", which ends it, when the
/// registry cannot be read, and the failure "Fail to copy files: %@" with the error's description
/// when it cannot be written. Meant: its own wording, not UninstallExtension's for the same.
+ (void)uninstallSafariButton;

/// Removes the button's archive. Logs the warning "Error deleting file: %@" with the error's
/// description or, when it is not there, the information "Can't delete, file not present %@" with
/// the path.
+ (void)removeSafariButtonFiles;

@end

/// Safari's list of extensions in the user's keychain.
@interface SafariInstall (Keychain)

/// Removes one entry from the list, the first one that is the old extension or the old button.
/// Meant: at most one entry a call. The item is written again even when there is none; whether that
/// succeeds is not looked at. Logs the information "Extension already removed!". Meant: for
/// whatever reason the keychain gives no item. Logs the failure "Couldn't convert with error: %@!"
/// when the list cannot be encoded again. The system may ask the user, and the call then waits.
/// @return NO for a list that is empty or no dictionary, and for one that cannot be encoded; else
///         YES
+ (BOOL)uninstallSafariExtensionFromKeychain;

@end
