#pragma once

#include <Foundation/Foundation.h>

#include "product/Extensions.h"

// Safari's extensions as it keeps them on disk and in its lists. Nothing here logs.

/// The archives of the old extension and of the old toolbar button.
static NSString* const kSafariExtensionArchive = @KS_SAFARI_ARCHIVE;
static NSString* const kSafariButtonArchive = @KS_SAFARI_BUTTON_ARCHIVE;

/// The keys of Safari's lists of extensions: an array of dictionaries, each with an archive's name.
static NSString* const kSafariInstalledExtensions = @"Installed Extensions";
static NSString* const kSafariArchiveName = @"Archive File Name";

NSString* SafariButtonPath();            ///< the old button's archive
NSString* SafariPlugIn(NSString* name);  ///< an old web plug-in
NSString* SafariCacheFolder();           ///< of extensions

/// What an archive's name is recognised by: all before its first ".".
NSString* ArchivePrefix(NSString* archive);

/// The "Archive File Name" of a list's entry; nil when there is none or it is no text.
NSString* ArchiveName(id entry);

/// Writes a property list in the binary format, atomically. What is no dictionary, nil among it, or
/// cannot be encoded, is not written, and that is no failure.
/// @param error  gets the platform's error when the file cannot be written; else untouched
/// @return NO when the file cannot be written
BOOL WriteSafariFile(id root, NSString* path, NSError** error);

/// The user's registry of Safari's extensions.
NSString* SafariRegistryPath();

/// The registry's bytes, autoreleased; nil when it cannot be read.
NSData* ReadSafariRegistry();

/// What RemoveFromSafariRegistry takes out of a registry, where everything is mutable.
void RemoveFromSafariList(id root, NSString* archive);

/// Removes the last entry whose archive's name begins like `archive`'s, and every entry equal to
/// it, and writes the registry again as a binary property list, whether or not there was one. Bytes
/// that hold no dictionary are not written again.
/// @param registry  what ReadSafariRegistry returned
/// @param error     gets the platform's error when the registry cannot be written; else untouched
/// @return NO when the registry cannot be written
BOOL RemoveFromSafariRegistry(NSString* archive, NSData* registry, NSError** error);
