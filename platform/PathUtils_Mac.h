#pragma once

#include <Foundation/Foundation.h>

// The formatter would take the blank before an unnamed part of a selector away, and with it the
// parameter's name.
// clang-format off

/// The file-system work behind PathUtils. No instances, no state. Nothing is logged; failures are
/// the results. A nil or empty path counts as one at which nothing is and nothing can be made.
/// "Exists" follows symbolic links.
@interface PathUtils_Mac : NSObject

/// The path of the application's bundle.
+ (NSString*)FromModuleFileName;

/// Whether a folder exists at the path.
+ (BOOL)DirectoryExists:(NSString*)path;

/// Whether something that is no folder exists at the path.
+ (BOOL)FileExists:(NSString*)path;

/// Makes a folder and the folders above it, each new one with mode 0777.
/// @return the platform's success
+ (BOOL)CreateDirectory:(NSString*)path;

/// Makes the folder, as CreateDirectory: does, where nothing exists at the path. Meant: tells what
/// was there before.
/// @return YES only when the folder was there already: NO for a file, for a folder that could not
///         be made, and for one that was made just now
+ (BOOL)EnsureFolderPath:(NSString*)path;

/// The path with a leading "~" replaced by the home folder.
+ (NSString*)ExpandPath:(NSString*)path;

/// All paths below a folder, at every depth, relative to it, in the platform's order.
/// @param foldersOnly  whether only folders are listed, links to folders among them
/// @return an empty array for a folder that cannot be read
+ (NSArray*)EnumAllItemsInFolder:(NSString*)folder :(BOOL)foldersOnly;

/// Removes a file; a folder or a missing path is left alone.
/// @param errorCode  gets the platform's error code when the removal itself fails; may be null
/// @return whether the file was there and is gone
+ (BOOL)KSDeleteFile:(NSString*)path :(NSInteger*)errorCode;

/// Removes a folder with all it holds; a file or a missing path is left alone.
/// @return whether the folder was there and is gone
+ (BOOL)KSDeleteFolder:(NSString*)path;

/// Copies a file, or a folder with all it holds. Meant: `overwrite` does not help. An existing
/// destination is never removed; with `overwrite` the copy is tried, and the platform refuses it.
/// @return whether the source exists and was copied
+ (BOOL)KSCopyFolder:(NSString*)source :(NSString*)destination :(BOOL)overwrite;

@end
// clang-format on
